#include <algorithm>
#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>
#include <utility>

#include <tavo/client/object/multicall_queue.h>
#include <tavo/jtag/svf/svf_error.h>
#include <tavo/toolkit/errors.h>
#include <tavo/toolkit/exchange_time.h>

#include "connection.h"
#include "failure.h"
#include "turn.h"

namespace TAVO::python {

namespace {

using Clock = std::chrono::steady_clock;

/// How often signals are looked for between exchanges, and how long giving something back may take.
constexpr std::chrono::milliseconds betweenLooks(20), longestLast(2000);

/// Sets something for a while.
template <class Value>
class Set {
public:
    Set(Value& place, Value value)
        : place_(place)
        , before_(std::exchange(place, std::move(value))) {}
    Set(const Set&) = delete;
    Set& operator=(const Set&) = delete;
    ~Set() { place_ = before_; }

private:
    Value& place_;
    Value before_;
};

/// Bounds the exchanges of a device for a while.
class ShorterLimit {
public:
    explicit ShorterLimit(Device& device)
        : device_(device)
        , before_(device.timeLimit()) {
        device_.setTimeLimit(std::min(before_.value_or(longestLast), longestLast));
    }
    ShorterLimit(const ShorterLimit&) = delete;
    ShorterLimit& operator=(const ShorterLimit&) = delete;
    ~ShorterLimit() { device_.setTimeLimit(before_); }

private:
    Device& device_;
    TimeLimit before_;
};

void execute(Device& device, const toolkit::Methods& calls) {
    const auto queue = std::make_shared<MulticallQueue>();
    for (const auto& call : calls)
        queue->add(call);
    const toolkit::LongerLimit limit(device, toolkit::busyTime(calls));
    device.multicall(queue);
}

/// What else goes wrong in a helper is an answer of the device that does not fit its calls.
void blamingTheDevice(const std::function<void()>& work) {
    try {
        work();
    } catch (const jtag::svf::SvfError&) {
        throw;
    } catch (const std::runtime_error& failure) {
        if (Failure::of(std::current_exception()))
            throw;
        throw toolkit::Fault(failure.what());
    }
}

} // namespace

void Connection::help(const std::shared_ptr<Stop>& stop, const std::function<void()>& work) {
    requireOpen();
    const Turn turn(*this);
    requireOpen();
    Helping helping{.stop = stop, .interrupts = interrupts_};
    const Set<Helping*> helped(helping_, &helping);
    runOutside([&] { blamingTheDevice(work); });
}

void Connection::callBack(const py::object& function, const std::function<py::tuple()>& arguments) {
    outside_->inside([&] {
        try {
            const auto all = arguments();
            // What is between here and Python must not be unwound without the GIL.
            auto* const result =
                process::runPython([&] { return PyObject_CallObject(function.ptr(), all.ptr()); });
            if (!result)
                throw py::error_already_set();
            Py_DECREF(result);
        } catch (py::error_already_set& raised) {
            raised.restore();
            signalRaised_ = true;
        }
    });
    if (signalRaised_)
        throw Stopped();
}

bool Connection::isHelperToStop() const {
    return interrupts_ != helping_->interrupts || closers_ != 0 ||
           (helping_->stop && helping_->stop->isRequested());
}

void Connection::throwIfStopped() {
    if (signalRaised_)
        throw Stopped();
    if (process::isEnding())
        throw KnownFailure(Failure::ofThisSide("the interpreter is ending"));
    if (isHelperToStop())
        throw KnownFailure(closers_ != 0 ? Failure::ofThisSide("the device is closed")
                                         : Failure::interrupted());
    const auto now = Clock::now();
    if (now < helping_->looked + betweenLooks)
        return;
    helping_->looked = now;
    signalRaised_ = !outside_->handleSignals();
    if (signalRaised_)
        throw Stopped();
}

void Connection::runCalls(const toolkit::Methods& calls) {
    throwIfStopped();
    execute(*device_, calls);
}

void Connection::runLastCalls(const toolkit::Methods& calls) {
    const Set<bool> last(helping_->isLast, true);
    const ShorterLimit limit(*device_);
    execute(*device_, calls);
}

void Connection::closeWhatIsLeftOpen() {
    const auto all = std::exchange(leftOpen_, {});
    if (all.empty())
        return;
    Helping helping{.stop = nullptr, .interrupts = interrupts_};
    const Set<Helping*> helped(helping_, &helping);
    runOutside([&] {
        for (const auto& [object, left] : all) {
            try {
                left->close();
            } catch (const KnownFailure&) { // the device refuses: it is not open any more
            } catch (const std::exception&) {
                return;
            }
        }
    });
}

void ConnectionAccess::insist(const Method& executed) {
    if (executed.returnCode() != 0)
        throw KnownFailure(Failure::refused(executed.returnCode(), executed.getFullName()));
}

bool ConnectionAccess::isRefusal(const std::exception& failure) const {
    const auto* known = dynamic_cast<const KnownFailure*>(&failure);
    return known != nullptr && known->failure.returnCode.has_value();
}

void ConnectionAccess::pause(std::chrono::milliseconds time) {
    const auto end = Clock::now() + time;
    for (auto now = Clock::now(); now < end; now = Clock::now()) {
        throwIfStopped();
        std::this_thread::sleep_for(std::min<Clock::duration>(end - now, betweenLooks));
    }
    throwIfStopped();
}

} // namespace TAVO::python
