include("${CMAKE_CURRENT_LIST_DIR}/steps.cmake")
install("${MAIN_BUILD}")
