# The programs of an application, once its project has the library's targets.
get_target_property(type tavo::client TYPE)
if(EXPECTED_KIND STREQUAL "shared" AND NOT type STREQUAL "SHARED_LIBRARY"
   OR EXPECTED_KIND STREQUAL "static" AND NOT type STREQUAL "STATIC_LIBRARY")
  message(FATAL_ERROR "expected the ${EXPECTED_KIND} library, found a ${type}")
endif()

function(add_program name library)
  add_executable(${name} "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/${name}.cpp")
  target_link_libraries(${name} PRIVATE ${library})
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 60)
endfunction()

add_program(registry tavo::client)
include("${CMAKE_CURRENT_LIST_DIR}/golden_types.cmake")
target_compile_definitions(registry PRIVATE "GOLDEN_TYPES=${golden_types}")
add_program(boundary tavo::client)
if(WITH_SIMULATOR)
  add_program(session tavo::simulator)
endif()
