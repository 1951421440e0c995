#include <tavo/server/listener.h>

#include <stdexcept>

namespace TAVO::server {

asio::ip::tcp::acceptor listenOn(asio::io_context& context, const std::string& host, std::uint16_t port) {
    try {
        asio::ip::tcp::resolver resolver(context);
        const auto found = resolver.resolve(host, std::to_string(port), asio::ip::tcp::resolver::passive);
        const auto endpoint = found.begin()->endpoint();
        asio::ip::tcp::acceptor acceptor(context);
        acceptor.open(endpoint.protocol());
        keepFromStartedPrograms(acceptor.native_handle());
        takePortForOne(acceptor);
        acceptor.bind(endpoint);
        acceptor.listen();
        return acceptor;
    } catch (const std::system_error& failure) {
        throw std::runtime_error("Cannot listen on " + host + " port " + std::to_string(port) + ": " +
                                 failure.code().message());
    }
}

} // namespace TAVO::server
