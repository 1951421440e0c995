// Makes calls one by one, and many of them in one exchange.
#include <iostream>
#include <memory>
#include <string>

#include <tavo/client.h>

namespace {

void singleCalls(TAVO::Device& device, const CommonModules::Relay_v1_0& relay) {
    const auto set = relay.getSetMethod(true); // prepares the call; nothing is sent
    device.call(set);                          // one exchange
    std::cout << set->getFullName() << " returned " << set->returnCode() << '\n';

    const auto state = device.value(relay.getGetMethod()).state; // one exchange, which must succeed
    std::cout << "the relay is " << (state != 0 ? "on" : "off") << '\n';

    namespace calls = CommonModules::TAVOXTranscode::relay_v1_0;
    device.execute(relay.make(calls::set, true)); // the same as getSetMethod(true), and must succeed
}

void batch(TAVO::Device& device, const CommonModules::Relay_v1_0& relay) {
    const auto before = relay.getGetMethod();
    const auto off = relay.getSetMethod(false);
    const auto pause = device.getSystem()->getUSleepMethod(1000);
    const auto after = relay.getGetMethod();

    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    queue->add(before);
    queue->add(off);
    queue->add(pause);
    queue->add(after);
    device.multicall(queue); // four calls, carried out in order, one exchange

    std::cout << "before: " << int{before->value().state} << ", after: " << int{after->value().state} << '\n';
    for (const auto& method : queue->getMethods())
        std::cout << "  " << method->getFullName() << " returned " << method->returnCode() << '\n';

    device.multicall(queue); // the same calls again, their results replaced
    std::cout << "the second time: " << int{before->value().state} << ", " << int{after->value().state}
              << '\n';
}

void run(const std::string& host, int port) {
    TAVO::CoreObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();
    const auto device = TAVO::DeviceFactory::buildDevice(host, port, "engineer", "tavo", false);
    const auto relay = device->get<CommonModules::Relay_v1_0>("power");
    singleCalls(*device, *relay);
    batch(*device, *relay);
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
