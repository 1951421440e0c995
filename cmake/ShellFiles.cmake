# What belongs to the tool beside the program: manual pages in build/man, and in build/completions the scripts that make
# shells complete its lines. A program that is linked with the tool's pieces writes them; it is not installed.
if(CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
  message(STATUS "The manual pages and completions of the tool are written by a program of this build: left out")
  return()
endif()

# The same in every build: the day on which the pages last changed much, or that of the package.
set(pages_date "2026-11-22")
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  string(TIMESTAMP pages_date "%Y-%m-%d" UTC)
endif()

add_executable(tavo_installed_files installed_files_main.cpp)
tavo_target_settings(tavo_installed_files)
target_link_libraries(tavo_installed_files PRIVATE tavo_cli)

set(pages "${PROJECT_BINARY_DIR}/man")
set(scripts "${PROJECT_BINARY_DIR}/completions")
set(written "${CMAKE_CURRENT_BINARY_DIR}/installed_files_${pages_date}")
add_custom_command(OUTPUT "${written}"
  COMMAND tavo_installed_files "${pages_date}" "${pages}" "${scripts}"
  COMMAND "${CMAKE_COMMAND}" -E copy "${PROJECT_SOURCE_DIR}/tavo/simulator/main/tavo-sim.1" "${pages}"
  COMMAND "${CMAKE_COMMAND}" -E touch "${written}"
  DEPENDS tavo_installed_files "${PROJECT_SOURCE_DIR}/tavo/simulator/main/tavo-sim.1"
  COMMENT "Writing the manual pages and completions of the tool"
  VERBATIM)
add_custom_target(tavo_shell_files ALL DEPENDS "${written}")

set(TAVO_INSTALL_BASHDIR "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" CACHE STRING
  "Folder of completions for bash")
set(TAVO_INSTALL_ZSHDIR "${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions" CACHE STRING "Folder of completions for zsh")
set(TAVO_INSTALL_FISHDIR "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d" CACHE STRING
  "Folder of completions for fish")
mark_as_advanced(TAVO_INSTALL_BASHDIR TAVO_INSTALL_ZSHDIR TAVO_INSTALL_FISHDIR)

if(TAVO_INSTALL)
  install(DIRECTORY "${pages}/" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT tools
    FILES_MATCHING PATTERN "*.1")
  install(FILES "${scripts}/tavo" DESTINATION "${TAVO_INSTALL_BASHDIR}" COMPONENT tools)
  install(FILES "${scripts}/_tavo" DESTINATION "${TAVO_INSTALL_ZSHDIR}" COMPONENT tools)
  install(FILES "${scripts}/tavo.fish" DESTINATION "${TAVO_INSTALL_FISHDIR}" COMPONENT tools)
endif()
