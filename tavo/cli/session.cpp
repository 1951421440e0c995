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
#include <tavo/cli/values/name_list.h>
#include <tavo/cli/via_transport.h>
#include <tavo/simulator/simulator.h>

namespace TAVO::cli {

namespace {

constexpr const char* simulatorUser = "engineer";

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

} // namespace

Session::Session(ConnectionOptions options, std::function<void(std::string_view)> warn)
    : options_(std::move(options))
    , warn_(std::move(warn))
    , environmentPassword_(takePasswordOfEnvironment()) {
    if (const auto seconds = options_.timeout)
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
    return {.timeLimit = timeLimit_, .interrupter = watch().interrupter()};
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
    return {*options_.user,
            findPassword({options_.passwordFile, environmentPassword_}, *options_.user, warn_)};
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

std::string Session::address() { return fmt::format("{}:{}", options_.host, port()); }

std::unique_ptr<Transport> Session::tunnel() {
    return std::make_unique<ViaTransport>(viaCommand(*options_.via, options_.host, port()), stop_);
}

std::string Session::sharePath() const {
    if (options_.simulated || !options_.user)
        return "";
    return share_socket::pathFor(options_.host, port(), *options_.user);
}

std::unique_ptr<Transport> Session::connectToShare() {
    if (options_.direct)
        return nullptr;
    const auto path = sharePath();
    auto connection = share_socket::connect(path);
    if (!connection.isOpen())
        return nullptr;
    return std::make_unique<LocalTransport>(path, std::move(connection), stop_);
}

std::unique_ptr<Transport> Session::indirectConnection() {
    auto transport = connectToShare();
    usesShare_ = transport != nullptr;
    if (!transport && options_.via)
        transport = tunnel();
    if (transport)
        watch().alsoInterrupt([stop = stop_] { stop->interrupt(); });
    return transport;
}

Device& Session::device() {
    if (!device_)
        open({});
    return *device_;
}

std::shared_ptr<Device> Session::build(const Account& account, std::vector<std::string> only,
                                       std::unique_ptr<Transport> transport) {
    auto options = interruptible();
    options.byLevels = true;
    options.only = std::move(only);
    // A share gives each of its clients a lock id of its own.
    options.keepHeldLock = !usesShare_;
    return watch().await([&] {
        if (!transport)
            return DeviceFactory::buildDevice(options_.host, port(), account.user, account.password.text(),
                                              options_.secure, options);
        options.interrupter = nullptr;
        return DeviceFactory::buildDevice(std::move(transport), account.user, account.password.text(),
                                          options_.secure, options);
    });
}

void Session::open(std::vector<std::string> only) {
    const auto identity = account();
    if (options_.simulated && !simulator_)
        startSimulator();
    device_ = buildWhenUnlocked(identity, only);
}

std::shared_ptr<Device> Session::buildWhenUnlocked(const Account& account,
                                                   const std::vector<std::string>& only) {
    constexpr std::chrono::milliseconds pause(500);
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::duration<double>(options_.waitForLock.value_or(0));
    for (;;)
        try {
            return build(account, only, indirectConnection());
        } catch (const LockError&) {
            if (Clock::now() >= end)
                throw;
            InterruptWatch::pause(pause);
        }
}

std::optional<std::string> Session::lockHolder() {
    if (!device_) {
        Device_Factory_Structs::TavoDeviceDescriptor descriptor;
        identify(descriptor);
    }
    return watch().await([&] { return device_->lockHolder(); });
}

std::shared_ptr<Device> Session::openApart(const Account& account) {
    if (options_.simulated && !simulator_)
        startSimulator();
    return build(account, {"device"}, options_.via ? tunnel() : nullptr);
}

void Session::interruptOpening() {
    watch().interrupter()->interrupt();
    stop_->interrupt();
}

bool Session::identify(Device_Factory_Structs::TavoDeviceDescriptor& descriptor) {
    if (options_.simulated && !simulator_)
        startSimulator();
    return watch().await([&] {
        if (device_) {
            device_->getKey();
            descriptor.port = port();
            return device_->checkTavoKey(descriptor.firstKeyFlag, descriptor.secondKeyFlag);
        }
        try {
            auto transport = indirectConnection();
            device_ =
                transport
                    ? DeviceFactory::queryDevice(std::move(transport), descriptor, {.timeLimit = timeLimit_})
                    : DeviceFactory::queryDevice(options_.host, port(), descriptor, interruptible());
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

std::shared_ptr<Device> Session::unrecognised() {
    auto transport = indirectConnection();
    const auto device = transport ? std::make_shared<TAVOXDevice>(std::move(transport), "", "", false)
                                  : std::make_shared<TAVOXDevice>(options_.host, port(), "", "", false,
                                                                  watch().interrupter(), timeLimit_);
    device->setTimeLimit(timeLimit_);
    auto object = ObjectFactory::buildObject(device, "device", DeviceFactory::DeviceInstanceID, nullptr);
    device->setDevice(std::dynamic_pointer_cast<Device_v1_0>(std::move(object)));
    if (!device->getDevice())
        throw SpecificationError("device object not found.");
    return device;
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

std::shared_ptr<Object_v1_0> Session::findOnly(const std::string& fullName) {
    if (!device_) {
        open({fullName});
        for (auto& object : objects())
            if (object->getFullName() == fullName)
                return object;
        // The failure lists all objects.
        limitRelease();
        device_.reset();
    }
    return find(fullName);
}

std::shared_ptr<Object_v1_0> Session::find(const std::string& fullName) {
    NameList known;
    for (const auto& object : objects()) {
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
    device_->multicall(queue);
}

void Session::run(const std::vector<std::shared_ptr<Method>>& methods) {
    watch().await([&] { exchange(methods); });
}

void Session::release(const std::shared_ptr<Method>& method) {
    limitRelease();
    try {
        exchange({method});
    } catch (...) {
        device_->setTimeLimit(timeLimit_);
        throw;
    }
    device_->setTimeLimit(timeLimit_);
    requireSuccess(*method);
}

void Session::runAll(const std::vector<std::shared_ptr<Method>>& methods) {
    run(methods);
    for (const auto& method : methods)
        requireSuccess(*method);
}

void Session::execute(const std::shared_ptr<Method>& method) { runAll({method}); }

} // namespace TAVO::cli
