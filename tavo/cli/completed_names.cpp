#include <tavo/cli/completed_names.h>

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <set>
#include <thread>
#include <utility>

#include <fmt/format.h>

#include <tavo/cli/config/config_file.h>
#include <tavo/cli/prepared_call.h>
#include <tavo/cli/share/local_transport.h>
#include <tavo/cli/share/share_socket.h>
#include <tavo/simulator/topology.h>

namespace TAVO::cli {

namespace {

std::vector<std::string> namesOfObjects(NameKind kind, const std::string& begun, const Objects& objects) {
    std::vector<std::string> names;
    for (const auto& object : objects) {
        const auto name = object->getFullName();
        if (kind == NameKind::object) {
            names.push_back(name);
        } else if (kind == NameKind::relay) {
            if (dynamic_cast<const CommonModules::Relay_v1_0*>(object.get()))
                names.push_back(name);
        } else if (begun.starts_with(name + '.')) {
            for (const auto* row : callableMethods(*object))
                names.push_back(fmt::format("{}.{}", name, row->name));
        } else {
            names.push_back(name + '.');
        }
    }
    return names;
}

std::vector<std::string> namesInConfig(NameKind kind) {
    const auto config = readConfig();
    std::vector<std::string> names;
    std::set<std::string> groups;
    for (const auto& device : config.devices) {
        names.push_back(device.name);
        const auto some = config.groupsOf(device);
        groups.insert(some.begin(), some.end());
    }
    return kind == NameKind::device ? names : std::vector<std::string>(groups.begin(), groups.end());
}

/// Ends what waits for a share when the time is over.
class Alarm {
public:
    Alarm(std::shared_ptr<StreamTransport::Stop> stop, std::chrono::milliseconds time)
        : thread_([this, stop = std::move(stop), time] {
            std::unique_lock lock(mutex_);
            auto pause = time;
            while (!changed_.wait_for(lock, pause, [this] { return done_; })) {
                stop->interrupt();
                // Again and again: the next exchange must not wait either.
                pause = std::chrono::milliseconds(1);
            }
        }) {}
    Alarm(const Alarm&) = delete;
    Alarm& operator=(const Alarm&) = delete;
    ~Alarm() {
        {
            const std::lock_guard lock(mutex_);
            done_ = true;
        }
        changed_.notify_all();
        thread_.join();
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool done_ = false;
    std::thread thread_;
};

/// The device behind a transport with its object "device" alone, whatever its key.
std::shared_ptr<TAVOXDevice> unlockedDevice(std::unique_ptr<Transport> transport, TimeLimit limit) {
    auto device = std::make_shared<TAVOXDevice>(std::move(transport), "", "", false);
    device->setTimeLimit(limit);
    auto object = ObjectFactory::buildObject(device, "device", DeviceFactory::DeviceInstanceID, nullptr);
    device->setDevice(std::dynamic_pointer_cast<Device_v1_0>(std::move(object)));
    return device;
}

} // namespace

std::vector<std::string> completedNames(NameKind kind, const std::string& begun,
                                        const std::function<Objects()>& objects) {
    switch (kind) {
    case NameKind::device:
    case NameKind::group:
        return namesInConfig(kind);
    case NameKind::topology: {
        std::vector<std::string> names;
        for (const auto& topology : simulator::topologies())
            names.emplace_back(topology.name);
        return names;
    }
    case NameKind::command:
        return {};
    case NameKind::object:
    case NameKind::relay:
    case NameKind::method:
        break;
    }
    return namesOfObjects(kind, begun, objects());
}

Objects objectsOfShare(const std::string& path, std::chrono::milliseconds longest) {
    constexpr std::size_t mostObjects = 10'000;
    auto connection = share_socket::connect(path);
    if (!connection.isOpen())
        return {};
    registerObjects();
    const auto stop = std::make_shared<StreamTransport::Stop>();
    const Alarm alarm(stop, longest);
    try {
        const auto device =
            unlockedDevice(std::make_unique<LocalTransport>(path, std::move(connection), stop), longest);
        Objects objects;
        if (!device->getDevice())
            return objects;
        collect(device->getDevice(), objects);
        const auto build = [&](const std::string& name, std::uint32_t id) {
            collect(ObjectFactory::buildObject(device, name, id, nullptr), objects);
        };
        build("system", DeviceFactory::SystemInstanceID);
        build("private", DeviceFactory::PrivateInstanceID);
        const auto members = device->getDevice()->make(TAVOXTranscode::device_v1_0::rootMembers);
        device->call(members);
        for (const auto& member : members->value().members)
            if (objects.size() < mostObjects)
                build(member.name, member.id);
        return objects;
    } catch (const std::exception&) {
        // The user types: there is nobody to tell.
        return {};
    }
}

} // namespace TAVO::cli
