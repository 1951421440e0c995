// Gives a remote object type that the library does not know a proxy of the application's own.
//
// The type is "rack": it groups other objects and can show which one it is by blinking.
#include <cstdint>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <tavo/client.h>

namespace lab {

namespace wire = TAVO::TAVOXTranscode;

// The tables: the methods of the type, which join the eight of every object.
constexpr wire::MethodRow rackRows[] = {
    wire::row<wire::None, wire::None>("identify"), // no parameters, returns its status alone
};

struct RackEncoders : wire::base_v1_0::EncoderList {
    RackEncoders() { enter(rackRows); }
};

struct RackDecoders : wire::base_v1_0::DecoderList {
    RackDecoders() { enter(rackRows); }
};

// The proxy: an operation for each method, none of which sends anything, and whatever else is of use.
class Rack : public TAVO::Object_v1_0 {
public:
    using Object_v1_0::Object_v1_0;

    std::shared_ptr<TAVO::Method> getIdentifyMethod() const { return prepare("identify"); }

    // One batch that sets all relays of the rack and of the racks in it.
    std::shared_ptr<TAVO::MulticallQueue> getSetAllQueue(bool on) const {
        const auto queue = std::make_shared<TAVO::MulticallQueue>();
        addTo(*queue, on);
        return queue;
    }

protected:
    // Runs once, when the members are there.
    void initalize() override {
        for (const auto& child : getChildren()) {
            if (auto relay = std::dynamic_pointer_cast<CommonModules::Relay_v1_0>(child))
                relays_.push_back(relay);
            if (auto rack = std::dynamic_pointer_cast<Rack>(child))
                racks_.push_back(rack);
        }
    }

private:
    void addTo(TAVO::MulticallQueue& queue, bool on) const {
        for (const auto& relay : relays_)
            queue.add(relay->getSetMethod(on));
        for (const auto& rack : racks_)
            rack->addTo(queue, on);
    }

    std::vector<std::shared_ptr<CommonModules::Relay_v1_0>> relays_;
    std::vector<std::shared_ptr<Rack>> racks_;
};

// The factory: makes the proxies of the type. It enters itself under the type's name when it is constructed.
class RackFactory : public TAVO::ObjectFactory {
public:
    RackFactory()
        : ObjectFactory("rack") {}

private:
    std::shared_ptr<TAVO::Container> build(std::shared_ptr<TAVO::Device> device,
                                           std::shared_ptr<TAVO::Container> parent, const std::string& name,
                                           std::uint32_t instanceId,
                                           std::shared_ptr<TAVO::Object_v1_0> probe) override {
        const auto version = probe->version();
        if (version != TAVO::Version("3"))
            throw TAVO::SpecificationError("Unknown rack object version: " + version.text);
        static const RackEncoders encoders;
        static const RackDecoders decoders;
        return create<Rack>(device, parent, name, instanceId, encoders, decoders);
    }
};

void registerObjects() { static RackFactory rackFactory; }

} // namespace lab

namespace {

void run(const std::string& host, int port) {
    TAVO::CoreObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();
    lab::registerObjects();

    const auto device = TAVO::DeviceFactory::buildDevice(host, port, "engineer", "tavo", false);
    const auto bench = std::dynamic_pointer_cast<lab::Rack>(device->getChild("bench"));
    if (!bench)
        throw std::runtime_error("this device has no rack named bench");

    const auto identify = bench->getIdentifyMethod();
    device->call(identify);
    std::cout << identify->getFullName() << " returned " << identify->returnCode() << '\n';

    const auto allOn = bench->getSetAllQueue(true);
    device->multicall(allOn);
    for (const auto& method : allOn->getMethods())
        std::cout << method->getFullName() << " returned " << method->returnCode() << '\n';
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: " << argv[0] << " HOST PORT\n";
        return 2;
    }
    try {
        run(argv[1], std::stoi(argv[2]));
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return 1;
    }
}
