# BUILD_TESTING=OFF leaves the tests out as TAVO_BUILD_TESTS=OFF does: no program, no test, no need of GoogleTest.
cmake_minimum_required(VERSION 3.23)

function(configure result)
  execute_process(COMMAND "${CMAKE_COMMAND}" -S "${ROOT}" -B "${WORK}" -G "${GENERATOR}"
      "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DTAVO_SERVER_KEYS_FILE=${KEYS_FILE}" --no-warn-unused-cli
      -D TAVO_BUILD_SIMULATOR=OFF -D TAVO_BUILD_CLI=OFF -D TAVO_BUILD_EXAMPLES=OFF ${ARGN}
    RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${ARGN}: cannot be configured:\n${output}")
  endif()
  file(READ "${WORK}/compile_commands.json" commands)
  execute_process(COMMAND "${CMAKE_CTEST_COMMAND}" --test-dir "${WORK}" -N -R "^build[.]"
    OUTPUT_VARIABLE tests ERROR_VARIABLE tests)
  if(commands MATCHES "tavo_tests" AND tests MATCHES "Total Tests: [1-9]")
    set(${result} "with tests" PARENT_SCOPE)
  elseif(commands MATCHES "tavo_tests" OR tests MATCHES "Total Tests: [1-9]")
    set(${result} "with half of them: ${tests}" PARENT_SCOPE)
  else()
    set(${result} "without tests" PARENT_SCOPE)
  endif()
endfunction()

function(expect expected)
  file(REMOVE_RECURSE "${WORK}")
  configure(outcome ${ARGN})
  if(NOT outcome STREQUAL expected)
    message(SEND_ERROR "${ARGN}: ${outcome}, expected: ${expected}")
  endif()
endfunction()

set(no_gtest -D CMAKE_DISABLE_FIND_PACKAGE_GTest=ON)
expect("without tests" -D BUILD_TESTING=OFF ${no_gtest})
expect("without tests" -D TAVO_BUILD_TESTS=OFF ${no_gtest})
expect("without tests" -D BUILD_TESTING=ON -D TAVO_BUILD_TESTS=OFF ${no_gtest})
expect("with tests" -D BUILD_TESTING=ON)
expect("with tests")
