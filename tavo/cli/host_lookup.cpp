#include <tavo/cli/host_lookup.h>

#include <algorithm>
#include <array>
#include <future>
#include <memory>
#include <thread>
#include <utility>

#include <fmt/format.h>
#include <netdb.h>
#include <sys/socket.h>

#include <tavo/cli/interrupt.h>
#include <tavo/cli/values/duration.h>
#include <tavo/client/wire/error.h>

namespace TAVO::cli {

namespace {

struct Answer {
    int error = 0;
    std::vector<std::string> addresses;
};

Answer ask(const std::string& host, const std::string& port) {
    addrinfo wanted{};
    wanted.ai_family = AF_UNSPEC;
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo* first = nullptr;
    Answer answer;
    answer.error = ::getaddrinfo(host.c_str(), port.c_str(), &wanted, &first);
    if (answer.error != 0)
        return answer;
    for (const auto* found = first; found != nullptr; found = found->ai_next) {
        std::array<char, NI_MAXHOST> text{};
        if (::getnameinfo(found->ai_addr, found->ai_addrlen, text.data(), text.size(), nullptr, 0,
                          NI_NUMERICHOST) != 0)
            continue;
        const std::string address(text.data());
        if (std::find(answer.addresses.begin(), answer.addresses.end(), address) == answer.addresses.end())
            answer.addresses.push_back(address);
    }
    ::freeaddrinfo(first);
    return answer;
}

} // namespace

std::vector<std::string> addressesOf(const std::string& host, int port, std::chrono::milliseconds longest) {
    constexpr std::chrono::milliseconds step(5);
    // Nothing ends the system's question, so its thread may stay behind.
    const auto promise = std::make_shared<std::promise<Answer>>();
    auto future = promise->get_future();
    std::thread([promise, host, port] { promise->set_value(ask(host, std::to_string(port))); }).detach();
    const auto end = std::chrono::steady_clock::now() + longest;
    while (future.wait_for(step) != std::future_status::ready) {
        InterruptWatch::throwIfInterrupted();
        if (std::chrono::steady_clock::now() > end)
            throw NetworkError(fmt::format("no answer for the name {} within {}", host,
                                           durationText(std::chrono::duration<double>(longest).count())));
    }
    auto answer = future.get();
    if (answer.error != 0 || answer.addresses.empty())
        throw NetworkError(fmt::format("{} has no address: {}", host, ::gai_strerror(answer.error)));
    return std::move(answer.addresses);
}

} // namespace TAVO::cli
