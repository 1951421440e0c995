# Finds the standalone, header-only asio (Debian: libasio-dev) and provides it as Asio::asio.
find_path(Asio_INCLUDE_DIR asio.hpp)
mark_as_advanced(Asio_INCLUDE_DIR)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Asio REQUIRED_VARS Asio_INCLUDE_DIR)

if(Asio_FOUND AND NOT TARGET Asio::asio)
  add_library(Asio::asio INTERFACE IMPORTED)
  target_include_directories(Asio::asio SYSTEM INTERFACE "${Asio_INCLUDE_DIR}")
  target_compile_definitions(Asio::asio INTERFACE ASIO_STANDALONE)
  if(WIN32)
    target_compile_definitions(Asio::asio INTERFACE _WIN32_WINNT=0x0601)
    target_link_libraries(Asio::asio INTERFACE mswsock ws2_32)
  endif()
endif()
