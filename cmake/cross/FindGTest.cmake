# GoogleTest, compiled for the target from source (Debian: googletest).
set(TAVO_GOOGLETEST_SOURCES /usr/src/googletest CACHE PATH "GoogleTest's sources, for tests on another machine")
if(NOT EXISTS "${TAVO_GOOGLETEST_SOURCES}/googletest/src/gtest-all.cc")
  message(FATAL_ERROR "There is no GoogleTest in ${TAVO_GOOGLETEST_SOURCES}")
endif()
find_package(Threads REQUIRED)

function(tavo_add_googletest_library name part)
  add_library(tavo_${name} STATIC EXCLUDE_FROM_ALL "${TAVO_GOOGLETEST_SOURCES}/${part}/src/${ARGN}")
  add_library(GTest::${name} ALIAS tavo_${name})
  target_compile_features(tavo_${name} PUBLIC cxx_std_20)
  target_include_directories(tavo_${name}
    SYSTEM PUBLIC "${TAVO_GOOGLETEST_SOURCES}/${part}/include"
    PRIVATE "${TAVO_GOOGLETEST_SOURCES}/${part}")
endfunction()

if(NOT TARGET GTest::gtest)
  tavo_add_googletest_library(gtest googletest gtest-all.cc)
  tavo_add_googletest_library(gmock googlemock gmock-all.cc)
  tavo_add_googletest_library(gtest_main googletest gtest_main.cc)
  target_link_libraries(tavo_gtest PUBLIC Threads::Threads)
  target_link_libraries(tavo_gmock PUBLIC tavo_gtest)
  target_link_libraries(tavo_gtest_main PUBLIC tavo_gtest)
endif()
set(GTest_FOUND TRUE)
