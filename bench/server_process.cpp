#include <bench/server_process.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <exception>
#include <memory>
#include <new>
#include <stdexcept>
#include <thread>

#include <sched.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include <bench/sockets.h>

namespace bench {

namespace {

constexpr std::size_t bufferSize = 1024 * 1024;

void serve(Appliance& appliance, std::atomic<std::uint64_t>& exchanges, const Descriptor& connection) {
    const int socket = connection.number();
    const auto buffer = std::make_unique_for_overwrite<std::uint8_t[]>(bufferSize);
    RequestKey knownKey;
    const Bytes* reply = nullptr;
    while (true) {
        std::uint64_t received = 0;
        const auto receiveUpTo = [&](std::uint8_t* place, std::uint64_t limit) {
            const auto count = ::recv(socket, place, static_cast<std::size_t>(limit), 0);
            if (count > 0)
                received += static_cast<std::uint64_t>(count);
            return count > 0;
        };
        const auto receiveHead = [&](std::uint64_t size) {
            while (received < size)
                if (!receiveUpTo(buffer.get() + received, bufferSize - received))
                    return false;
            return true;
        };
        if (!receiveHead(RequestKey::smallestRequest))
            return;
        const auto length = RequestKey::requestLength(buffer.get());
        if (!receiveHead(std::min<std::uint64_t>(length, RequestKey::longestKey)))
            return;
        const auto key = RequestKey::of(buffer.get());
        if (key.mayHaveDifferentCalls() && length <= bufferSize) {
            if (!receiveHead(length))
                return;
            exchanges.fetch_add(1, std::memory_order_relaxed);
            sendAll(socket, appliance.replyToDifferentCalls({buffer.get(), buffer.get() + length}));
            continue;
        }
        while (received < length)
            if (!receiveUpTo(buffer.get(), std::min<std::uint64_t>(length - received, bufferSize)))
                return;

        if (!reply || key != knownKey) {
            reply = &appliance.reply(key);
            knownKey = key;
        }
        exchanges.fetch_add(1, std::memory_order_relaxed);
        sendAll(socket, *reply);
    }
}

void serveAndReport(Appliance& appliance, std::atomic<std::uint64_t>& exchanges, Descriptor connection) {
    try {
        serve(appliance, exchanges, connection);
    } catch (const std::system_error&) { // the client has gone
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "server: %s\n", failure.what());
    }
}

Descriptor listenOn(const std::string& address, int& port) {
    Descriptor listener(checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, IPPROTO_TCP), "socket"));
    auto own = socketAddress(address, 0);
    socklen_t size = sizeof own;
    checked(::bind(listener.number(), reinterpret_cast<const sockaddr*>(&own), size), "bind");
    checked(::listen(listener.number(), 512), "listen");
    checked(::getsockname(listener.number(), reinterpret_cast<sockaddr*>(&own), &size), "getsockname");
    port = ntohs(own.sin_port);
    return listener;
}

[[noreturn]] void runServer(Appliance& appliance, std::atomic<std::uint64_t>& exchanges, int processor,
                            const std::string& address, const std::function<void()>& prepare,
                            const Descriptor& portPipe) {
    try {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        pinTo(processor);
        if (prepare)
            prepare();
        serveHere(appliance, exchanges, address,
                  [&](int port) { checked(::write(portPipe.number(), &port, sizeof port), "write"); });
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "server: %s\n", failure.what());
    }
    ::_exit(1);
}

std::atomic<std::uint64_t>* sharedCounter() {
    void* memory = ::mmap(nullptr, sizeof(std::atomic<std::uint64_t>), PROT_READ | PROT_WRITE,
                          MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        throw std::bad_alloc();
    return new (memory) std::atomic<std::uint64_t>(0);
}

} // namespace

std::vector<int> allowedProcessors() {
    cpu_set_t set;
    checked(::sched_getaffinity(0, sizeof set, &set), "sched_getaffinity");
    std::vector<int> processors;
    for (int processor = 0; processor < CPU_SETSIZE; ++processor)
        if (CPU_ISSET(processor, &set))
            processors.push_back(processor);
    return processors;
}

void pinTo(int processor) {
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(processor, &set);
    checked(::sched_setaffinity(0, sizeof set, &set), "sched_setaffinity");
}

void serveHere(Appliance& appliance, std::atomic<std::uint64_t>& exchanges, const std::string& address,
               const std::function<void(int)>& tell) {
    int port = 0;
    const auto listener = listenOn(address, port);
    tell(port);
    while (true) {
        Descriptor connection(
            checked(::accept4(listener.number(), nullptr, nullptr, SOCK_CLOEXEC), "accept"));
        std::thread([&, socket = std::move(connection)]() mutable {
            serveAndReport(appliance, exchanges, std::move(socket));
        }).detach();
    }
}

ServerProcess::ServerProcess(Appliance& appliance, int processor, const std::string& address,
                             const std::function<void()>& prepare)
    : address_(address)
    , exchanges_(sharedCounter()) {
    int ends[2];
    checked(::pipe(ends), "pipe");
    const Descriptor readEnd(ends[0]);
    Descriptor writeEnd(ends[1]);
    process_ = static_cast<pid_t>(checked(::fork(), "fork"));
    if (process_ == 0)
        runServer(appliance, *exchanges_, processor, address, prepare, writeEnd);
    writeEnd = Descriptor(-1);
    if (::read(readEnd.number(), &port_, sizeof port_) != static_cast<ssize_t>(sizeof port_)) {
        ::waitpid(process_, nullptr, 0);
        throw std::runtime_error("the server process could not listen");
    }
}

ServerProcess::~ServerProcess() {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
    ::munmap(exchanges_, sizeof *exchanges_);
}

} // namespace bench
