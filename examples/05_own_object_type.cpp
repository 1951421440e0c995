// Defines a proxy for a remote object type that the library does not know.
//
// The type is "rack": it groups other objects and can blink to identify itself.
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <tavo/client.h>

namespace lab {

namespace wire = TAVO::TAVOXTranscode;

// The methods of the type, and the table that adds them to the eight of every object.
namespace rack {

constexpr wire::Call<> identify{"identify"}; // no parameters, returns its status alone

constexpr auto table = wire::tableOf(identify);
wire::MethodRows rows() noexcept { return table; }

} // namespace rack

// The proxy: one operation per method, none of which sends anything, and other useful operations.
class Rack : public TAVO::Proxy<rack::rows> {
public:
    std::shared_ptr<TAVO::Method> getIdentifyMethod() const { return make(rack::identify); }

    // A batch that sets all relays of the rack and of the racks in it.
    std::shared_ptr<TAVO::MulticallQueue> getSetAllQueue(bool on) const {
        const auto queue = std::make_shared<TAVO::MulticallQueue>();
        addTo(*queue, on);
        return queue;
    }

protected:
    using Proxy::Proxy;

    // Runs once, when all members exist.
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

// The factory makes the proxies of the type. Its constructor registers it under the type's name.
class RackFactory : public TAVO::TypeFactory {
public:
    RackFactory()
        : TypeFactory("rack", {servedBy<Rack>("3", isThree)}) {}

private:
    static bool isThree(const TAVO::Version& version) { return version == "3"; }
};

void registerObjects() { static RackFactory rackFactory; }

} // namespace lab

namespace {

void run(const std::string& host, int port) {
    TAVO::CoreObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();
    lab::registerObjects();

    const auto device = TAVO::DeviceFactory::buildDevice(host, port, "engineer", "tavo", false);
    const auto bench = device->get<lab::Rack>("bench");

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
