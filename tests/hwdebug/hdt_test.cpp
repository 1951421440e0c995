#include <concepts>
#include <stdexcept>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/hwdebug/hdt.h>
#include <tests/support/failure_text.h>
#include <tests/support/module_test.h>

namespace {

using namespace TAVO::HWDebug;
using namespace TAVO::dto::hdt;
namespace Header = TAVO::dto::Header;
using Lines = std::vector<bool>;
using support::Bytes;
using support::failureOf;
using support::outcomeWith;
using support::record;

template <class Proxy>
class HdtTest : public support::ModuleTest {
protected:
    std::shared_ptr<Proxy> proxy = openOnly<Proxy>("hdt", std::same_as<Proxy, Hdt_v1_1> ? 1 : 0);
};

using Versions = testing::Types<Hdt_v1_0, Hdt_v1_1>;
TYPED_TEST_SUITE(HdtTest, Versions);

TYPED_TEST(HdtTest, SendsTheArgumentOfEverySetter) {
    const auto& hdt = *this->proxy;
    EXPECT_EQ(this->sentBy(hdt.getEnableSetMethod(true)), this->request("enableSet", "01"));
    EXPECT_EQ(this->sentBy(hdt.getIoDbreqSetMethod(false)), this->request("ioDbreqSet", "00"));
    EXPECT_EQ(this->sentBy(hdt.getOptionDbreqOnDbrdySetMethod(true)),
              this->request("optionDbreqOnDbrdySet", "01"));
    EXPECT_EQ(this->sentBy(hdt.getOptionDbreqOnResetSetMethod(true)),
              this->request("optionDbreqOnResetSet", "01"));
    EXPECT_EQ(this->sentBy(hdt.getOptionDbreqPulseWidthSetMethod(258)),
              this->request("optionDbreqPulseWidthSet", "00000102"));
}

TYPED_TEST(HdtTest, SendsNoParametersWithGettersAndClears) {
    const auto& hdt = *this->proxy;
    EXPECT_EQ(this->sentBy(hdt.getEnableGetMethod()), this->request("enableGet"));
    EXPECT_EQ(this->sentBy(hdt.getIoDbreqGetMethod()), this->request("ioDbreqGet"));
    EXPECT_EQ(this->sentBy(hdt.getIoDbrdyGetMethod()), this->request("ioDbrdyGet"));
    EXPECT_EQ(this->sentBy(hdt.getIoDbrdySnapShotGetMethod()), this->request("ioDbrdySnapshotGet"));
    EXPECT_EQ(this->sentBy(hdt.getIoDbrdySnapshotClearMethod()), this->request("ioDbrdySnapshotClear"));
    EXPECT_EQ(this->sentBy(hdt.getIoResetGetMethod()), this->request("ioResetGet"));
    EXPECT_EQ(this->sentBy(hdt.getIoPwrokGetMethod()), this->request("ioPwrokGet"));
    EXPECT_EQ(this->sentBy(hdt.getOptionDbreqOnDbrdyGetMethod()), this->request("optionDbreqOnDbrdyGet"));
    EXPECT_EQ(this->sentBy(hdt.getOptionDbreqOnResetGetMethod()), this->request("optionDbreqOnResetGet"));
    EXPECT_EQ(this->sentBy(hdt.getOptionDbreqPulseWidthGetMethod()),
              this->request("optionDbreqPulseWidthGet"));
}

TYPED_TEST(HdtTest, YieldsOneElementForEachLine) {
    const auto& hdt = *this->proxy;
    EXPECT_EQ(this->template reply<Lines>(hdt.getIoDbrdyGetMethod(), "00000003 01 00 ff"),
              (Lines{true, false, true}));
    EXPECT_EQ(this->template reply<Lines>(hdt.getIoDbrdySnapShotGetMethod(), "00000002 00 01"),
              (Lines{false, true}));
    EXPECT_EQ(this->template reply<Lines>(hdt.getIoDbrdyGetMethod(), "00000000"), Lines());
    EXPECT_EQ(this->template reply<Lines>(hdt.getIoDbrdySnapShotGetMethod(), "00000000"), Lines());
}

TYPED_TEST(HdtTest, YieldsTheReplyRecordsOfItsGetters) {
    const auto& hdt = *this->proxy;
    EXPECT_TRUE(this->template reply<Header::EnableGetReply>(hdt.getEnableGetMethod(), "01").enable);
    EXPECT_TRUE(this->template reply<Header::iGetReply>(hdt.getIoDbreqGetMethod(), "01").level);
    EXPECT_FALSE(this->template reply<Header::iGetReply>(hdt.getIoResetGetMethod(), "00").level);
    EXPECT_TRUE(this->template reply<Header::iGetReply>(hdt.getIoPwrokGetMethod(), "01").level);
    EXPECT_TRUE(
        this->template reply<OptionDbreqOnDbrdyGetReply>(hdt.getOptionDbreqOnDbrdyGetMethod(), "01").enable);
    EXPECT_TRUE(
        this->template reply<OptionDbreqOnResetReply>(hdt.getOptionDbreqOnResetGetMethod(), "01").enable);
    EXPECT_EQ(
        this->template reply<OptionDbreqPulseWidthReply>(hdt.getOptionDbreqPulseWidthGetMethod(), "80000000")
            .pulseWidth,
        -2147483647 - 1);
}

TEST(Hdt, OfTheNewerVersionIsNoOlderOne) {
    EXPECT_FALSE((std::is_base_of_v<Hdt_v1_0, Hdt_v1_1>));
    EXPECT_TRUE((std::is_base_of_v<TAVO::Object_v1_0, Hdt_v1_0>));
    EXPECT_TRUE((std::is_base_of_v<TAVO::Object_v1_0, Hdt_v1_1>));
}

class NewerHdtTest : public HdtTest<Hdt_v1_1> {
protected:
    const std::shared_ptr<Hdt_v1_1>& hdt = proxy;
};

TEST_F(NewerHdtTest, SendsTheMaskAsOneByteForEachLine) {
    EXPECT_EQ(sentBy(hdt->getOptionDbrdyMaskSet({true, false, true})),
              request("optionDbrdyMaskSet", "00000003 01 00 01"));
    EXPECT_EQ(sentBy(hdt->getOptionDbrdyMaskSet({})), request("optionDbrdyMaskSet", "00000000"));
}

TEST_F(NewerHdtTest, SendsTheEightIntegersOfATriggerSetupAndReceivesSeven) {
    EXPECT_EQ(sentBy(hdt->getOptionTriggerSetupSetMethod(1, 2, 3, 4, 5, 6, 7, -8)),
              request("optionTriggerSetupSet", "00000001 00000002 00000003 00000004"
                                               "00000005 00000006 00000007 fffffff8"));
    EXPECT_EQ(sentBy(hdt->getOptionTriggerSetupGetMethod(9)), request("optionTriggerSetupGet", "00000009"));
    EXPECT_EQ(reply<OptionTriggerSetupGetReply>(hdt->getOptionTriggerSetupGetMethod(9),
                                                "00000001 00000002 00000003 00000004"
                                                "00000005 00000006 00000007"),
              record<OptionTriggerSetupGetReply>(1, 2, 3, 4, 5, 6, 7));
}

TEST_F(NewerHdtTest, SendsTheArgumentsOfTriggerMethodsInOrder) {
    EXPECT_EQ(sentBy(hdt->getIoTriggerGetMethod(2)), request("ioTriggerGet", "00000002"));
    EXPECT_EQ(sentBy(hdt->getIoTriggerSetMethod(3, true)), request("ioTriggerSet", "00000003 01"));
    EXPECT_EQ(sentBy(hdt->getOptionDbreqOnTriggerSetMethod(true, 4, false, 5)),
              request("optionDbreqOnTriggerSet", "01 00000004 00 00000005"));
}

TEST_F(NewerHdtTest, SendsNoParametersWithGettersAndClears) {
    EXPECT_EQ(sentBy(hdt->getOptionFrequencyGetMethod()), request("optionFrequencyGet"));
    EXPECT_EQ(sentBy(hdt->getHeaderStatusGetMethod()), request("headerStatusGet"));
    EXPECT_EQ(sentBy(hdt->getHeaderStatusClearMethod()), request("headerStatusClear"));
    EXPECT_EQ(sentBy(hdt->getIoDbreqSourceSnapshotGetMethod()), request("ioDbreqSourceSnapshotGet"));
    EXPECT_EQ(sentBy(hdt->getIoDbreqSourceSnapshotClearMethod()), request("ioDbreqSourceSnapshotClear"));
    EXPECT_EQ(sentBy(hdt->getOptionDbreqOnTriggerGetMethod()), request("optionDbreqOnTriggerGet"));
    EXPECT_EQ(sentBy(hdt->getOptionDbrdyMaskGetMethod()), request("optionDbrdyMaskGet"));
}

TEST_F(NewerHdtTest, YieldsTheReplyRecordsOfItsGetters) {
    EXPECT_EQ(reply<TAVO::dto::hdt::FrequencyGetReply>(hdt->getOptionFrequencyGetMethod(), "8000000000000001")
                  .frequency,
              0x8000000000000001u);
    EXPECT_EQ(reply<ioDbreqSourceSnapshotReply>(hdt->getIoDbreqSourceSnapshotGetMethod(), "00000006").source,
              6);
    EXPECT_TRUE(reply<ioTriggerGetReply>(hdt->getIoTriggerGetMethod(0), "01").level);
    EXPECT_EQ(reply<OptionDbreqOnTriggerGetReply>(hdt->getOptionDbreqOnTriggerGetMethod(),
                                                  "01 00000002 00 00000003"),
              record<OptionDbreqOnTriggerGetReply>(true, 2, false, 3));
    EXPECT_EQ(reply<OptionDbrdyMaskGetReply>(hdt->getOptionDbrdyMaskGetMethod(), "00000002 01 00").mask,
              (Bytes{1, 0}));
}

TEST_F(NewerHdtTest, YieldsTheHeaderStatusAsTheReplyItself) {
    const auto status = reply<TAVO::dto::Base::HeaderStatusGetReply>(hdt->getHeaderStatusGetMethod(),
                                                                     support::headerStatusHex);
    EXPECT_EQ(status.headers.size(), 1u);
    EXPECT_EQ(status.connections.size(), 1u);
}

TEST_F(NewerHdtTest, RefusesToWaitForDbrdyBeforeAnythingIsSent) {
    device->appliance.forgetCalls();
    EXPECT_EQ(failureOf<std::runtime_error>([&] { hdt->getIoDbrdyWaitMethod({}, 5); }),
              "getIoDbrdyWait not supported on kelvor ");
    EXPECT_EQ(device->appliance.exchanges(), 0u);
}

TEST_F(NewerHdtTest, WaitsForDbrdyInACallByName) {
    const auto waiting = std::make_shared<ioDbrdyWaitRequest>(record<ioDbrdyWaitRequest>(Bytes{1, 0}, 500));
    EXPECT_EQ(sentBy(std::make_shared<TAVO::Method>("ioDbrdyWait", *hdt, TAVO::dto::Params{waiting})),
              request("ioDbrdyWait", "00000002 01 00 000001f4"));
}

TEST(HdtLines, AreMadeFromTheRepliesOfReadsAndSnapshotsAlone) {
    const auto of = TAVO::PlainResult<Lines>::of;
    EXPECT_EQ(of(outcomeWith(record<ioDbrdyReply>(Bytes{2, 0}))), (Lines{true, false}));
    EXPECT_EQ(of(outcomeWith(record<ioDbrdySnapshotReply>(Bytes{0, 2}))), (Lines{false, true}));
    EXPECT_EQ(failureOf<std::runtime_error>([&] { of(outcomeWith(OptionDbrdyMaskGetReply())); }),
              "Can't convert Result to desire type");
    EXPECT_EQ(failureOf<std::runtime_error>([&] { of({}); }), "Can't convert Result to desire type");
}

} // namespace
