# An application finds the installed CMake package; so do the examples, as a project of their own.
cmake_minimum_required(VERSION 3.23)

include("${CMAKE_CURRENT_LIST_DIR}/steps.cmake")
# The installation is used where it was moved to, not where it was installed.
set(moved "${WORK}/moved")
file(REMOVE_RECURSE "${WORK}")
file(COPY "${PREFIX}/" DESTINATION "${moved}")
configure_and_build("${CMAKE_CURRENT_LIST_DIR}/find_package" "${WORK}/application"
  "-DCMAKE_PREFIX_PATH=${moved}" "-DEXPECTED_KIND=${KIND}" "-DWITH_SIMULATOR=${WITH_SIMULATOR}")
step("${CMAKE_CTEST_COMMAND}" --test-dir "${WORK}/application" --output-on-failure --no-tests=error)
configure_and_build("${ROOT}/examples" "${WORK}/examples" "-DCMAKE_PREFIX_PATH=${moved}")
