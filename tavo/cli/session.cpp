#include <tavo/cli/session.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <tavo/cli/password.h>
#include <tavo/cli/share/local_transport.h>
#include <tavo/cli/share/share_socket.h>
#include <tavo/cli/trace_file.h>
#include <tavo/cli/values/duration.h>
#include <tavo/cli/values/name_list.h>
#include <tavo/cli/via_transport.h>
#include <tavo/simulator/simulator.h>
#include <tavo/toolkit/exchange_time.h>

namespace TAVO::cli {

namespace {

constexpr const char* simulatorUser = "engineer";
constexpr std::string_view timedOut = "Call to device timed out.";

/// A device whose tree is built without the lock.
class WithoutLock : public TAVOXDevice {
public:
    using TAVOXDevice::TAVOXDevice;

protected:
    void lock() override {}
    void lock(const std::string&, const std::string&) override {}
};

} // namespace

void registerObjects() {
    CoreObjects::registerCoreObjects();
    HWDebug::HwdObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();
}

void collect(const std::shared_ptr<Container>& node, Objects& objects) {
    if (auto object = std::dynamic_pointer_cast<Object_v1_0>(node))
        objects.push_back(std::move(object));
    for (const auto& child : node->getChildren())
        collect(child, objects);
}

Session::Session(ConnectionOptions options, std::function<void(std::string_view)> warn)
    : options_(std::move(options))
    , warn_(std::move(warn))
    , environmentPassword_(takePasswordOfEnvironment()) {
    if (const auto seconds = options_.timeout; seconds && *seconds > 0)
        timeLimit_ = std::chrono::milliseconds(std::max(std::llround(*seconds * 1000), 1LL));
    registerObjects();
}

Session::~Session() {
    if (device_)
        limitRelease();
}

InterruptWatch& Session::watch() {
    if (!watch_)
        watch_.emplace();
    return *watch_;
}

OpenOptions Session::interruptible() {
    exchangeLimit_ = timeLimit_;
    return {.timeLimit = timeLimit_,
            .interrupter = options_.via ? nullptr : watch().interrupter(),
            .trace = options_.trace ? TraceFile::sink(options_.trace) : nullptr};
}

void Session::limitRelease() {
    constexpr std::chrono::milliseconds longest(2000);
    device_->setTimeLimit(std::min(timeLimit_.value_or(longest), longest));
}

Account Session::account() const {
    if (options_.simulated && !options_.passwordFile) {
        const auto accounts = simulator::Options().accounts;
        const auto known = accounts.find(options_.user.value_or(simulatorUser));
        if (known != accounts.end())
            return {known->first, Secret(known->second)};
    }
    if (!options_.user)
        throw Failure(ExitCode::usage, "--user is needed: this command takes the lock of the device");
    return {*options_.user, findPassword({options_.passwordFile, environmentPassword_, options_.strict},
                                         *options_.user, warn_)};
}

void Session::startSimulator() {
    simulator::Options simulated;
    simulated.topology = options_.topology;
    try {
        simulator_ = std::make_unique<simulator::Simulator>(std::move(simulated));
    } catch (const std::invalid_argument& error) {
        throw Failure(ExitCode::usage, error.what());
    }
    simulator_->start();
    options_.host = "127.0.0.1";
    options_.port = simulator_->port();
}

int Session::port() const {
    return options_.port.value_or(options_.secure ? DeviceFactory::DefaultSecurePort
                                                  : DeviceFactory::DefaultPort);
}

std::string Session::address() const { return fmt::format("{}:{}", options_.host, port()); }

std::string Session::sharePath() const {
    if (options_.simulated || !options_.user)
        return "";
    return share_socket::pathFor(options_.host, port(), *options_.user, options_.via.value_or(""));
}

std::unique_ptr<Transport> Session::connectToShare() {
    if (options_.direct)
        return nullptr;
    const auto path = sharePath();
    auto connection = share_socket::connect(path);
    if (!connection.isOpen())
        return nullptr;
    watch().alsoInterrupt([stop = stop_] { stop->interrupt(); });
    return std::make_unique<LocalTransport>(path, std::move(connection), stop_);
}

std::unique_ptr<Transport> Session::connectToDevice() {
    if (!options_.via)
        return std::make_unique<SocketTransport>(options_.host, std::to_string(port()), watch().interrupter(),
                                                 timeLimit_);
    watch().alsoInterrupt([stop = stop_] { stop->interrupt(); });
    return std::make_unique<ViaTransport>(viaCommand(*options_.via, options_.host, port()), stop_);
}

std::unique_ptr<Transport> Session::connect() {
    auto waiting = std::make_unique<WaitingLine>(fmt::format("waiting for {} ...", address()));
    auto connection = connectToShare();
    usesShare_ = connection != nullptr;
    if (!usesShare_)
        connection = connectToDevice();
    answers_->connected = true;
    // The user's command may ask questions first.
    const bool patient = !usesShare_ && options_.via && !options_.timeoutIsChosen;
    return std::make_unique<ObservedTransport>(std::move(connection), answers_, std::move(waiting), patient);
}

template <class Action>
auto Session::await(Action action) {
    try {
        return watch().await(action);
    } catch (const NetworkError& error) {
        if (std::string_view(error.what()) != timedOut)
            throw;
        throw withFacts(NetworkError(fmt::format("{} ({})", timedOut, lateText())), error.facts());
    }
}

std::string Session::lateText() const {
    const auto limit = exchangeLimit_.value_or(std::chrono::milliseconds(0));
    const auto text = durationText(std::chrono::duration<double>(limit).count());
    if (!answers_->connected)
        return fmt::format("no connection to {} within {}; --timeout sets the limit", address(), text);
    if (answers_->begun)
        return fmt::format("the exchange with {} took longer than {}; --timeout sets the limit", address(),
                           text);
    return fmt::format("{} did not answer within {}; --timeout sets the limit", address(), text);
}

Device& Session::device() {
    if (!device_)
        open({});
    return *device_;
}

OpenOptions Session::openOptions(std::vector<std::string> only) {
    auto options = interruptible();
    options.byLevels = true;
    // A share gives each of its clients a lock id of its own.
    options.keepHeldLock = !usesShare_;
    options.only = std::move(only);
    return options;
}

std::shared_ptr<Device> Session::build(const Account& account, const std::vector<std::string>& only) {
    return await([&] {
        auto connection = connect();
        return DeviceFactory::buildDevice(std::move(connection), account.user, account.password.text(),
                                          options_.secure, openOptions(only));
    });
}

std::shared_ptr<Device> Session::buildWhenUnlocked(const Account& account,
                                                   const std::vector<std::string>& only) {
    constexpr std::chrono::milliseconds pause(500);
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::duration<double>(options_.waitForLock.value_or(0));
    for (;;)
        try {
            return build(account, only);
        } catch (const LockError&) {
            if (Clock::now() >= end)
                throw;
            InterruptWatch::pause(pause);
        }
}

void Session::open(std::vector<std::string> only) {
    const auto identity = account();
    if (options_.simulated && !simulator_)
        startSimulator();
    device_ = buildWhenUnlocked(identity, only);
    isPartial_ = !only.empty();
}

std::shared_ptr<Device> Session::openApart(const Account& account) {
    if (options_.simulated && !simulator_)
        startSimulator();
    return await([&] {
        return DeviceFactory::buildDevice(connectToDevice(), account.user, account.password.text(),
                                          options_.secure, openOptions({"device"}));
    });
}

void Session::interruptOpening() {
    watch().interrupter()->interrupt();
    stop_->interrupt();
}

std::optional<std::string> Session::lockHolder() {
    if (!device_) {
        // A share would tell its own user.
        options_.direct = true;
        Device_Factory_Structs::TavoDeviceDescriptor descriptor;
        identify(descriptor);
    }
    return await([&] { return device_->lockHolder(); });
}

bool Session::identify(Device_Factory_Structs::TavoDeviceDescriptor& descriptor) {
    if (options_.simulated && !simulator_)
        startSimulator();
    return await([&] {
        if (device_) {
            device_->getKey();
            descriptor.port = port();
            return device_->checkTavoKey(descriptor.firstKeyFlag, descriptor.secondKeyFlag);
        }
        try {
            device_ = DeviceFactory::queryDevice(connect(), descriptor, interruptible());
        } catch (const TAVOKeyError&) {
            if (options_.secure)
                throw;
            device_ = unrecognised();
            descriptor = {.port = port()};
            return false;
        }
        descriptor.port = port();
        return true;
    });
}

void Session::prepare(const std::shared_ptr<Device>& device) {
    device->setTimeLimit(timeLimit_);
    if (options_.trace)
        device->setTrace(TraceFile::sink(options_.trace));
    auto object = ObjectFactory::buildObject(device, "device", DeviceFactory::DeviceInstanceID, nullptr);
    device->setDevice(std::dynamic_pointer_cast<Device_v1_0>(std::move(object)));
    if (!device->getDevice())
        throw SpecificationError("device object not found.");
}

std::shared_ptr<Device> Session::unrecognised() {
    const auto device = std::make_shared<TAVOXDevice>(connect(), "", "", false);
    prepare(device);
    return device;
}

void Session::lookOn() {
    if (device_)
        return;
    options_.direct = true;
    if (options_.simulated && !simulator_)
        startSimulator();
    device_ = await([&] {
        const auto options = openOptions({});
        const auto device = std::make_shared<WithoutLock>(connect(), "", "", false);
        prepare(device);
        if (options_.secure) {
            device->getKey();
            if (bool first = false, second = false; !device->checkTavoKey(first, second))
                throw TAVOKeyError("TAVO authentication key not matched!");
        }
        return DeviceFactory::openDevice(device, "", "", options);
    });
}

Objects Session::objects() {
    auto& root = device();
    Objects objects;
    collect(root.getDevice(), objects);
    collect(root.getSystem(), objects);
    collect(root.getPrivate(), objects);
    for (const auto& member : root.getChildren())
        collect(member, objects);
    return objects;
}

Objects Session::allObjects() {
    if (isPartial_) {
        limitRelease();
        device_.reset();
    }
    return objects();
}

std::shared_ptr<Object_v1_0> Session::findOnly(const std::string& fullName) {
    if (!device_) {
        open({fullName});
        for (auto& object : objects())
            if (object->getFullName() == fullName)
                return object;
    }
    return find(fullName);
}

std::shared_ptr<Object_v1_0> Session::find(const std::string& fullName) {
    NameList known;
    for (const auto& object : allObjects()) {
        const auto name = object->getFullName();
        if (name == fullName)
            return object;
        known.add(name);
    }
    throw Failure(ExitCode::notFound, fmt::format("no object '{}'; there are: {}", fullName, known.text()));
}

void Session::exchange(const std::vector<std::shared_ptr<Method>>& methods) {
    const auto queue = std::make_shared<MulticallQueue>();
    for (const auto& method : methods)
        queue->add(method);
    const toolkit::LongerLimit limit(*device_, toolkit::busyTime(methods));
    exchangeLimit_ = device_->timeLimit();
    device_->multicall(queue);
}

void Session::run(const std::vector<std::shared_ptr<Method>>& methods) {
    await([&] { exchange(methods); });
}

void Session::release(const std::shared_ptr<Method>& method) { releaseAll({method}); }

void Session::releaseAll(const std::vector<std::shared_ptr<Method>>& methods) {
    limitRelease();
    try {
        exchange(methods);
    } catch (...) {
        device_->setTimeLimit(timeLimit_);
        throw;
    }
    device_->setTimeLimit(timeLimit_);
    for (const auto& method : methods)
        requireSuccess(*method);
}

void Session::runAll(const std::vector<std::shared_ptr<Method>>& methods) {
    run(methods);
    for (const auto& method : methods)
        requireSuccess(*method);
}

void Session::execute(const std::shared_ptr<Method>& method) { runAll({method}); }

} // namespace TAVO::cli
