# Turns a file of server keys into the source that defines TAVO::serverKeys().
#
# A file has four lines "firstFlag secondFlag key", the key as 32 hexadecimal digits, in the order of flags
# (0,0), (0,1), (1,0), (1,1). Blank lines and lines that start with # are comments. Messages never show a key.

# Fails with place and reason unless the file is well formed; result gets one "0,0,<32 digits>" per key.
function(tavo_read_server_keys file result)
  if(NOT EXISTS "${file}" OR IS_DIRECTORY "${file}")
    message(FATAL_ERROR "${file}: no such file of server keys (TAVO_SERVER_KEYS_FILE)")
  endif()
  # Some commands would end a line at a zero byte, others not.
  file(READ "${file}" bytes HEX)
  string(REGEX MATCHALL ".." bytes "${bytes}")
  if("00" IN_LIST bytes)
    message(FATAL_ERROR "${file}: holds a zero byte, so it is no text")
  endif()
  set(flags_in_order "0 0" "0 1" "1 0" "1 1")
  file(READ "${file}" rest)
  string(REPLACE "\r\n" "\n" rest "${rest}")
  set(number 0)
  set(count 0)
  set(keys "")
  while(NOT rest STREQUAL "")
    math(EXPR number "${number} + 1")
    string(FIND "${rest}" "\n" end)
    if(end EQUAL -1)
      set(line "${rest}")
      set(rest "")
    else()
      string(SUBSTRING "${rest}" 0 ${end} line)
      math(EXPR end "${end} + 1")
      string(SUBSTRING "${rest}" ${end} -1 rest)
    endif()
    string(STRIP "${line}" line)
    if(line STREQUAL "" OR line MATCHES "^#")
      continue()
    endif()

    set(place "${file}:${number}")
    if(count EQUAL 4)
      message(FATAL_ERROR "${place}: a fifth key, but there are exactly four")
    endif()
    if(NOT line MATCHES "^([^ \t]+)[ \t]+([^ \t]+)[ \t]+([^ \t]+)$")
      message(FATAL_ERROR "${place}: not of the form 'firstFlag secondFlag key'")
    endif()
    set(first "${CMAKE_MATCH_1}")
    set(second "${CMAKE_MATCH_2}")
    set(key "${CMAKE_MATCH_3}")
    if(NOT first MATCHES "^[01]$" OR NOT second MATCHES "^[01]$")
      message(FATAL_ERROR "${place}: a flag is neither 0 nor 1")
    endif()
    list(GET flags_in_order ${count} expected)
    if(NOT "${first} ${second}" STREQUAL "${expected}")
      message(FATAL_ERROR "${place}: flags ${first} ${second} out of order, expected ${expected}")
    endif()
    if(NOT key MATCHES "^[0-9A-Fa-f]+$")
      message(FATAL_ERROR "${place}: the key has a character that is not a hexadecimal digit")
    endif()
    string(LENGTH "${key}" length)
    if(NOT length EQUAL 32)
      message(FATAL_ERROR "${place}: the key has ${length} hexadecimal digits, expected 32")
    endif()
    list(APPEND keys "${first},${second},${key}")
    math(EXPR count "${count} + 1")
  endwhile()
  if(NOT count EQUAL 4)
    message(FATAL_ERROR "${file}:${number}: the file ends after ${count} keys, expected 4")
  endif()
  set(${result} "${keys}" PARENT_SCOPE)
endfunction()

function(tavo_write_server_keys_source keys source)
  set(rows "")
  foreach(entry IN LISTS keys)
    string(REGEX MATCH "^([01]),([01]),(.+)$" entry "${entry}")
    string(REPLACE "1" "true" first "${CMAKE_MATCH_1}")
    string(REPLACE "0" "false" first "${first}")
    string(REPLACE "1" "true" second "${CMAKE_MATCH_2}")
    string(REPLACE "0" "false" second "${second}")
    string(REGEX REPLACE "([0-9A-Fa-f][0-9A-Fa-f])" "0x\\1, " bytes "${CMAKE_MATCH_3}")
    string(REGEX REPLACE ", $" "" bytes "${bytes}")
    string(APPEND rows "    {${first}, ${second}, {${bytes}}},\n")
  endforeach()
  file(CONFIGURE OUTPUT "${source}" @ONLY CONTENT
"// Written by the build from the file that TAVO_SERVER_KEYS_FILE names.
#include <tavo/client/exchange/server_keys.h>

namespace TAVO {

namespace {
constexpr std::array<ServerKey, 4> keys{{
@rows@}};
} // namespace

std::span<const ServerKey> serverKeys() noexcept { return keys; }

} // namespace TAVO
")
endfunction()
