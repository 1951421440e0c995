# Header-only packages of the building machine, for a target machine that has none of its own.

# Finds `package` in the target's folders, where a toolchain file names some. Otherwise makes `target` of the building
# machine's own HEADERS.
macro(tavo_find_or_take_host_headers package target)
  if(CMAKE_SYSROOT OR CMAKE_FIND_ROOT_PATH)
    find_package(${package} CONFIG QUIET)
  endif()
  if(NOT ${package}_FOUND)
    tavo_take_host_headers(${package} ${target} ${ARGN})
    set(${package}_FOUND TRUE)
  endif()
endmacro()

function(tavo_take_host_headers package target)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "HEADERS;DEFINITIONS")
  tavo_link_host_headers(${package} folder ${arg_HEADERS})
  if(NOT TARGET ${target})
    add_library(${target} INTERFACE IMPORTED GLOBAL)
    target_include_directories(${target} SYSTEM INTERFACE "${folder}")
    target_compile_definitions(${target} INTERFACE ${arg_DEFINITIONS})
  endif()
endfunction()

# Links the headers into a folder of their own, because a cross compiler must not search /usr/include as a whole.
function(tavo_link_host_headers package result)
  set(folder "${PROJECT_BINARY_DIR}/host_headers/${package}")
  file(MAKE_DIRECTORY "${folder}")
  foreach(header IN LISTS ARGN)
    if(NOT EXISTS "/usr/include/${header}")
      message(FATAL_ERROR "${package} is found neither for ${CMAKE_SYSTEM_NAME} nor as /usr/include/${header}")
    endif()
    file(CREATE_LINK "/usr/include/${header}" "${folder}/${header}" SYMBOLIC)
  endforeach()
  set(${result} "${folder}" PARENT_SCOPE)
endfunction()
