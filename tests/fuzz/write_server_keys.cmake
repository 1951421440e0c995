# Does what the build does with a file of server keys: KEYS_FILE becomes SOURCE, or is refused.
cmake_minimum_required(VERSION 3.23)
include("${CMAKE_CURRENT_LIST_DIR}/../../cmake/ServerKeys.cmake")
tavo_read_server_keys("${KEYS_FILE}" keys)
tavo_write_server_keys_source("${keys}" "${SOURCE}")
