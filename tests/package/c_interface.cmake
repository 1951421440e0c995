# An application in C: with the CMake package, and with a C compiler and pkg-config alone.
cmake_minimum_required(VERSION 3.23)

include("${CMAKE_CURRENT_LIST_DIR}/steps.cmake")
file(REMOVE_RECURSE "${WORK}")
# Used where it was moved to, not where it was installed.
set(moved "${WORK}/moved")
file(COPY "${PREFIX}/" DESTINATION "${moved}")
configure_and_build("${CMAKE_CURRENT_LIST_DIR}/c" "${WORK}/application"
  "-DCMAKE_PREFIX_PATH=${moved}" "-DEXPECTED_KIND=${KIND}")
step("${CMAKE_CTEST_COMMAND}" --test-dir "${WORK}/application" --output-on-failure --no-tests=error)

file(GLOB_RECURSE found "${moved}/*/tavo_c.pc")
get_filename_component(folder "${found}" DIRECTORY)
get_filename_component(libraries "${folder}/.." ABSOLUTE)
if(KIND STREQUAL "shared")
  file(STRINGS "${ROOT}/tests/c/symbols.txt" expected)
  execute_process(COMMAND nm -D --defined-only --without-symbol-versions "${libraries}/libtavo_c.so"
    OUTPUT_VARIABLE listed COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL " [A-Z] tavo[^\n]*|[0-9a-f]+ [A-Za-z] [^\n]*" lines "${listed}")
  set(exported "")
  foreach(line IN LISTS lines)
    # The name of the version itself is absolute.
    if(line MATCHES " ([^A ]) ([^\n ]+)$")
      list(APPEND exported "${CMAKE_MATCH_2}")
    endif()
  endforeach()
  list(SORT exported)
  if(NOT exported STREQUAL expected)
    message(FATAL_ERROR "libtavo_c.so exports ${exported}\nbut tests/c/symbols.txt lists ${expected}")
  endif()
endif()

if(PKG_CONFIG)
  set(ENV{PKG_CONFIG_PATH} "${folder}")
  set(static "")
  if(KIND STREQUAL "static")
    set(static --static)
  endif()
  execute_process(COMMAND "${PKG_CONFIG}" --cflags tavo_c OUTPUT_VARIABLE compile COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND "${PKG_CONFIG}" --libs ${static} tavo_c OUTPUT_VARIABLE link COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(compile UNIX_COMMAND "${compile}")
  separate_arguments(link UNIX_COMMAND "${link}")
  step("${C_COMPILER}" -std=c99 -Wall -Wextra -pedantic -Werror ${compile}
    "${CMAKE_CURRENT_LIST_DIR}/sources/c_program.c" ${link} -o "${WORK}/c_program")
  set(ENV{LD_LIBRARY_PATH} "${libraries}")
  step("${WORK}/c_program")
endif()
