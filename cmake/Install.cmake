# The installed package: libraries, headers, CMake package "tavo_client" and pkg-config files.
include(CMakePackageConfigHelpers)

set(TAVO_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/tavo_client" CACHE STRING "Folder of the CMake package")
set(TAVO_INSTALL_PKGCONFIGDIR "${CMAKE_INSTALL_LIBDIR}/pkgconfig" CACHE STRING "Folder of the pkg-config files")
mark_as_advanced(TAVO_INSTALL_CMAKEDIR TAVO_INSTALL_PKGCONFIGDIR)

set(libraries tavo_client)
set(has_simulator OFF)
if(TARGET tavo_simulator)
  list(APPEND libraries tavo_simulator)
  set(has_simulator ON)
endif()

# tavo_install_libraries(<export> <library>...): with a file <export>.cmake of the CMake package.
function(tavo_install_libraries export)
  install(TARGETS ${ARGN} EXPORT ${export}
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
    FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT headers)
  install(EXPORT ${export} NAMESPACE tavo:: DESTINATION "${TAVO_INSTALL_CMAKEDIR}")
endfunction()
tavo_install_libraries(tavo_clientTargets ${libraries})
# Debian has the C interface in packages of its own.
if(TARGET tavo_c)
  tavo_install_libraries(tavo_cTargets tavo_c)
  list(APPEND libraries tavo_c)
endif()

configure_package_config_file(cmake/tavo_clientConfig.cmake.in
  "${PROJECT_BINARY_DIR}/package/tavo_clientConfig.cmake"
  INSTALL_DESTINATION "${TAVO_INSTALL_CMAKEDIR}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/package/tavo_clientConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES
  "${PROJECT_BINARY_DIR}/package/tavo_clientConfig.cmake"
  "${PROJECT_BINARY_DIR}/package/tavo_clientConfigVersion.cmake"
  DESTINATION "${TAVO_INSTALL_CMAKEDIR}")

# The pkg-config files locate the installation relative to themselves, unless a folder is absolute.
function(tavo_pkgconfig_folder folder result)
  if(IS_ABSOLUTE "${folder}")
    set(${result} "${folder}" PARENT_SCOPE)
  else()
    set(${result} "\${prefix}/${folder}" PARENT_SCOPE)
  endif()
endfunction()
if(IS_ABSOLUTE "${TAVO_INSTALL_PKGCONFIGDIR}")
  set(pkgconfig_prefix "${CMAKE_INSTALL_PREFIX}")
else()
  file(RELATIVE_PATH to_prefix "/${TAVO_INSTALL_PKGCONFIGDIR}" "/")
  string(REGEX REPLACE "/$" "" to_prefix "${to_prefix}")
  set(pkgconfig_prefix "\${pcfiledir}/${to_prefix}")
endif()
tavo_pkgconfig_folder("${CMAKE_INSTALL_LIBDIR}" pkgconfig_libdir)
tavo_pkgconfig_folder("${CMAKE_INSTALL_INCLUDEDIR}" pkgconfig_includedir)
set(client_private_libraries "")
set(simulator_private_libraries "-pthread")
# For the C compiler, which does not know what C++ needs; the flags of tavo_client.pc are for C++ alone.
set(c_private_libraries "-ltavo_client -lstdc++ -lm")
if(WIN32)
  set(client_private_libraries "-lws2_32")
  string(APPEND c_private_libraries " -lws2_32 -pthread")
  set(simulator_private_libraries "-lmswsock -pthread")
endif()
foreach(library IN LISTS libraries)
  configure_file(cmake/${library}.pc.in "${PROJECT_BINARY_DIR}/package/${library}.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/package/${library}.pc" DESTINATION "${TAVO_INSTALL_PKGCONFIGDIR}")
endforeach()

# A service of each user, for systemd; nothing enables it.
if(TARGET tavo AND CMAKE_SYSTEM_NAME STREQUAL "Linux")
  configure_file(tavo/cli/tavo-share@.service.in "${PROJECT_BINARY_DIR}/package/tavo-share@.service" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/package/tavo-share@.service" DESTINATION lib/systemd/user)
endif()
