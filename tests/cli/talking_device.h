#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include <tavo/client.h>
#include <tests/support/all_types.h>
#include <tests/support/fake_appliance.h>
#include <tests/support/said_value.h>

namespace tool_test {

using support::Bytes;
using support::joined;
using support::u32;

/// A device with an object of every type that a command works on, in whose names and answers every text is
/// `said`.
class TalkingDevice {
public:
    using Answer = std::function<Bytes(const TAVO::TAVOXTranscode::MethodRow&)>;

    explicit TalkingDevice(std::string said)
        : said_(std::move(said)) {
        support::registerAllTypes();
        support::addFixedObjects(appliance);
        addMethods(appliance.object(0), "device", "1.0");
        addMethods(appliance.object(1), "system", "1.0");
        std::uint32_t id = 10;
        Bytes members;
        for (const auto& [type, version] : types) {
            add(id, type, version);
            members = joined({members, support::text(nameOf(type)), u32(id)});
            ++id;
        }
        appliance.object(0).method("rootMembers", support::result(0, joined({u32(id - 10), members})));
        // Without these it is no gpuDebug.
        add(30, "jtag", "1.1");
        add(31, "gpuScan", "1.0");
        appliance.object(11).member("jtag", 30).member("gpuScan", 31);
    }

    std::string nameOf(std::string_view type) const { return std::string(type) + said_; }

    support::FakeAppliance appliance;
    /// What a call that is no part of opening the device comes to.
    Answer answer = [this](const TAVO::TAVOXTranscode::MethodRow& row) {
        return support::result(0, row.reply ? support::saidRecord(row.reply->fields(), said_) : Bytes());
    };

private:
    struct Type {
        const char* name;
        const char* version;
    };
    static constexpr Type types[] = {{"relay", "1.0"}, {"gpuDebug", "1.0"},    {"hdt", "1.1"},
                                     {"i2c", "1.0"},   {"lpcPostCode", "1.0"}, {"lpcRomEmulation", "1.0"},
                                     {"com", "1.0"},   {"cfa633", "1.0"}};
    static constexpr std::string_view ofOpening[] = {"lock", "unlock",  "getKey",  "rootMembers", "login",
                                                     "type", "version", "members", "methods"};

    void add(std::uint32_t id, const char* type, std::string_view version) {
        auto& object = appliance.add(id, type).version(1, version == "1.1" ? 1 : 0, 0);
        addMethods(object, "base", "1.0");
        addMethods(object, type, version);
        if (version == "1.1")
            addMethods(object, "headerStatus", version);
    }

    void addMethods(support::FakeObject& object, std::string_view type, std::string_view version) {
        for (const auto& row : TAVO::methodRows(type, version))
            if (std::find(std::begin(ofOpening), std::end(ofOpening), row.name) == std::end(ofOpening))
                object.method(std::string(row.name), [this, &row](const Bytes&) { return answer(row); });
    }

    std::string said_;
};

} // namespace tool_test
