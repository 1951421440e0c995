# An application takes the checkout into its own build.
cmake_minimum_required(VERSION 3.23)

include("${CMAKE_CURRENT_LIST_DIR}/steps.cmake")
configure_and_build("${CMAKE_CURRENT_LIST_DIR}/add_subdirectory" "${WORK}"
  "-DTAVO_CHECKOUT=${ROOT}" "-DBUILD_SHARED_LIBS=${BUILD_SHARED_LIBS}" "-DEXPECTED_KIND=${KIND}"
  "-DTAVO_BUILD_SIMULATOR=${WITH_SIMULATOR}" "-DWITH_SIMULATOR=${WITH_SIMULATOR}"
  -DTAVO_WERROR=ON)
step("${CMAKE_CTEST_COMMAND}" --test-dir "${WORK}" --output-on-failure --no-tests=error)
