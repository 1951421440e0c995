#include <cstdint>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/commonmodules/relay.h>
#include <tavo/client/object/method_tables.h>
#include <tavo/client/transcode/device_tables.h>
#include <tavo/client/transcode/header_status_tables.h>
#include <tavo/client/transcode/system_tables.h>
#include <tavo/client/transcode/table.h>
#include <tavo/client/wire/internal/readable_name.h>
#include <tests/support/all_types.h>
#include <tests/support/allocation_meter.h>
#include <tests/support/output_chunks.h>

namespace {

using support::written;
using namespace TAVO::TAVOXTranscode;
using TAVO::dto::Params;
using TAVOX::InputStream;
using TAVOX::OutputStream;
namespace relay = CommonModules::TAVOXTranscode::relay_v1_0;
namespace dto = TAVO::dto;

struct ForeignRequest : dto::request_packet {};
struct ForeignReply : dto::reply_packet {};

template <class Packet>
std::string refusalOf(const std::string& opening, const std::shared_ptr<Packet>& held,
                      const std::type_info& desired) {
    const auto* record = held.get();
    return opening + (record ? TAVO::readableName(typeid(*record)) : "no record") + " to desired " +
           TAVO::readableName(desired) + "\n";
}

void expectRefusal(Encoder encoder, const Params& params, const std::type_info& desired) {
    OutputStream out;
    testing::internal::CaptureStderr();
    try {
        encoder(out, params);
        ADD_FAILURE() << "the encoder accepted the parameters";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "Can't convert Params to desire type");
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              refusalOf("const Can't convert ", params.request, desired));
    EXPECT_EQ(out.total(), 0u);
    EXPECT_FALSE(out.failed());
}

InputStream readerOf(const Bytes& bytes) { return {bytes.data(), bytes.size()}; }

template <class Condition, class Check>
void forEveryRow(Condition condition, Check check) {
    for (const auto& table : support::allTables())
        for (const auto& row : table.rows)
            if (condition(row)) {
                SCOPED_TRACE(std::string(table.type) + " " + std::string(table.version) + " " +
                             std::string(row.name));
                check(row);
            }
}

bool hasRequest(const MethodRow& row) { return row.request; }
bool hasNoRequest(const MethodRow& row) { return !row.request; }
bool hasReply(const MethodRow& row) { return row.reply; }
bool hasNoReply(const MethodRow& row) { return !row.reply; }

TEST(Encoders, RefuseTheRecordOfAnotherMethodAndWriteNothing) {
    auto toggle = std::make_shared<dto::relay::ToggleRequest>();
    expectRefusal(relay::encode_set, Params{toggle}, typeid(dto::relay::SetRequest));
    auto set = std::make_shared<dto::relay::SetRequest>();
    expectRefusal(relay::encode_toggle, Params{set}, typeid(dto::relay::ToggleRequest));
    auto lock = std::make_shared<dto::Device::LockRequest>();
    expectRefusal(device_v1_0::encode_unlock, Params{lock}, typeid(dto::Device::UnLockRequest));
}

TEST(Encoders, OfEveryMethodRefuseMissingAndForeignRecords) {
    forEveryRow(hasRequest, [](const MethodRow& row) {
        const auto packet = row.request->create();
        const auto& record = *packet;
        const auto& desired = typeid(record);
        expectRefusal(row.encoder, Params{}, desired);
        expectRefusal(row.encoder, Params{std::make_shared<ForeignRequest>()}, desired);
    });
}

TEST(Encoders, WithoutParametersIgnoreWhateverTheParamsHold) {
    forEveryRow(hasNoRequest, [](const MethodRow& row) {
        OutputStream out;
        row.encoder(out, Params{});
        row.encoder(out, Params{std::make_shared<ForeignRequest>()});
        EXPECT_EQ(out.total(), 0u);
        EXPECT_FALSE(out.failed());
        EXPECT_EQ(row.encoder, &encodeNothing);
    });
}

