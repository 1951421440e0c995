include(HostHeaders)
tavo_link_host_headers(Asio Asio_INCLUDE_DIR asio asio.hpp)
include("${CMAKE_CURRENT_LIST_DIR}/../FindAsio.cmake")
