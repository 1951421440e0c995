// Adds an object of the application's own type to a simulated appliance, and calls it.
#include <cstdint>
#include <iostream>
#include <limits>
#include <memory>
#include <string>
#include <tuple>

#include <tavo/client.h>
#include <tavo/simulator/simulator.h>

namespace lab {

namespace wire = TAVO::TAVOXTranscode;
using TAVO::dto::Field;

// A record: members with their wire types, and one list with their names in wire order.
struct LimitRequest : TAVO::dto::request_packet {
    std::string zone;
    std::int32_t celsius = 0;
    static constexpr auto fields() {
        return std::tuple{Field{"zone", &LimitRequest::zone}, Field{"celsius", &LimitRequest::celsius}};
    }
};

struct ReadReply : TAVO::dto::reply_packet {
    std::int32_t celsius = 0;
    bool overLimit = false;
    static constexpr auto fields() {
        return std::tuple{Field{"celsius", &ReadReply::celsius}, Field{"overLimit", &ReadReply::overLimit}};
    }
};

// The methods of the type, for both ends of the connection.
namespace thermometer {

constexpr wire::Call<LimitRequest> limit{"limit"};
constexpr wire::Call<wire::None, ReadReply> read{"read"};
constexpr wire::Call<> clear{"clear"}; // takes the limit away

constexpr auto table = wire::tableOf(limit, read, clear);
wire::MethodRows rows() noexcept { return table; }

} // namespace thermometer

// The user-level result, made from the reply of a call.
struct Temperature {
    Temperature() = default;
    explicit Temperature(const TAVO::dto::result& outcome) {
        const auto& reply = TAVO::dto::replyOf<ReadReply>(outcome);
        text = std::to_string(reply.celsius) + " degrees" + (reply.overLimit ? ", too hot" : "");
    }
    std::string text;
};

class Thermometer : public TAVO::Proxy<thermometer::rows> {
public:
    std::shared_ptr<TAVO::Method> getLimitMethod(const std::string& zone, int celsius) const {
        return make(thermometer::limit, zone, celsius);
    }
    std::shared_ptr<TAVO::BoundMethod<Temperature>> getReadMethod() const {
        return make<Temperature>(thermometer::read);
    }
    std::shared_ptr<TAVO::Method> getClearMethod() const { return make(thermometer::clear); }

protected:
    using Proxy::Proxy;
};

class ThermometerFactory : public TAVO::TypeFactory {
public:
    ThermometerFactory()
        : TypeFactory("thermometer", {servedBy<Thermometer>("1.0")}) {}
};

// The other end: the thermometer of a simulated appliance. Its methods come from the factory.
class SimulatedThermometer : public TAVO::simulator::SimulatedObject {
public:
    SimulatedThermometer()
        : SimulatedObject("thermometer", "1.0") {
        on(thermometer::limit, [this](const LimitRequest& request) {
            limit_ = request.celsius;
            return std::int32_t{request.zone == "board" ? 0 : 1}; // the return code
        });
        on(thermometer::read, [this] {
            const std::int32_t celsius = 41;
            return wire::makeRecord<ReadReply>(celsius, celsius > limit_);
        });
        on(thermometer::clear, [this] { limit_ = noLimit; });
    }

private:
    static constexpr auto noLimit = std::numeric_limits<std::int32_t>::max();

    std::int32_t limit_ = noLimit;
};

} // namespace lab

int main() try {
    TAVO::CoreObjects::registerCoreObjects();
    static lab::ThermometerFactory factory;

    TAVO::simulator::Simulator simulator;
    simulator.inspect(
        [](TAVO::simulator::Appliance& appliance) { appliance.add<lab::SimulatedThermometer>("probe"); });
    simulator.start();

    const auto device =
        TAVO::DeviceFactory::buildDevice("127.0.0.1", simulator.port(), "engineer", "tavo", false);
    const auto probe = device->get<lab::Thermometer>("probe");
    for (const int limit : {50, 40}) {
        const auto read = probe->getReadMethod();
        const auto batch = std::make_shared<TAVO::MulticallQueue>();
        batch->add(probe->getLimitMethod("board", limit));
        batch->add(read);
        device->multicall(batch);
        std::cout << "limit " << limit << ": " << read->value().text << '\n';
    }
    device->execute(probe->getClearMethod());
    std::cout << "no limit: " << device->value(probe->getReadMethod()).text << '\n';
} catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
}