TEST(Encoders, AcceptARecordDerivedFromTheirs) {
    struct Special : dto::relay::ToggleRequest {};
    auto request = std::make_shared<Special>();
    request->value = 7;
    OutputStream out;
    relay::encode_toggle(out, Params{request});
    EXPECT_EQ(written(out), (Bytes{0, 0, 0, 7}));
}

TEST(Encoders, WriteTheLengthOfABlockInFourBytes) {
    auto request = std::make_shared<dto::system::FirmwareUpdateRequest>();
    request->name = std::string(256, 'n');
    request->image.assign(70000, 0xa5);
    OutputStream out;
    system_v1_0::encode_firmwareUpdate(out, Params{request});
    Bytes expected{0, 0, 1, 0};
    expected.insert(expected.end(), 256, 'n');
    expected.insert(expected.end(), {0, 1, 0x11, 0x70});
    expected.insert(expected.end(), 70000, 0xa5);
    EXPECT_EQ(written(out), expected);
    EXPECT_GT(out.chunks().size(), 2u);
}

TEST(Encoders, OfCHAPRespondWriteTheBytesAlone) {
    auto request = std::make_shared<dto::Device::CHAPResponseRequest>();
    request->response = {1, 2};
    request->number = 0x7fffffff;
    OutputStream out;
    device_v1_0::encode_CHAPResponse(out, Params{request});
    EXPECT_EQ(written(out), (Bytes{0, 0, 0, 2, 1, 2}));
}

TEST(Decoders, OfAStatusConsumeFourBytes) {
    const Bytes bytes{0xff, 0xff, 0xff, 0xfe, 1};
    forEveryRow(hasNoReply, [&](const MethodRow& row) {
        auto in = readerOf(bytes);
        const auto result = row.decoder(in);
        EXPECT_EQ(result.code, -2);
        EXPECT_FALSE(result.reply);
        EXPECT_EQ(in.remaining(), 1u);
        EXPECT_FALSE(in.failed());
        EXPECT_EQ(row.decoder, &decodeStatus);
    });
}

TEST(Decoders, OfNothingAtAllYieldCodeZeroAndADefaultRecord) {
    forEveryRow(hasReply, [](const MethodRow& row) {
        InputStream in(nullptr, 0);
        const auto result = row.decoder(in);
        EXPECT_TRUE(in.failed());
        EXPECT_EQ(result.code, 0);
        ASSERT_TRUE(result.reply);
        EXPECT_EQ(row.reply->toValue(*result.reply), row.reply->toValue(*row.reply->create()));
    });
}

TEST(Decoders, YieldZerosForWhatComesAfterTheCut) {
    const Bytes bytes{0, 0, 0, 0, 0, 0, 0, 9, 0, 0, 0};
    auto in = readerOf(bytes);
    const auto result = base_v1_0::decode_version(in);
    const auto& reply = dto::replyOf<dto::Base::VersionReply>(result);
    EXPECT_EQ(reply.version, (dto::Base::Version{9, 0, 0}));
    EXPECT_TRUE(in.failed());
}

// A decoder, the bytes before a count or length, and nothing behind it but the given number of zeros.
struct Claim {
    const char* name;
    Decoder decoder;
    Bytes head;
    std::size_t zeros;
};

void PrintTo(const Claim& claim, std::ostream* out) { *out << claim.name; }

class PeersWord : public testing::TestWithParam<Claim> {};

