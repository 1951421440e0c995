# Header-only packages of the build machine, for a target machine without them.

# Finds `package` in the target's folders if the toolchain file names any. Otherwise makes `target` from the HEADERS of
# the build machine.
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

# Links the headers into a separate folder, because a cross compiler must not search all of /usr/include.
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
