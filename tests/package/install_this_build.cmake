cmake_minimum_required(VERSION 3.23)

include("${CMAKE_CURRENT_LIST_DIR}/steps.cmake")
install("${MAIN_BUILD}")
