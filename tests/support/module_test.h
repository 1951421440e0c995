#pragma once

#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include <tavo/client/object/method_tables.h>
#include <tavo/client/object/object_factory.h>
#include <tavo/client/wire/error.h>
#include <tests/support/all_types.h>
#include <tests/support/failure_text.h>
#include <tests/support/fake_device.h>
#include <tests/support/wire_bytes.h>

namespace support {

/// A record with these fields, in wire order.
template <class Record, class... Fields>
Record record(Fields... fields) {
    Record made;
    std::apply([&](const auto&... field) { ((made.*field.member = std::move(fields)), ...); },
               Record::fields());
    return made;
}

/// The outcome of a call that succeeded with this reply.
template <class Reply>
TAVO::dto::result outcomeWith(const Reply& reply) {
    return {0, std::make_shared<Reply>(reply)};
}

/// Opens objects of an appliance in memory as proxies, and looks at the calls that they make.
class ModuleTest : public testing::Test {
protected:
    using Request = std::pair<std::string, Bytes>;

    /// An object of that type and of version 1.`minor`, which succeeds in all its methods.
    FakeObject& add(std::uint32_t id, const std::string& type, std::uint32_t minor) {
        auto& object = device->appliance.add(id, type).version(1, minor, 0);
        for (const auto& row : support::rowsOf(type, "1." + std::to_string(minor)))
            object.method(std::string(row.name), result(0, row.reply ? zeros : Bytes()));
        return object;
    }

    std::shared_ptr<TAVO::Container> build(std::uint32_t id) {
        return TAVO::ObjectFactory::buildObject(device, "module", id, nullptr);
    }

    /// The proxy of an added object; empty when it is of another class.
    template <class Proxy>
    std::shared_ptr<Proxy> open(std::uint32_t id) {
        return std::dynamic_pointer_cast<Proxy>(build(id));
    }

    template <class Proxy>
    std::shared_ptr<Proxy> openOnly(const std::string& type, std::uint32_t minor = 0) {
        add(7, type, minor);
        return open<Proxy>(7);
    }

    /// Of the object of openOnly() and its like.
    std::string failureToOpen() {
        return failureOf<TAVO::SpecificationError>([&] { build(7); });
    }

    /// The remote method's name and the parameter bytes that the device receives.
    Request sentBy(const std::shared_ptr<TAVO::Method>& method) {
        device->appliance.forgetCalls();
        device->call(method);
        const auto& calls = device->appliance.calls();
        EXPECT_EQ(calls.size(), 1u);
        EXPECT_EQ(method->returnCode(), 0);
        return {calls.back().method, calls.back().parameters};
    }

    static Request request(const std::string& method, const std::string& hex = "") {
        return {method, bytesFromHex(hex)};
    }

    /// The value of the call when the device replies with these bytes after the return code. Takes nothing
    /// but a BoundMethod of exactly that result type.
    template <class Result>
    Result reply(const std::type_identity_t<std::shared_ptr<TAVO::BoundMethod<Result>>>& method,
                 const std::string& hex) {
        device->appliance.object(method->getObject()->getInstanceID())
            .method(method->getName(), result(0, bytesFromHex(hex)));
        device->call(method);
        return method->value();
    }

    /// Enough for any reply record, which it fills with zeros and empty lists.
    inline static const Bytes zeros = Bytes(64);

    std::shared_ptr<FakeDevice> device = std::make_shared<FakeDevice>();
};

/// A reply to "headerStatusGet": header "H" with the flags 1, 0, 1, and a connection of "A" to "B" and "C".
inline const std::string headerStatusHex =
    "00000001 00000001 48 01 00 01  00000001 00000001 00000001 41 00000002 00000001 42 00000001 43";

} // namespace support
