#pragma once

#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/exchange/call_exchange.h>
#include <tavo/client/object/object.h>
#include <tests/support/fake_device.h>
#include <tests/support/scripted_transport.h>

namespace support {

/// Methods of an object "thing" with instance id 0x07, and an exchange over a scripted transport.
class ExchangeFixture : public testing::Test {
protected:
    using Batch = std::vector<std::shared_ptr<TAVO::Method>>;
    using TypeMethod = TAVO::BoundMethod<TAVO::dto::Base::TypeReply>;
    using Tables = std::pair<TAVO::Object_v1_0::EncoderList, TAVO::Object_v1_0::DecoderList>;

    ExchangeFixture() {
        auto& fake = device->appliance.add(7, "thing");
        fake.withoutListedMethods()
            .listedMethod("type", 0x21)
            .listedMethod("reserve", 0x22)
            .listedMethod("unreserve", 0x23)
            .listedMethod("throwingDecoder", 0x24);
        tables.first["throwingDecoder"] = TAVO::TAVOXTranscode::encodeNothing;
        tables.second["throwingDecoder"] = [](TAVOX::InputStream&) -> TAVO::dto::result {
            throw std::invalid_argument("no such colour");
        };
        object =
            std::make_shared<TAVO::Object_v1_0>(device, "thing", 7u, nullptr, tables.first, tables.second);
    }

    std::shared_ptr<TypeMethod> type() { return object->getTypeMethod(); }
    std::shared_ptr<TAVO::Method> unreserve() { return object->getUnreserveMethod(); }
    std::shared_ptr<TAVO::Method> reserve(const std::string& first, const std::string& second) {
        return object->getReserveMethod(first, second);
    }
    std::shared_ptr<TAVO::Method> named(const std::string& name) {
        return std::make_shared<TAVO::Method>(name, *object, TAVO::dto::Params());
    }
    /// A call whose result is read by that decoder.
    std::shared_ptr<TAVO::Method> readBy(TAVO::TAVOXTranscode::Decoder decoder) {
        tables.second["throwingDecoder"] = decoder;
        return named("throwingDecoder");
    }
    static Bytes typeResult(const std::string& name) { return result(0, text(name)); }

    void run(const Batch& batch, std::uint32_t lockId = 0) { exchange.run(lockId, batch); }
    void run(const Batch& batch, const Bytes& reply) {
        transport.reply.insert(transport.reply.end(), reply.begin(), reply.end());
        exchange.run(0, batch);
    }

    Tables tables;
    std::shared_ptr<FakeDevice> device = std::make_shared<FakeDevice>();
    std::shared_ptr<TAVO::Object_v1_0> object;
    ScriptedTransport transport;
    TAVO::CallExchange exchange{transport};
};

} // namespace support
