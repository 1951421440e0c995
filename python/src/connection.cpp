#include "connection.h"

#include <algorithm>
#include <set>
#include <utility>

#include <unistd.h>

#include <tavo/client/device/device_factory.h>
#include <tavo/client/exchange/tavox_device.h>
#include <tavo/client/object/object.h>

#include "failure.h"
#include "turn.h"

namespace TAVO::python {

namespace {

/// What giving back the lock may take when nobody can choose.
constexpr std::chrono::milliseconds longestRelease(2000);

/// Used with the GIL only; never destroyed, because connections may outlive the module.
std::set<Connection*>& connections() {
    static auto& all = *new std::set<Connection*>;
    return all;
}

/// Keeps the pending exception while other Python code runs.
class PendingException {
public:
    PendingException() { PyErr_Fetch(&type_, &value_, &traceback_); }
    PendingException(const PendingException&) = delete;
    PendingException& operator=(const PendingException&) = delete;
    ~PendingException() { PyErr_Restore(type_, value_, traceback_); }

private:
    PyObject* type_ = nullptr;
    PyObject* value_ = nullptr;
    PyObject* traceback_ = nullptr;
};

/// Counts those who are about to close a device.
class Closer {
public:
    explicit Closer(std::atomic<unsigned>& count)
        : count_(count) {
        ++count_;
    }
    Closer(const Closer&) = delete;
    Closer& operator=(const Closer&) = delete;
    ~Closer() { --count_; }

private:
    std::atomic<unsigned>& count_;
};

} // namespace

Connection::Connection(std::shared_ptr<Interrupter> interrupter)
    : interrupter_(std::move(interrupter))
    , generation_(process::generation()) {
    interrupter_->endWhen([this] {
        if (!outside_ || signalRaised_)
            return false;
        if (process::isEnding())
            return !closing_;
        if (helping_ && helping_->isLast)
            return false;
        signalRaised_ = !outside_->handleSignals();
        return signalRaised_ || (helping_ && isHelperToStop());
    });
    connections().insert(this);
}

std::shared_ptr<Connection> Connection::open(const OpenWish& wish, std::shared_ptr<Interrupter> interrupter) {
    if (process::isEnding())
        Failure::ofThisSide("the interpreter is ending").raise();
    const std::shared_ptr<Connection> connection(new Connection(std::move(interrupter)));
    OpenOptions options{.interrupter = connection->interrupter_, .byLevels = true, .only = wish.only};
    if (wish.milliseconds)
        options.timeLimit = std::chrono::milliseconds(*wish.milliseconds);
    const Turn turn(*connection);
    try {
        connection->runOutside([&] {
            connection->device_ = DeviceFactory::buildDevice(wish.host, wish.port, wish.user, wish.password,
                                                             wish.secure, options);
        });
    } catch (...) {
        // A signal may have come when the device was open already.
        connection->release();
        throw;
    }
    return connection;
}

Connection::~Connection() {
    connections().erase(this);
    if (!device_)
        return;
    if (!isOfThisProcess()) {
        // The device is the parent's; its end would give the lock back.
        (void)new std::shared_ptr<Device>(std::move(device_));
        return;
    }
    const PendingException pending;
    if (PyErr_WarnEx(PyExc_ResourceWarning, "a device was not closed", 1) != 0)
        PyErr_WriteUnraisable(nullptr);
    try {
        release();
    } catch (py::error_already_set& error) {
        error.discard_as_unraisable("closing a device");
    }
}

void Connection::requireOpen() const {
    if (!isOfThisProcess())
        Failure::ofThisSide("the device was opened by another process, before a fork").raise();
    if (closed_)
        Failure::ofThisSide("the device is closed").raise();
    if (process::isEnding())
        Failure::ofThisSide("the interpreter is ending").raise();
}

void Connection::runOutside(const std::function<void()>& work) {
    std::exception_ptr failure;
    signalRaised_ = false;
    {
        NoGil outside;
        outside_ = &outside;
        try {
            work();
        } catch (...) {
            failure = std::current_exception();
        }
        outside_ = nullptr;
    }
    if (signalRaised_)
        throw py::error_already_set();
    if (failure)
        raiseAsPython(failure);
}

void Connection::run(const std::function<void(Device&)>& work) {
    requireOpen();
    const Turn turn(*this);
    requireOpen();
    runOutside([&] { work(*device_); });
}

void Connection::run(const std::function<void(Device&)>& work, ReceivedBlocks& blocks) {
    run([&](Device& device) {
        const PythonBlockReceiver receiver(*outside_, blocks);
        work(device);
    });
}

void Connection::interrupt() {
    if (!isOfThisProcess())
        return;
    ++interrupts_;
    interrupter_->interrupt();
}

void Connection::release() {
    closed_ = true;
    if (!device_)
        return;
    closing_ = true;
    device_->setTimeLimit(std::min(device_->timeLimit().value_or(longestRelease), longestRelease));
    closeWhatIsLeftOpen();
    auto device = std::move(device_);
    runOutside([&] { device.reset(); });
}

void Connection::close() {
    if (closed_)
        return;
    if (!isOfThisProcess()) {
        closed_ = true;
        return;
    }
    const Closer closer(closers_);
    const Turn turn(*this);
    release();
}

void Connection::closeAll() {
    process::beginEnd();
    for (auto* connection : connections())
        if (connection->owner_.load() != std::thread::id())
            connection->interrupt();
    {
        NoGil outside;
        process::awaitThreads();
    }
    const auto all = connections();
    for (auto* connection : all) {
        if (!connections().contains(connection))
            continue;
        // Other threads run during the release, and may drop the last other reference.
        const auto kept = connection->weak_from_this().lock();
        if (!kept || !kept->isOfThisProcess() || !kept->turn_.try_lock())
            continue;
        const std::unique_lock held(kept->turn_, std::adopt_lock);
        try {
            kept->release();
        } catch (py::error_already_set& error) {
            error.discard_as_unraisable("closing a device");
        }
    }
}

void Connection::forgetAll() {
    for (auto* connection : connections())
        if (auto* device = dynamic_cast<TAVOXDevice*>(connection->device_.get()))
            if (const auto socket = device->transport().descriptor(); socket >= 0)
                ::close(static_cast<int>(socket));
}

} // namespace TAVO::python