TEST_P(PeersWord, AboutMoreThanThereIsFailsTheReaderAndTakesNoMemory) {
    for (const auto highest : Bytes{0x00, 0x7f, 0x80, 0xff}) {
        auto bytes = GetParam().head;
        bytes.insert(bytes.end(), {highest, 0xff, 0xff, 0xff});
        bytes.insert(bytes.end(), GetParam().zeros, 0);
        auto in = readerOf(bytes);
        const support::AllocationMeter meter;
        const auto result = GetParam().decoder(in);
        EXPECT_TRUE(in.failed());
        EXPECT_LT(meter.total(), 1000u);
        EXPECT_TRUE(result.reply);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Claims, PeersWord,
    testing::Values(Claim{"Type", base_v1_0::decode_type, {0, 0, 0, 0}, 8},
                    Claim{"Members", base_v1_0::decode_members, {0, 0, 0, 0}, 64},
                    Claim{"Methods", base_v1_0::decode_methods, {0, 0, 0, 0}, 64},
                    Claim{"MethodsVerbose", base_v1_0::decode_methodsVerbose, {0, 0, 0, 0}, 64},
                    Claim{"MemberName", base_v1_0::decode_members, {0, 0, 0, 0, 0, 0, 0, 1}, 8},
                    Claim{"RootMembers", device_v1_0::decode_rootMembers, {0, 0, 0, 0}, 64},
                    Claim{"Key", device_v1_0::decode_getKey, {0, 0, 0, 0}, 8},
                    Claim{"Firmware", device_v1_0::decode_info, Bytes(20, 0), 64},
                    Claim{"Boards", device_v1_0::decode_info, Bytes(24, 0), 64},
                    Claim{"Headers", headerStatus_v1_1::decode_headerStatusGet, {0, 0, 0, 0}, 64},
                    Claim{"Connections", headerStatus_v1_1::decode_headerStatusGet, Bytes(8, 0), 64},
                    Claim{"ConnectionTexts",
                          headerStatus_v1_1::decode_headerStatusGet,
                          {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1},
                          64}),
    testing::PrintToStringParamName());

struct Fit {
    const char* name;
    Decoder decoder;
    std::size_t smallestEntry;
};

void PrintTo(const Fit& fit, std::ostream* out) { *out << fit.name; }

class ListCount : public testing::TestWithParam<Fit> {};

TEST_P(ListCount, IsAcceptedUpToWhatTheRestCanHold) {
    Bytes bytes{0, 0, 0, 0, 0, 0, 0, 2};
    bytes.insert(bytes.end(), 2 * GetParam().smallestEntry, 0);
    auto in = readerOf(bytes);
    GetParam().decoder(in);
    EXPECT_FALSE(in.failed());
    EXPECT_EQ(in.remaining(), 0u);

    bytes.pop_back();
    auto shorter = readerOf(bytes);
    GetParam().decoder(shorter);
    EXPECT_TRUE(shorter.failed());
    EXPECT_EQ(shorter.remaining(), 2 * GetParam().smallestEntry - 1) << "an entry was read all the same";
}

INSTANTIATE_TEST_SUITE_P(Lists, ListCount,
                         testing::Values(Fit{"Members", base_v1_0::decode_members, 8},
                                         Fit{"Methods", base_v1_0::decode_methods, 8},
                                         Fit{"MethodsVerbose", base_v1_0::decode_methodsVerbose, 12},
                                         Fit{"RootMembers", device_v1_0::decode_rootMembers, 8}),
                         testing::PrintToStringParamName());

static_assert(smallestSize<bool>() == 1);
static_assert(smallestSize<std::uint8_t>() == 1);
static_assert(smallestSize<std::int32_t>() == 4);
static_assert(smallestSize<std::uint64_t>() == 8);
static_assert(smallestSize<std::string>() == 4);
static_assert(smallestSize<Bytes>() == 4);
static_assert(smallestSize<dto::Base::Version>() == 12);
static_assert(smallestSize<dto::Base::Member>() == 8);
static_assert(smallestSize<dto::Base::Method>() == 12);
static_assert(smallestSize<dto::Base::MethodsReply>() == 4);
static_assert(smallestSize<dto::Base::Header>() == 7);
static_assert(smallestSize<dto::Base::Connection>() == 8);
static_assert(smallestSize<dto::Base::HeaderStatusGetReply>() == 8);
static_assert(smallestSize<dto::Device::FirmwareInfo>() == 16);
static_assert(smallestSize<dto::Device::BoardInfo>() == 16);
static_assert(smallestSize<dto::Device::InfoReply>() == 24);

TEST(Records, ReadOverEarlierContentKeepNothingOfIt) {
    dto::Base::MembersReply reply;
    reply.members = {{"old", 1}, {"older", 2}};
    const Bytes bytes{0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 3};
    auto in = readerOf(bytes);
    readFields<dto::Base::MembersReply>(in, reply);
    EXPECT_EQ(reply.members, (std::vector<dto::Base::Member>{{"", 3}}));

    InputStream empty(nullptr, 0);
    readFields<dto::Base::MembersReply>(empty, reply);
    EXPECT_TRUE(reply.members.empty());
}

TEST(Records, AreDefaultInitialised) {
    const dto::Base::AvailableReply available;
    EXPECT_EQ(available.available, 0);
    EXPECT_EQ(available.user, "");
    const dto::Base::Version version;
    EXPECT_EQ(version, (dto::Base::Version{0, 0, 0}));
    EXPECT_FALSE(dto::relay::SetRequest().state);
    EXPECT_EQ(dto::system::TimeGetReply().time, 0);
    EXPECT_EQ(dto::Device::CHAPResponseRequest().number, 0);
    EXPECT_FALSE(dto::Params().request);
    EXPECT_FALSE(dto::result().reply);
}

TEST(Records, AreEqualWhenAllTheirFieldsAre) {
    dto::Base::HeaderStatusGetReply first;
    first.headers.push_back({"h", 1, 2, 3});
    first.connections.push_back({{"a"}, {"b", "c"}});
    auto second = first;
    EXPECT_EQ(first, second);
    second.connections[0].second[1] = "d";
    EXPECT_NE(first, second);
    second = first;
    second.headers[0].flag3 = 4;
    EXPECT_NE(first, second);

    dto::Device::CHAPResponseRequest sent;
    auto other = sent;
    other.number = 1;
    EXPECT_NE(sent, other);
}

TEST(Records, CanBeTakenApartIntoTheirFields) {
    dto::Header::IoGetReply pins;
    auto& [first, second] = pins;
    first = true;
    EXPECT_TRUE(pins.first);
    EXPECT_FALSE(second);

    dto::Base::AvailableReply reply;
    auto& [available, user, info] = reply;
    available = 2;
    user = "ann";
    info = "lab";
    EXPECT_EQ(reply.available, 2);
    EXPECT_EQ(reply.user + reply.info, "annlab");
}

TEST(MakeRequest, FillsTheFieldsInOrderAndKeepsTheLowBitsOfIntegers) {
    const auto params = makeRequest<dto::Base::ReserveRequest>(0x102, "first", std::string("second"));
    const auto& request = dynamic_cast<const dto::Base::ReserveRequest&>(*params.request);
    EXPECT_EQ(request.flag, 2);
    EXPECT_EQ(request.first, "first");
    EXPECT_EQ(request.second, "second");
}

TEST(ReplyOf, GivesTheRecordThatTheResultCarries) {
    auto reply = std::make_shared<dto::relay::GetReply>();
    reply->state = 3;
    const dto::result outcome{0, reply};
    EXPECT_EQ(&dto::replyOf<dto::relay::GetReply>(outcome), reply.get());
}

TEST(ReplyOf, RefusesAnotherRecordAndNone) {
    for (const auto& outcome : {dto::result{0, std::make_shared<ForeignReply>()}, dto::result{0, nullptr}}) {
        testing::internal::CaptureStderr();
        try {
            dto::replyOf<dto::relay::GetReply>(outcome);
            ADD_FAILURE() << "the result was accepted";
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "Can't convert Result to desire type");
        }
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  refusalOf("const Can't convert result ", outcome.reply, typeid(dto::relay::GetReply)));
    }
}

} // namespace
