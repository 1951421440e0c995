# What every target of this project is compiled with. Nothing of it reaches a user of the libraries.
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
    # GCC 12 takes a literal joined with a temporary string for overlapping memory when it optimises.
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

# Leaves out of a list of sources those that end in _posix or _windows and are for another system.
function(tavo_keep_sources_of_this_system list)
  set(sources ${${list}})
  if(WIN32)
    list(FILTER sources EXCLUDE REGEX "_posix(_test)?\\.cpp$")
  else()
    list(FILTER sources EXCLUDE REGEX "_windows(_test)?\\.cpp$")
  endif()
  set(${list} "${sources}" PARENT_SCOPE)
endfunction()

# A library of this project: its sources, and as public headers those outside of "internal" folders.
function(tavo_add_library target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "EXPORT_NAME" "SOURCES;HEADERS")
  list(FILTER arg_HEADERS EXCLUDE REGEX "/internal/")
  add_library(${target} ${arg_SOURCES})
  add_library(tavo::${arg_EXPORT_NAME} ALIAS ${target})
  tavo_target_settings(${target})
  target_sources(${target} PUBLIC FILE_SET HEADERS
    BASE_DIRS "${PROJECT_SOURCE_DIR}" FILES ${arg_HEADERS})
  # Position independent even when static, so that the library fits into an application's own plug-in.
  set_target_properties(${target} PROPERTIES
    EXPORT_NAME ${arg_EXPORT_NAME}
    DEFINE_SYMBOL TAVO_CLIENT_BUILDING_DLL
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    POSITION_INDEPENDENT_CODE ON
    VERIFY_INTERFACE_HEADER_SETS ON)
endfunction()

# Installed programs find a shared library beside them, wherever the installation is moved to.
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
