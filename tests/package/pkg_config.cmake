# An application that is built by a compiler and pkg-config alone.
cmake_minimum_required(VERSION 3.23)

include("${CMAKE_CURRENT_LIST_DIR}/steps.cmake")
file(REMOVE_RECURSE "${WORK}")
# Used where it was moved to, not where it was installed.
file(COPY "${PREFIX}/" DESTINATION "${WORK}/moved")
file(GLOB_RECURSE found "${WORK}/moved/*/tavo_client.pc")
get_filename_component(folder "${found}" DIRECTORY)
get_filename_component(libraries "${folder}/.." ABSOLUTE)
set(ENV{PKG_CONFIG_PATH} "${folder}")
set(ENV{LD_LIBRARY_PATH} "${libraries}")

function(pkg_config result)
  execute_process(COMMAND "${PKG_CONFIG}" ${ARGN}
    OUTPUT_VARIABLE output RESULT_VARIABLE status OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "pkg-config ${ARGN} failed")
  endif()
  separate_arguments(output UNIX_COMMAND "${output}")
  set(${result} "${output}" PARENT_SCOPE)
endfunction()

function(build_and_run name package)
  set(static "")
  if(KIND STREQUAL "static")
    set(static --static)
  endif()
  pkg_config(compile --cflags ${package})
  pkg_config(link --libs ${static} ${package})
  separate_arguments(flags UNIX_COMMAND "${FLAGS}")
  step(${LAUNCHER} "${COMPILER}" ${flags} -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror
    ${compile} -c "${CMAKE_CURRENT_LIST_DIR}/sources/${name}.cpp" -o "${WORK}/${name}.o")
  step("${COMPILER}" ${flags} "${WORK}/${name}.o" ${link} -o "${WORK}/${name}")
  step("${WORK}/${name}")
endfunction()

file(STRINGS "${ROOT}/tavo/client/version_number.h" line REGEX "ClientLibraryVersion =")
string(REGEX MATCH "[0-9]+\\.[0-9]+\\.[0-9]+" expected "${line}")
pkg_config(version --modversion tavo_client)
if(NOT version STREQUAL expected)
  message(FATAL_ERROR "tavo_client.pc says version ${version}, the library is ${expected}")
endif()

build_and_run(registry tavo_client)
build_and_run(boundary tavo_client)
if(WITH_SIMULATOR)
  build_and_run(session tavo_simulator)
endif()
