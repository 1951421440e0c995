#include <bench/peers/python_client.h>

#include <thrift/protocol/TBinaryProtocol.h>
#include <thrift/server/TThreadedServer.h>
#include <thrift/transport/TBufferTransports.h>
#include <thrift/transport/TServerSocket.h>
#include <thrift/transport/TSocket.h>

#include "Appliance.h"

namespace {

using bench::peers::Bytes;
namespace thrift = apache::thrift;
using thrift::protocol::TBinaryProtocol;
using thrift::protocol::TBinaryProtocolFactory;
using thrift::transport::TBufferedTransport;
using thrift::transport::TServerSocket;
using thrift::transport::TSocket;

/// A buffer as large as the read-ahead of the library; Thrift's own choice of 512 bytes would be many sends.
std::shared_ptr<thrift::transport::TTransport>
buffered(std::shared_ptr<thrift::transport::TTransport> transport) {
    return std::make_shared<TBufferedTransport>(std::move(transport), 64 * 1024);
}

class BufferedFactory final : public thrift::transport::TTransportFactory {
public:
    std::shared_ptr<thrift::transport::TTransport>
    getTransport(std::shared_ptr<thrift::transport::TTransport> transport) override {
        return buffered(std::move(transport));
    }
};

class Served final : public PeerThrift::ApplianceIf {
public:
    void turn(PeerThrift::Result& result, const PeerThrift::Call& call) override {
        result.code = 0;
        result.state = call.on ? 1 : 0;
    }
    void batch(std::vector<PeerThrift::Result>& results,
               const std::vector<PeerThrift::Call>& calls) override {
        results.resize(calls.size());
        for (std::size_t i = 0; i < calls.size(); ++i)
            turn(results[i], calls[i]);
    }
    void fetch(std::string& data, const std::int32_t length) override {
        data.assign(static_cast<std::size_t>(length), static_cast<char>(bench::peers::served));
    }
    std::int32_t store(const std::string& data) override { return data.empty() ? 1 : 0; }
};

class ThriftClient final : public bench::peers::Client {
public:
    explicit ThriftClient(int port)
        : transport_(buffered(std::make_shared<TSocket>("127.0.0.1", port)))
        , client_(std::make_shared<TBinaryProtocol>(transport_)) {
        transport_->open();
    }

    unsigned turn(bool on) override {
        PeerThrift::Result result;
        client_.turn(result, callOf(on));
        return static_cast<unsigned>(result.state);
    }
    unsigned calls(std::size_t count) override {
        for (std::size_t i = 0; i < count; ++i)
            client_.send_turn(callOf(true));
        unsigned sum = 0;
        for (std::size_t i = 0; i < count; ++i) {
            PeerThrift::Result result;
            client_.recv_turn(result);
            sum += static_cast<unsigned>(result.state);
        }
        return sum;
    }
    unsigned list(std::size_t count) override {
        std::vector<PeerThrift::Call> calls;
        calls.reserve(count);
        for (std::size_t i = 0; i < count; ++i)
            calls.push_back(callOf(true));
        std::vector<PeerThrift::Result> results;
        client_.batch(results, calls);
        unsigned sum = 0;
        for (const auto& result : results)
            sum += static_cast<unsigned>(result.state);
        return sum;
    }
    std::size_t download(std::size_t length) override {
        std::string data;
        client_.fetch(data, static_cast<std::int32_t>(length));
        return data.size();
    }
    void upload(const Bytes& data) override { client_.store(std::string(data.begin(), data.end())); }

private:
    static PeerThrift::Call callOf(bool on) {
        PeerThrift::Call call;
        call.object = 16;
        call.method = 4;
        call.on = on;
        return call;
    }

    std::shared_ptr<thrift::transport::TTransport> transport_;
    PeerThrift::ApplianceClient client_;
};

class PortTeller final : public thrift::server::TServerEventHandler {
public:
    PortTeller(std::shared_ptr<TServerSocket> socket, std::function<void(int)> tell)
        : socket_(std::move(socket))
        , tell_(std::move(tell)) {}
    void preServe() override { tell_(socket_->getPort()); }

private:
    std::shared_ptr<TServerSocket> socket_;
    std::function<void(int)> tell_;
};

void serve(const std::function<void(int)>& tell) {
    const auto socket = std::make_shared<TServerSocket>("127.0.0.1", 0);
    thrift::server::TThreadedServer server(
        std::make_shared<PeerThrift::ApplianceProcessor>(std::make_shared<Served>()), socket,
        std::make_shared<BufferedFactory>(), std::make_shared<TBinaryProtocolFactory>());
    server.setServerEventHandler(std::make_shared<PortTeller>(socket, tell));
    server.serve();
}

} // namespace

int main(int argc, char** argv) {
    return bench::peers::compareEither(
        argc, argv, {"Thrift", serve, [](int port) { return std::make_unique<ThriftClient>(port); }},
        "thrift_client.py");
}
