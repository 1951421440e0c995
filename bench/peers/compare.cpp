#include <bench/peers/peer.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <stdexcept>

#include <fmt/format.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include <bench/appliance.h>
#include <bench/bench.h>
#include <bench/report.h>
#include <bench/rounds.h>
#include <bench/server_process.h>
#include <bench/sockets.h>

namespace bench::peers {

void Client::turns(std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        if (turn(true) != 1)
            throw std::runtime_error("a wrong answer");
}

pid_t Client::process() const { return ::getpid(); }

namespace {

constexpr std::size_t batchSize = 1000;
constexpr std::size_t blockSize = std::size_t{16} * 1024 * 1024;

/// The peer's server in a process of its own, which ends with this one.
class PeerServer {
public:
    PeerServer(const Peer& peer, int processor) {
        int ends[2];
        checked(::pipe(ends), "pipe");
        const Descriptor readEnd(ends[0]);
        Descriptor writeEnd(ends[1]);
        process_ = static_cast<pid_t>(checked(::fork(), "fork"));
        if (process_ == 0)
            run(peer, processor, writeEnd);
        writeEnd = Descriptor(-1);
        if (::read(readEnd.number(), &port_, sizeof port_) != static_cast<ssize_t>(sizeof port_)) {
            ::waitpid(process_, nullptr, 0);
            throw std::runtime_error(std::string(peer.name) + " could not listen");
        }
    }
    PeerServer(const PeerServer&) = delete;
    PeerServer& operator=(const PeerServer&) = delete;
    ~PeerServer() {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }

    int port() const { return port_; }
    pid_t process() const { return process_; }

private:
    [[noreturn]] static void run(const Peer& peer, int processor, const Descriptor& portPipe) {
        try {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            pinTo(processor);
            peer.serve([&](int port) { checked(::write(portPipe.number(), &port, sizeof port), "write"); });
        } catch (const std::exception& failure) {
            std::fprintf(stderr, "%s: %s\n", peer.name, failure.what());
        }
        ::_exit(1);
    }

    pid_t process_ = -1;
    int port_ = 0;
};

/// The raw client and the peer take turns, each with the processor time of itself and its server.
class Rows {
public:
    Rows(const Peer& peer, int processor)
        : name_(peer.name)
        , hasList_(peer.hasList)
        , appliance_(Appliance::groupSize)
        , rawServer_(appliance_, processor)
        , peerServer_(peer, processor)
        , raw_(rawServer_.address(), rawServer_.port())
        , client_(peer.connect(peerServer_.port()))
        , rawClock_(Clock::processor(rawServer_.process()))
        , peerClock_(Clock::processors(client_->process(), peerServer_.process())) {}

    void measureAll() {
        const Bytes flag{1};
        add("single call", 500, 20, "turn", flag, 1, [&](std::size_t pieces) { client_->turns(pieces); });
        add("1000 calls at once", 100, 1, "turn", flag, batchSize,
            [&](std::size_t) { insist(client_->calls(batchSize) == batchSize); });
        if (hasList_)
            add("one call with a list of 1000", 300, 1, "turn", flag, batchSize,
                [&](std::size_t) { insist(client_->list(batchSize) == batchSize); });
        add("download 16 MiB", 30, 1, "fetch", support::u32(static_cast<std::uint32_t>(blockSize)), 1,
            [&](std::size_t) { insist(client_->download(blockSize) == blockSize); });
        const Bytes data(blockSize, 0xA5);
        add("upload 16 MiB", 30, 1, "store", support::block(data), 1,
            [&](std::size_t) { client_->upload(data); });
    }

private:
    static void insist(bool good) {
        if (!good)
            throw std::runtime_error("a wrong answer");
    }

    template <class Work>
    static double timed(const Clock& clock, std::size_t pieces, Work& work) {
        work(1); // finds what it needs again after the work of the other
        return clock.timed([&] { work(pieces); }) / static_cast<double>(pieces);
    }

    template <class Work>
    void add(const char* what, std::size_t rounds, std::size_t pieces, const char* method,
             const Bytes& parameters, std::size_t count, Work work) {
        RawCall rawCall(appliance_, method, parameters, count);
        auto rawWork = [&](std::size_t most) {
            for (std::size_t i = 0; i < most; ++i)
                rawCall(raw_);
        };
        const auto times = interleavedTimes(
            rounds, [&] { return timed(rawClock_, pieces, rawWork); },
            [&] { return timed(peerClock_, pieces, work); });
        fmt::print("| {} | {} | {} x raw | {} | {} | {} |\n", what, name_, number(times.ratio.value),
                   number(times.ratio.noise), duration(times.raw), duration(times.library.value));
        std::fflush(stdout);
    }

    const char* name_;
    bool hasList_;
    Appliance appliance_;
    ServerProcess rawServer_;
    PeerServer peerServer_;
    RawClient raw_;
    std::unique_ptr<Client> client_;
    Clock rawClock_;
    Clock peerClock_;
};

} // namespace

int compare(const Peer& peer) {
    try {
        const auto processor = allowedProcessors().front();
        pinTo(processor);
        Rows(peer, processor).measureAll();
        return 0;
    } catch (const std::exception& failure) {
        fmt::print(stderr, "{}: {}\n", peer.name, failure.what());
        return 2;
    }
}

} // namespace bench::peers
