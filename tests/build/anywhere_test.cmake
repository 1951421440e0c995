# A checkout builds and installs the same files wherever it lies, even where the folders above it are named like those
# that the build looks for.
cmake_minimum_required(VERSION 3.23)

file(REMOVE_RECURSE "${WORK}")
set(elsewhere "${WORK}/internal/simulator/main/tests/package/tests/docs/tests/cli/x_windows/c++ checkout")
foreach(part IN ITEMS CMakeLists.txt cmake examples share tavo tests)
  file(COPY "${ROOT}/${part}" DESTINATION "${elsewhere}")
endforeach()

# What is compiled there, relative to the checkout.
function(configure checkout build result)
  execute_process(COMMAND "${CMAKE_COMMAND}" -S "${checkout}" -B "${build}" -G "${GENERATOR}"
      "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DTAVO_SERVER_KEYS_FILE=${KEYS_FILE}" --no-warn-unused-cli
    RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${checkout} cannot be configured:\n${output}")
  endif()
  set(sources "")
  file(STRINGS "${build}/compile_commands.json" lines REGEX "^ *\"file\": ")
  foreach(line IN LISTS lines)
    string(REGEX MATCH "\"file\": \"(.*)\"" line "${line}")
    set(file "${CMAKE_MATCH_1}")
    string(REPLACE "${build}/" "build/" file "${file}")
    string(REPLACE "${checkout}/" "" file "${file}")
    list(APPEND sources "${file}")
  endforeach()
  list(SORT sources)
  set(${result} "${sources}" PARENT_SCOPE)
endfunction()

configure("${ROOT}" "${WORK}/here" here)
configure("${elsewhere}" "${elsewhere}/build" there)
if(NOT here STREQUAL there)
  set(missing ${here})
  list(REMOVE_ITEM missing ${there})
  set(surplus ${there})
  list(REMOVE_ITEM surplus ${here})
  message(SEND_ERROR "not compiled elsewhere: ${missing}\ncompiled only elsewhere: ${surplus}")
endif()

execute_process(
  COMMAND "${CMAKE_COMMAND}" --install "${elsewhere}/build" --prefix "${WORK}/prefix" --component headers
  RESULT_VARIABLE status OUTPUT_QUIET)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "The headers cannot be installed from elsewhere")
endif()
file(GLOB_RECURSE published RELATIVE "${ROOT}" "${ROOT}/tavo/client/*.h" "${ROOT}/tavo/simulator/*.h")
list(FILTER published EXCLUDE REGEX "/internal/|^tavo/simulator/main/")
list(APPEND published tavo/c/tavo_c.h tavo/client.h)
list(SORT published)
file(GLOB_RECURSE installed RELATIVE "${WORK}/prefix/include" "${WORK}/prefix/include/*")
list(SORT installed)
list(LENGTH published expected)
list(LENGTH installed count)
if(NOT installed STREQUAL published)
  message(SEND_ERROR "${count} of ${expected} headers are installed from elsewhere:\n${installed}")
endif()
message(STATUS "${count} headers are installed")
