#include <algorithm>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/commonmodules/relay_tables.h>
#include <tavo/client/method_tables.h>
#include <tavo/client/transcode/device_tables.h>
#include <tavo/client/transcode/header_status_tables.h>
#include <tavo/client/transcode/system_tables.h>

namespace {

using namespace TAVO::TAVOXTranscode;
namespace common = CommonModules::TAVOXTranscode;
using Names = std::vector<std::string>;

const Names baseNames{"type",           "version",   "members", "methods",
                      "methodsVerbose", "available", "reserve", "unreserve"};

/// A type's tables, and the names that they must hold beyond those of every object.
struct PublishedTable {
    std::string type;
    std::string version;
    std::size_t count;
    Names names;
    std::map<std::string, Encoder, std::less<>> madeEncoders;
    std::map<std::string, Decoder, std::less<>> madeDecoders;
    const base_v1_0::EncoderList* encoders;
    const base_v1_0::DecoderList* decoders;
};

void PrintTo(const PublishedTable& table, std::ostream* out) {
    auto name = table.type + "_" + table.version;
    std::replace(name.begin(), name.end(), '.', '_');
    *out << name;
}

template <class EncoderList, class DecoderList>
PublishedTable table(const char* type, const char* version, std::size_t count, Names names,
                     const EncoderList& encoders, const DecoderList& decoders) {
    return {type, version, count, std::move(names), EncoderList(), DecoderList(), &encoders, &decoders};
}

std::vector<PublishedTable> publishedTables() {
    return {
        table("device", "1.0", 7, {"info", "rootMembers", "lock", "unlock", "getKey", "login", "CHAPRespond"},
              device_v1_0::encoders(), device_v1_0::decoders()),
        table("system", "1.0", 7,
              {"deviceReset", "firmwareUpdate", "firmwareStatus", "timeGet", "timeSet", "usleep", "uwait"},
              system_v1_0::encoders(), system_v1_0::decoders()),
        table("relay", "1.0", 3, {"get", "set", "toggle"}, common::relay_v1_0::encoders(),
              common::relay_v1_0::decoders()),
        table("cmosRelay", "1.0", 1, {"cmosClear"}, common::cmosRelay_v1_0::encoders(),
              common::cmosRelay_v1_0::decoders()),
    };
}

template <class Map>
std::set<std::string> namesIn(const Map& map) {
    std::set<std::string> names;
    for (const auto& entry : map)
        names.insert(entry.first);
    return names;
}

Names namesOf(MethodRows rows) {
    Names names;
    for (const auto& row : rows)
        names.emplace_back(row.name);
    return names;
}

class MethodTable : public testing::TestWithParam<PublishedTable> {
protected:
    MethodRows rows() const { return TAVO::methodRows(GetParam().type, GetParam().version); }
};

TEST_P(MethodTable, HoldsThePublishedNamesInOrder) {
    EXPECT_EQ(GetParam().names.size(), GetParam().count);
    EXPECT_EQ(namesOf(rows()), GetParam().names);
}

TEST_P(MethodTable, HoldsExactlyTheEightOfEveryObjectAndItsOwn) {
    std::set<std::string> expected(baseNames.begin(), baseNames.end());
    expected.insert(GetParam().names.begin(), GetParam().names.end());
    EXPECT_EQ(expected.size(), 8 + GetParam().count);
    EXPECT_EQ(namesIn(GetParam().madeEncoders), expected);
    EXPECT_EQ(namesIn(GetParam().madeDecoders), expected);
}

TEST_P(MethodTable, AnswersTheEightNamesWithTheFunctionsOfEveryObject) {
    for (const auto& name : baseNames) {
        EXPECT_EQ(GetParam().madeEncoders.at(name), base_v1_0::encoders().at(name)) << name;
        EXPECT_EQ(GetParam().madeDecoders.at(name), base_v1_0::decoders().at(name)) << name;
    }
}

TEST_P(MethodTable, HoldsTheFunctionsOfItsRows) {
    for (const auto& row : rows()) {
        EXPECT_EQ(GetParam().madeEncoders.find(row.name)->second, row.encoder) << row.name;
        EXPECT_EQ(GetParam().madeDecoders.find(row.name)->second, row.decoder) << row.name;
    }
}

TEST_P(MethodTable, ThatProxiesUseIsTheOneThatAConstructorMakes) {
    EXPECT_TRUE(std::equal(GetParam().encoders->begin(), GetParam().encoders->end(),
                           GetParam().madeEncoders.begin(), GetParam().madeEncoders.end()));
    EXPECT_TRUE(std::equal(GetParam().decoders->begin(), GetParam().decoders->end(),
                           GetParam().madeDecoders.begin(), GetParam().madeDecoders.end()));
}

INSTANTIATE_TEST_SUITE_P(Types, MethodTable, testing::ValuesIn(publishedTables()),
                         testing::PrintToStringParamName());

TEST(MethodTables, AreKnownForThePublishedTypesAndNoOthers) {
    std::multiset<std::string> expected{"base 1.0", "headerStatus 1.1"};
    for (const auto& published : publishedTables())
        expected.insert(published.type + " " + published.version);
    std::multiset<std::string> known;
    for (const auto& listed : TAVO::objectTables())
        known.insert(std::string(listed.type) + " " + std::string(listed.version));
    EXPECT_EQ(known, expected);
}

TEST(MethodTables, HoldNoRowsForUnknownTypesAndVersions) {
    EXPECT_TRUE(TAVO::methodRows("relay", "1.1").empty());
    EXPECT_TRUE(TAVO::methodRows("Relay", "1.0").empty());
    EXPECT_TRUE(TAVO::methodRows("", "").empty());
}

TEST(MethodTables, OfEveryObjectHoldEightNames) {
    EXPECT_EQ(namesOf(base_v1_0::rows()), baseNames);
    EXPECT_EQ(base_v1_0::EncoderList().size(), 8u);
    EXPECT_EQ(base_v1_0::DecoderList().size(), 8u);
}

TEST(MethodTables, OfHeaderStatusHoldTheSharedFunctions) {
    EXPECT_EQ(namesOf(headerStatus_v1_1::rows()),
              (Names{"headerStatusGet", "headerStatusClear", "enableGet", "enableSet", "iGet", "iSet", "oGet",
                     "ioGet", "ioSet"}));
    EXPECT_EQ(headerStatus_v1_1::rows()[4].decoder, &headerStatus_v1_1::decode_iGet);
    EXPECT_EQ(headerStatus_v1_1::rows()[8].encoder, &headerStatus_v1_1::encode_ioSet);
}

TEST(MethodTables, CompareNamesByteByByte) {
    const device_v1_0::EncoderList encoders;
    const device_v1_0::DecoderList decoders;
    for (const char* name : {"Type", "type ", "", "LOCK", "getMaxPacketSize", "CHAPResponse"}) {
        EXPECT_EQ(encoders.find(name), encoders.end()) << name;
        EXPECT_EQ(decoders.find(name), decoders.end()) << name;
    }
    EXPECT_EQ(encoders.count("type"), 1u);
}

TEST(MethodTables, HoldTheFunctionsUnderTheirPublishedNames) {
    EXPECT_EQ(device_v1_0::encoders().at("CHAPRespond"), &device_v1_0::encode_CHAPResponse);
    EXPECT_EQ(device_v1_0::decoders().at("CHAPRespond"), &device_v1_0::decode_CHAPResponse);
    EXPECT_EQ(base_v1_0::encoders().at("reserve"), &base_v1_0::encode_reserve);
    EXPECT_EQ(base_v1_0::decoders().at("methods"), &base_v1_0::decode_methods);
    EXPECT_EQ(system_v1_0::decoders().at("timeGet"), &system_v1_0::decode_timeGet);
    EXPECT_EQ(common::relay_v1_0::encoders().at("toggle"), &common::relay_v1_0::encode_toggle);
    EXPECT_EQ(common::cmosRelay_v1_0::encoders().at("cmosClear"), &common::cmosRelay_v1_0::encode_cmosClear);
}

TEST(MethodTables, CanBeExtendedByAnApplication) {
    struct OwnEncoders : base_v1_0::EncoderList {
        OwnEncoders() { (*this)["own"] = encodeNothing; }
    };
    const OwnEncoders encoders;
    EXPECT_EQ(encoders.size(), 9u);
    EXPECT_EQ(encoders.at("own"), &encodeNothing);
    EXPECT_EQ(encoders.at("type"), &base_v1_0::encode_type);
}

} // namespace
