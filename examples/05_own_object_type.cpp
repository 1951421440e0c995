// Gives a remote object type a proxy of the application's own: records, tables, proxy and factory.
//
// The type here is "relay", so that the program can be run with any appliance that has one. The library's own
// proxy is replaced; for a type that the library does not know, nothing else changes but the name.
#include <cstdint>
#include <iostream>
#include <memory>
#include <string>
#include <tuple>
#include <utility>

#include <tavo/client.h>

namespace lab {

using TAVO::dto::Field;

// The records: plain members of their wire types, and one list that says their order on the wire.
struct SwitchRequest : TAVO::dto::request_packet {
    bool on = false;
    static constexpr auto fields() { return std::tuple{Field{"on", &SwitchRequest::on}}; }
};

struct StateReply : TAVO::dto::reply_packet {
    std::uint8_t state = 0;
    static constexpr auto fields() { return std::tuple{Field{"state", &StateReply::state}}; }
};

// What applications read: made from the result of a call.
struct SwitchState {
    SwitchState() = default;
    explicit SwitchState(const TAVO::dto::result& outcome)
        : on(TAVO::dto::replyOf<StateReply>(outcome).state != 0) {}
    bool on = false;
};

// The tables: the type's methods beside the eight of every object.
namespace wire = TAVO::TAVOXTranscode;

constexpr wire::MethodRow rows[] = {
    wire::row<SwitchRequest, wire::None>("set"),
    wire::row<wire::None, StateReply>("get"),
};

struct EncoderList : wire::base_v1_0::EncoderList {
    EncoderList() { enter(rows); }
};

struct DecoderList : wire::base_v1_0::DecoderList {
    DecoderList() { enter(rows); }
};

// The proxy: one operation for each method, none of which sends anything.
class Switch : public TAVO::Object_v1_0 {
public:
    using Object_v1_0::Object_v1_0;

    std::shared_ptr<TAVO::Method> getSetMethod(bool on) const {
        return prepare("set", wire::makeRequest<SwitchRequest>(on));
    }
    std::shared_ptr<TAVO::BoundMethod<SwitchState>> getGetMethod() const {
        return prepare<SwitchState>("get");
    }
};

// The factory: chooses the proxy for an object of the type. It enters itself under the type's name.
class SwitchFactory : public TAVO::ObjectFactory {
public:
    SwitchFactory()
        : ObjectFactory("relay") {}

private:
    std::shared_ptr<TAVO::Container> build(std::shared_ptr<TAVO::Device> device,
                                           std::shared_ptr<TAVO::Container> parent, const std::string& name,
                                           std::uint32_t instanceId,
                                           std::shared_ptr<TAVO::Object_v1_0> probe) override {
        requireAtMostOneZero("relay", probe->version());
        static const EncoderList encoders;
        static const DecoderList decoders;
        return create<Switch>(device, parent, name, instanceId, encoders, decoders);
    }
};

void registerObjects() { static SwitchFactory factory; }

} // namespace lab

namespace {

void run(const std::string& host, int port) {
    TAVO::CoreObjects::registerCoreObjects();
    lab::registerObjects();
    const auto device = TAVO::DeviceFactory::buildDevice(host, port, "engineer", "tavo", false);
    const auto power = std::dynamic_pointer_cast<lab::Switch>(device->getChild("power"));
    if (!power)
        throw std::runtime_error("this device has no relay named power");

    for (const bool on : {true, false}) {
        const auto get = power->getGetMethod();
        const auto batch = std::make_shared<TAVO::MulticallQueue>();
        batch->add(power->getSetMethod(on));
        batch->add(get);
        device->multicall(batch);
        std::cout << "switched " << (on ? "on" : "off") << ", reads " << (get->value().on ? "on" : "off")
                  << '\n';
    }
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
