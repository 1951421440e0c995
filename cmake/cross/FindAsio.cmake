include(HostHeaders)
tavo_take_host_headers(Asio Asio::asio HEADERS asio asio.hpp DEFINITIONS ASIO_STANDALONE)
