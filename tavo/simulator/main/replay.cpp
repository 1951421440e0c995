#include <tavo/simulator/main/replay.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include <asio/buffer.hpp>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/signal_set.hpp>
#include <asio/write.hpp>
#include <fmt/format.h>

#include <tavo/client.h>
#include <tavo/server/frames.h>
#include <tavo/server/listener.h>
#include <tavo/server/request_assembler.h>
#include <tavo/simulator/main/printable_text.h>
#include <tavo/trace/capture.h>
#include <tavo/trace/difference.h>

namespace {

namespace server = TAVO::server;
namespace trace = TAVO::trace;

struct Recording {
    std::vector<trace::Exchange> exchanges;
    trace::Names names;
};

Recording recordingIn(const std::string& file) {
    constexpr std::size_t mostKept = 256u << 20;
    constexpr std::size_t mostBytes = std::size_t{512} << 20;
    std::ifstream in(file, std::ios::binary);
    if (!in)
        throw std::invalid_argument(fmt::format("cannot read '{}'", file));
    Recording recording;
    const trace::Names* device = nullptr;
    std::size_t bytes = 0;
    const auto refuse = [&file](std::string_view why) {
        throw std::invalid_argument(fmt::format("cannot replay '{}': {}", file, why));
    };
    trace::Capture capture({}, mostKept, [&](trace::Exchange&& exchange, const trace::Names& names) {
        if (device && device != &names)
            refuse("it has conversations with several devices");
        device = &names;
        for (const auto& call : exchange.calls)
            bytes += sizeof call + call.parameters.size() + call.result.size();
        bytes += sizeof exchange;
        if (bytes > mostBytes)
            refuse("it has more than 512 MiB of calls");
        recording.exchanges.push_back(std::move(exchange));
    });
    try {
        capture.read(in);
    } catch (const trace::FormatError& error) {
        refuse(error.what());
    }
    if (recording.exchanges.empty())
        refuse("it has no requests");
    recording.names = *device;
    return recording;
}

std::vector<std::uint8_t> replyOf(const trace::Exchange& exchange) {
    std::uint32_t results = 0;
    for (const auto& call : exchange.calls)
        results += call.hasResult ? 1 : 0;
    std::vector<std::uint8_t> reply;
    server::appendReplyHead(reply, exchange.error, results);
    for (const auto& call : exchange.calls)
        if (call.hasResult) {
            server::appendWord(reply, static_cast<std::uint32_t>(call.result.size()));
            reply.insert(reply.end(), call.result.begin(), call.result.end());
        }
    return reply;
}

/// Serves one client at a time.
class Player {
public:
    Player(asio::io_context& context, asio::ip::tcp::acceptor acceptor, Recording recording)
        : context_(context)
        , acceptor_(std::move(acceptor))
        , recording_(std::move(recording)) {
        accept();
    }

    std::size_t asked() const { return next_; }
    std::size_t recorded() const { return recording_.exchanges.size(); }
    /// Empty as long as nothing differed.
    const std::string& difference() const { return difference_; }

private:
    void accept() {
        acceptor_.async_accept([this](const asio::error_code& failure, asio::ip::tcp::socket socket) {
            if (failure)
                return context_.stop();
            socket_.emplace(std::move(socket));
            server::keepFromStartedPrograms(socket_->native_handle());
            assembler_ = {};
            read();
        });
    }

    void leave() {
        socket_.reset();
        if (next_ == recorded())
            context_.stop();
        else
            accept();
    }

    void differ(const std::string& what) {
        difference_ = fmt::format("request {} differs: {}", next_ + 1, what);
        socket_.reset();
        context_.stop();
    }

    void read() {
        socket_->async_read_some(asio::buffer(received_),
                                 [this](const asio::error_code& failure, std::size_t count) {
                                     if (failure)
                                         return leave();
                                     assembler_.feed(std::span(received_).first(count));
                                     proceed();
                                 });
    }

    void proceed() {
        using State = server::RequestAssembler::State;
        const auto state = assembler_.scan();
        if (state == State::incomplete)
            return read();
        if (state == State::tooLarge)
            return differ("it is too large");
        answer(assembler_.take());
    }

    void answer(const std::vector<std::uint8_t>& request) {
        if (next_ == recorded()) {
            server::RequestFrame frame(request);
            std::string name = "an empty request";
            if (frame.callCount() > 0) {
                const auto call = frame.nextCall();
                name = recording_.names.nameOf({call.instanceId, call.methodId});
            }
            return differ("expected nothing more, came " + name);
        }
        const auto& exchange = recording_.exchanges[next_];
        if (const auto what = trace::differenceOf(exchange, request, recording_.names); !what.empty())
            return differ(what);
        ++next_;
        if (!exchange.isAnswered)
            return leave(); // as the device did
        reply_ = replyOf(exchange);
        asio::async_write(*socket_, asio::buffer(reply_),
                          [this](const asio::error_code& failure, std::size_t) {
                              if (failure)
                                  return leave();
                              proceed();
                          });
    }

    asio::io_context& context_;
    asio::ip::tcp::acceptor acceptor_;
    Recording recording_;
    std::optional<asio::ip::tcp::socket> socket_;
    server::RequestAssembler assembler_;
    std::array<std::uint8_t, 65536> received_{};
    std::vector<std::uint8_t> reply_;
    std::size_t next_ = 0;
    std::string difference_;
};

} // namespace

int replay(const std::string& file, const std::string& host, std::uint16_t port, bool isQuiet) {
    TAVO::CoreObjects::registerCoreObjects();
    TAVO::HWDebug::HwdObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();
    auto recording = recordingIn(file);
    asio::io_context context;
    asio::signal_set end(context, SIGINT, SIGTERM);
    end.async_wait([&](const asio::error_code& failure, int) {
        if (!failure)
            context.stop();
    });
    auto acceptor = server::listenOn(context, host, port);
    const auto listening = acceptor.local_endpoint().port();
    Player player(context, std::move(acceptor), std::move(recording));
    fmt::print("listening on {}:{}\n", host, listening);
    std::fflush(stdout);
    context.run();
    if (!player.difference().empty()) {
        fmt::print(stderr, "tavo-sim: {}\n", printableText(player.difference()));
        return 1;
    }
    if (!isQuiet)
        fmt::print(stderr, "replayed {} of {} requests\n", player.asked(), player.recorded());
    return 0;
}
