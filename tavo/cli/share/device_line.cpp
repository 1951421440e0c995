#include <tavo/cli/share/device_line.h>

#include <algorithm>
#include <csignal>
#include <exception>
#include <utility>

#include <asio/buffer.hpp>
#include <asio/post.hpp>
#include <asio/write.hpp>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/device/system_v1_0.h>
#include <tavo/client/wire/error.h>

namespace TAVO::cli {

namespace {

/// A thread that gets none of the program's signals.
template <class Work>
std::thread quietThread(Work work) {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread thread(std::move(work));
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return thread;
}

Descriptions::Methods methodsOf(Device& device, const Object_v1_0& object) {
    return device.value(object.getMethodsMethod()).methods;
}

asio::generic::stream_protocol protocolOf(int descriptor) {
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    ::getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &length);
    return {address.ss_family, address.ss_family == AF_UNIX ? 0 : static_cast<int>(IPPROTO_TCP)};
}

NetworkError closedByDevice() { return NetworkError("Connection to device closed unexpectedly."); }

} // namespace

DeviceLine::DeviceLine(asio::io_context& context, Access access, Owner& owner)
    : context_(context)
    , access_(std::move(access))
    , owner_(owner)
    , socket_(context)
    , limit_(context) {}

DeviceLine::~DeviceLine() {
    stop();
    detach();
    if (device_)
        device_->setTimeLimit(std::min(access_.patience, Milliseconds(2000)));
}

DeviceLine::Milliseconds DeviceLine::pauseAfter(unsigned failures) {
    constexpr Milliseconds shortest(100);
    constexpr Milliseconds longest(30000);
    return std::min(longest, shortest * (1 << std::min(failures, 10u)));
}

// The work runs in the thread; what it returns runs in the event loop.
template <class Work>
void DeviceLine::inThread(Work work) {
    if (thread_.joinable())
        thread_.join();
    state_ = State::working;
    isThreadDone_ = false;
    thread_ = quietThread([this, work = std::move(work), guard = asio::make_work_guard(context_)]() mutable {
        asio::post(context_, work());
        isThreadDone_ = true;
    });
}

void DeviceLine::open() {
    if (state_ != State::released && state_ != State::lost)
        return;
    const bool isNew = !device_;
    isOpening_ = true;
    inThread([this, isNew]() -> std::function<void()> {
        try {
            auto device = isNew ? access_.open() : device_;
            device->setTimeLimit(access_.patience);
            if (!isNew)
                device->relock();
            auto ofDevice = methodsOf(*device, *device->getDevice());
            auto ofSystem = methodsOf(*device, *device->getSystem());
            return [this, device, ofDevice, ofSystem] {
                device_ = device;
                attach();
                owner_.lineOpened(ofDevice, ofSystem);
            };
        } catch (...) {
            return [this, failure = std::current_exception()] {
                state_ = device_ ? State::lost : State::released;
                try {
                    std::rethrow_exception(failure);
                } catch (const std::exception& exception) {
                    owner_.lineLost(exception);
                }
            };
        }
    });
}

void DeviceLine::release() {
    if (state_ != State::ready && state_ != State::lost)
        return;
    detach();
    isOpening_ = false;
    inThread([this, device = std::exchange(device_, nullptr)]() mutable -> std::function<void()> {
        device.reset();
        return [this] {
            state_ = State::released;
            owner_.lineReleased();
        };
    });
}

void DeviceLine::stop() {
    constexpr Milliseconds step(20);
    if (!thread_.joinable())
        return;
    // Again and again, for an interrupt between two exchanges is lost.
    while (isOpening_ && !isThreadDone_) {
        access_.interrupt();
        std::this_thread::sleep_for(step);
    }
    thread_.join();
}

void DeviceLine::attach() {
    const auto descriptor = static_cast<int>(device_->transport().descriptor());
    ++attachment_;
    held_ = isReading_ = isWriting_ = false;
    socket_.assign(protocolOf(descriptor), descriptor);
    socket_.non_blocking(true);
    state_ = State::ready;
    read();
}

void DeviceLine::detach() {
    if (!socket_.is_open())
        return;
    ++attachment_;
    limit_.cancel();
    const auto descriptor = socket_.release();
    // The library waits in its calls.
    const bool isLocal = protocolOf(descriptor).family() == AF_UNIX;
    if (!isLocal)
        ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
}

void DeviceLine::read() {
    if (std::exchange(isReading_, true))
        return;
    socket_.async_read_some(asio::buffer(received_), [this, attached = attachment_](
                                                         const asio::error_code& failure, std::size_t count) {
        if (attached != attachment_)
            return;
        isReading_ = false;
        if (failure)
            return lose(closedByDevice());
        take(count);
    });
}

void DeviceLine::take(std::size_t count) {
    if (!turn_)
        return lose(NetworkError("Unexpected data recieved from device."));
    isFeeding_ = true;
    std::string problem;
    try {
        if (scanner_.feed({received_.data(), count}, *turn_) < count)
            problem = "Unexpected data recieved from device.";
    } catch (const std::exception& failure) {
        problem = failure.what();
    }
    isFeeding_ = false;
    if (problem.empty() && scanner_.isComplete() && isWriting_)
        problem = "the device answered before it had the whole request";
    if (!problem.empty())
        return lose(NetworkError(problem));
    if (scanner_.isComplete())
        return endTurn();
    if (!held_)
        read();
}

void DeviceLine::execute(std::shared_ptr<Turn> turn) {
    turn_ = std::move(turn);
    scanner_ = {};
    isHurried_ = false;
    state_ = State::executing;
    write(turn_->plan().requestForDevice(device_->lockId()));
}

void DeviceLine::write(std::span<const std::uint8_t> rest) {
    asio::error_code blocked;
    rest = rest.subspan(socket_.write_some(asio::buffer(rest.data(), rest.size()), blocked));
    if (rest.empty())
        return;
    isWriting_ = true;
    asio::async_write(
        socket_, asio::buffer(rest.data(), rest.size()),
        [this, attached = attachment_, turn = turn_](const asio::error_code& failure, std::size_t) {
            if (attached != attachment_)
                return;
            isWriting_ = false;
            if (failure)
                lose(NetworkError("Error transmitting message call to device."));
        });
}

// A client waits for its reply as long as it likes. Once it has gone, the device has some time to finish.
void DeviceLine::hurry() {
    if (!turn_ || std::exchange(isHurried_, true))
        return;
    limit_.expires_after(access_.patience);
    limit_.async_wait([this, attached = attachment_, turn = turn_](const asio::error_code& cancelled) {
        if (!cancelled && attached == attachment_ && turn == turn_)
            lose(NetworkError("Call to device timed out."));
    });
}

void DeviceLine::hold(bool held) {
    held_ = held;
    // While received_ is taken apart it must not be overwritten; what takes it apart reads on.
    if (!held && state_ == State::executing && !isFeeding_)
        read();
}

void DeviceLine::endTurn() {
    limit_.cancel();
    state_ = State::ready;
    held_ = false;
    const auto turn = std::exchange(turn_, nullptr);
    owner_.turnAnswered(*turn);
    turn->complete();
    read();
    owner_.turnEnded(*turn);
}

void DeviceLine::lose(const std::exception& why) {
    detach();
    device_->transport().renew();
    state_ = State::lost;
    if (const auto turn = std::exchange(turn_, nullptr))
        turn->abandon();
    owner_.lineLost(why);
}

} // namespace TAVO::cli
