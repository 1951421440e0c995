# Compile settings of every target in this project. Users of the libraries do not inherit them.
function(tavo_target_settings target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /permissive- /utf-8 $<$<BOOL:${TAVO_WERROR}>:/WX>)
  else()
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
      $<$<BOOL:${TAVO_WERROR}>:-Werror>)
    # When optimising, GCC 12 falsely reports overlapping memory if a literal is joined with a temporary string.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
      target_compile_options(${target} PRIVATE -Wno-restrict)
    endif()
  endif()
  if(TAVO_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${TAVO_SANITIZE} -fno-omit-frame-pointer
      -fno-sanitize-recover=all)
    target_link_options(${target} PRIVATE -fsanitize=${TAVO_SANITIZE})
  endif()
endfunction()

# tavo_filter_files(<list> INCLUDE|EXCLUDE <regex>): keeps or removes the files whose path matches. Paths are relative
# to the project's folder, so the place of the checkout does not matter.
function(tavo_filter_files list mode regex)
  if(NOT mode MATCHES "^(INCLUDE|EXCLUDE)$")
    message(FATAL_ERROR "tavo_filter_files: neither INCLUDE nor EXCLUDE: ${mode}")
  endif()
  set(kept "")
  foreach(file IN LISTS ${list})
    file(RELATIVE_PATH path "${tavo_client_SOURCE_DIR}" "${file}")
    if((path MATCHES "${regex}" AND mode STREQUAL "INCLUDE")
        OR (NOT path MATCHES "${regex}" AND mode STREQUAL "EXCLUDE"))
      list(APPEND kept "${file}")
    endif()
  endforeach()
  set(${list} "${kept}" PARENT_SCOPE)
endfunction()

# Removes sources for other systems, which end in _posix or _windows, from a list.
function(tavo_keep_sources_of_this_system list)
  if(WIN32)
    tavo_filter_files(${list} EXCLUDE "_posix(_test)?\\.cpp$")
  else()
    tavo_filter_files(${list} EXCLUDE "_windows(_test)?\\.cpp$")
  endif()
  set(${list} "${${list}}" PARENT_SCOPE)
endfunction()

# Adds a library: its sources, and as public headers those outside of "internal" folders.
function(tavo_add_library target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "EXPORT_NAME" "SOURCES;HEADERS")
  tavo_filter_files(arg_HEADERS EXCLUDE "/internal/")
  add_library(${target} ${arg_SOURCES})
  add_library(tavo::${arg_EXPORT_NAME} ALIAS ${target})
  tavo_target_settings(${target})
  target_sources(${target} PUBLIC FILE_SET HEADERS
    BASE_DIRS "${PROJECT_SOURCE_DIR}" FILES ${arg_HEADERS})
  # Checked by the library's export macro, such as TAVO_CLIENT_BUILDING_DLL.
  string(TOUPPER "${target}_BUILDING_DLL" building_dll)
  # Position independent even if static, so that the library fits into an application's plug-in.
  set_target_properties(${target} PROPERTIES
    EXPORT_NAME ${arg_EXPORT_NAME}
    DEFINE_SYMBOL ${building_dll}
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    POSITION_INDEPENDENT_CODE ON
    VERIFY_INTERFACE_HEADER_SETS ON)
  # Elsewhere static and shared libraries compile alike, so the compiler cache serves the second kind.
  if(NOT WIN32)
    set_target_properties(${target} PROPERTIES DEFINE_SYMBOL "")
  endif()
endfunction()

# Installed programs find a shared library relative to themselves, even if the installation is moved.
function(tavo_add_program target)
  add_executable(${target} ${ARGN})
  tavo_target_settings(${target})
  if(NOT WIN32 AND NOT IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    file(RELATIVE_PATH to_libraries "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${to_libraries}")
  endif()
  if(TAVO_INSTALL)
    install(TARGETS ${target} RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT tools)
  endif()
endfunction()
