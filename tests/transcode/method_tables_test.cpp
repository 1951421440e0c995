#include <algorithm>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/commonmodules/cfa633.h>
#include <tavo/client/commonmodules/com.h>
#include <tavo/client/commonmodules/relay.h>
#include <tavo/client/hwdebug/cpu_debug.h>
#include <tavo/client/hwdebug/cs_jtag.h>
#include <tavo/client/hwdebug/gpu_debug.h>
#include <tavo/client/hwdebug/gpu_scan.h>
#include <tavo/client/hwdebug/hdt.h>
#include <tavo/client/hwdebug/i2c.h>
#include <tavo/client/hwdebug/jtag.h>
#include <tavo/client/hwdebug/kelvor_gpu_debug_mux.h>
#include <tavo/client/hwdebug/lpc.h>
#include <tavo/client/hwdebug/lpc_post_code.h>
#include <tavo/client/hwdebug/lpc_rom_emulation.h>
#include <tavo/client/object/method_tables.h>
#include <tavo/client/transcode/device_tables.h>
#include <tavo/client/transcode/header_status_tables.h>
#include <tavo/client/transcode/system_tables.h>
#include <tests/support/all_types.h>
#include <tests/support/golden_vectors.h>

namespace {

using namespace TAVO::TAVOXTranscode;
namespace common = CommonModules::TAVOXTranscode;
using Names = std::vector<std::string>;

const Names baseNames{"type",           "version",   "members", "methods",
                      "methodsVerbose", "available", "reserve", "unreserve"};

/// A type's tables.
struct PublishedTable {
    std::string type;
    std::string version;
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
PublishedTable table(const char* type, const char* version, const EncoderList& encoders,
                     const DecoderList& decoders) {
    return {type, version, EncoderList(), DecoderList(), &encoders, &decoders};
}

std::vector<PublishedTable> publishedTables() {
    return {
        table("device", "1.0", TAVO::immortal<const device_v1_0::EncoderList>(),
              TAVO::immortal<const device_v1_0::DecoderList>()),
        table("system", "1.0", TAVO::immortal<const system_v1_0::EncoderList>(),
              TAVO::immortal<const system_v1_0::DecoderList>()),
        table("private", "1.0", base_v1_0::encoders(), base_v1_0::decoders()),
        table("jtag", "1.0", TAVO::immortal<const jtag_v1_0::EncoderList>(),
              TAVO::immortal<const jtag_v1_0::DecoderList>()),
        table("jtag", "1.1", TAVO::immortal<const jtag_v1_1::EncoderList>(),
              TAVO::immortal<const jtag_v1_1::DecoderList>()),
        table("csJtag", "1.0", TAVO::immortal<const csJtag_v1_0::EncoderList>(),
              TAVO::immortal<const csJtag_v1_0::DecoderList>()),
        table("hdt", "1.0", TAVO::immortal<const hdt_v1_0::EncoderList>(),
              TAVO::immortal<const hdt_v1_0::DecoderList>()),
        table("hdt", "1.1", TAVO::immortal<const hdt_v1_1::EncoderList>(),
              TAVO::immortal<const hdt_v1_1::DecoderList>()),
        table("cpuDebug", "1.0", TAVO::immortal<const cpuDebug_v1_0::EncoderList>(),
              TAVO::immortal<const cpuDebug_v1_0::DecoderList>()),
        table("cpuDebug", "1.1", TAVO::immortal<const cpuDebug_v1_1::EncoderList>(),
              TAVO::immortal<const cpuDebug_v1_1::DecoderList>()),
        table("i2c", "1.0", TAVO::immortal<const i2c_v1_0::EncoderList>(),
              TAVO::immortal<const i2c_v1_0::DecoderList>()),
        table("gpuScan", "1.0", TAVO::immortal<const gpuScan_v1_0::EncoderList>(),
              TAVO::immortal<const gpuScan_v1_0::DecoderList>()),
        table("gpuDebug", "1.0", TAVO::immortal<const gpuDebug_v1_0::EncoderList>(),
              TAVO::immortal<const gpuDebug_v1_0::DecoderList>()),
        table("kelvorGpuDebugMux", "1.0", TAVO::immortal<const kelvorGpuDebugMux_v1_0::EncoderList>(),
              TAVO::immortal<const kelvorGpuDebugMux_v1_0::DecoderList>()),
        table("kelvorUvdMux", "1.0", base_v1_0::encoders(), base_v1_0::decoders()),
        table("lpc", "1.0", TAVO::immortal<const lpc_v1_0::EncoderList>(),
              TAVO::immortal<const lpc_v1_0::DecoderList>()),
        table("lpcPostCode", "1.0", TAVO::immortal<const lpcPostCode_v1_0::EncoderList>(),
              TAVO::immortal<const lpcPostCode_v1_0::DecoderList>()),
        table("lpcRomEmulation", "1.0", TAVO::immortal<const lpcRomEmulation_v1_0::EncoderList>(),
              TAVO::immortal<const lpcRomEmulation_v1_0::DecoderList>()),
        table("relay", "1.0", TAVO::immortal<const common::relay_v1_0::EncoderList>(),
              TAVO::immortal<const common::relay_v1_0::DecoderList>()),
        table("cmosRelay", "1.0", TAVO::immortal<const common::cmosRelay_v1_0::EncoderList>(),
              TAVO::immortal<const common::cmosRelay_v1_0::DecoderList>()),
        table("com", "1.0", TAVO::immortal<const common::com_v1_0::EncoderList>(),
              TAVO::immortal<const common::com_v1_0::DecoderList>()),
        table("cfa633", "1.0", TAVO::immortal<const common::cfa633_v1_0::EncoderList>(),
              TAVO::immortal<const common::cfa633_v1_0::DecoderList>()),
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
    MethodRows rows() const { return support::rowsOf(GetParam().type, GetParam().version); }
    /// What the tables must hold beyond the names of every object: those of the golden bytes.
    Names ownNames() const { return support::goldenMethods(GetParam().type, GetParam().version); }
};

TEST_P(MethodTable, HoldsThePublishedNamesInOrder) { EXPECT_EQ(namesOf(rows()), ownNames()); }

TEST_P(MethodTable, HoldsExactlyTheEightOfEveryObjectAndItsOwn) {
    std::set<std::string> expected(baseNames.begin(), baseNames.end());
    const auto own = ownNames();
    expected.insert(own.begin(), own.end());
    EXPECT_EQ(expected.size(), 8 + own.size());
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
    for (const auto& listed : support::allTables())
        known.insert(std::string(listed.type) + " " + std::string(listed.version));
    EXPECT_EQ(known, expected);
}

TEST(MethodTables, HoldNoRowsForUnknownTypesAndVersions) {
    EXPECT_TRUE(support::rowsOf("relay", "1.1").empty());
    EXPECT_TRUE(support::rowsOf("Relay", "1.0").empty());
    EXPECT_TRUE(support::rowsOf("", "").empty());
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
    EXPECT_EQ(TAVO::immortal<const device_v1_0::EncoderList>().at("CHAPRespond"),
              &device_v1_0::encode_CHAPResponse);
    EXPECT_EQ(TAVO::immortal<const device_v1_0::DecoderList>().at("CHAPRespond"),
              &device_v1_0::decode_CHAPResponse);
    EXPECT_EQ(base_v1_0::encoders().at("reserve"), &base_v1_0::encode_reserve);
    EXPECT_EQ(base_v1_0::decoders().at("methods"), &base_v1_0::decode_methods);
    EXPECT_EQ(TAVO::immortal<const system_v1_0::DecoderList>().at("timeGet"), &system_v1_0::decode_timeGet);
    EXPECT_EQ(TAVO::immortal<const common::relay_v1_0::EncoderList>().at("toggle"),
              &common::relay_v1_0::encode_toggle);
    EXPECT_EQ(TAVO::immortal<const common::cmosRelay_v1_0::EncoderList>().at("cmosClear"),
              &common::cmosRelay_v1_0::encode_cmosClear);
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
