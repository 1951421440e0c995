#include <gtest/gtest.h>

#include <tavo/client/hwdebug/i2c.h>
#include <tests/support/failure_text.h>
#include <tests/support/module_test.h>

namespace {

using namespace TAVO::HWDebug;
using namespace TAVO::HWDebug::I2c_v1_0_Structs;
using namespace TAVO::dto::i2c;
using support::Bytes;
using support::failureOf;
using support::outcomeWith;
using support::record;
using TAVO::dto::Base::FrequencyGetReply;

class I2cTest : public support::ModuleTest {
protected:
    std::shared_ptr<I2c_v1_0> i2c = openOnly<I2c_v1_0>("i2c");
};

TEST_F(I2cTest, SendsATransferWithoutItsSecondArgument) {
    EXPECT_EQ(sentBy(i2c->getTransferMethod(0x50, 99, {0x00}, 4)),
              request("transfer", "00000050 00000001 00 00000004"));
}

TEST_F(I2cTest, SendsAWriteWithoutItsFourthArgument) {
    EXPECT_EQ(sentBy(i2c->getWriteMethod(0x50, true, false, 7, {})),
              request("write", "00000050 01 00 00000000"));
    EXPECT_EQ(sentBy(i2c->getWriteMethod(0x51, false, true, 7, {0xAB, 0xCD})),
              request("write", "00000051 00 01 00000002 abcd"));
}

TEST_F(I2cTest, SendsTheArgumentsOfOtherMethodsInOrder) {
    EXPECT_EQ(sentBy(i2c->getReadMethod(0x50, false, true, 16)), request("read", "00000050 00 01 00000010"));
    EXPECT_EQ(sentBy(i2c->getOptionSclFrequencySetMethod(400000)),
              request("optionSclFrequencySet", "00061a80"));
    EXPECT_EQ(sentBy(i2c->getOptionAddressRetryLimitSetMethod(-1)),
              request("optionAddressRetryLimitSet", "ffffffff"));
    EXPECT_EQ(sentBy(i2c->getOptionTimeoutSetMethod(1, 2)), request("optionTimeoutSet", "00000001 00000002"));
    EXPECT_EQ(sentBy(i2c->getOptionAckSetMethod(true, false)), request("optionAckSet", "01 00"));
}

TEST_F(I2cTest, SendsNoParametersWithGettersAndClear) {
    EXPECT_EQ(sentBy(i2c->getOptionSclFrequencyGetMethod()), request("optionSclFrequencyGet"));
    EXPECT_EQ(sentBy(i2c->getOptionAddressRetryLimitGetMethod()), request("optionAddressRetryLimitGet"));
    EXPECT_EQ(sentBy(i2c->getOptionTimeoutGetMethod()), request("optionTimeoutGet"));
    EXPECT_EQ(sentBy(i2c->getOptionAckGetMethod()), request("optionAckGet"));
    EXPECT_EQ(sentBy(i2c->getHeaderStatusGetMethod()), request("headerStatusGet"));
    EXPECT_EQ(sentBy(i2c->getHeaderStatusClearMethod()), request("headerStatusClear"));
}

TEST_F(I2cTest, YieldsTheTwoIntegersAndTheDataOfATransfer) {
    const auto [first, second, data] =
        reply<I2cTransfer>(i2c->getTransferMethod(0, 0, {}, 2), "00000001 fffffffe 00000002 0a0b");
    EXPECT_EQ(std::tuple(first, second, data), std::tuple(1, -2, Bytes{0x0A, 0x0B}));
}

TEST_F(I2cTest, YieldsTheIntegerAndTheDataOfARead) {
    const auto [value, data] =
        reply<I2cRead>(i2c->getReadMethod(0, false, false, 2), "00000003 00000002 0a0b");
    EXPECT_EQ(std::tuple(value, data), std::tuple(3, Bytes{0x0A, 0x0B}));
}

TEST_F(I2cTest, YieldsNoDataForAReadOfNothing) {
    EXPECT_EQ(reply<I2cRead>(i2c->getReadMethod(0, false, false, 0), "00000000 00000000"), I2cRead());
}

TEST_F(I2cTest, YieldsTheResultsOfItsOtherMethods) {
    EXPECT_EQ(reply<WriteReply>(i2c->getWriteMethod(0, false, false, 0, {}), "00000005").value, 5);
    EXPECT_EQ(
        reply<OptionAddressRetryLimitGetReply>(i2c->getOptionAddressRetryLimitGetMethod(), "00000006").limit,
        6);
    const auto frequency =
        reply<I2cSclFrequency>(i2c->getOptionSclFrequencyGetMethod(), "0000000100000000 00000007");
    EXPECT_EQ(std::tuple(frequency.frequency, frequency.value), std::tuple(0x100000000u, 7));
    const auto timeout = reply<I2cTimeout>(i2c->getOptionTimeoutGetMethod(), "00000008 00000009");
    EXPECT_EQ(std::tuple(timeout.first, timeout.second), std::tuple(8, 9));
    const auto status = reply<HeaderResult>(i2c->getHeaderStatusGetMethod(), support::headerStatusHex);
    EXPECT_EQ(status.connections.size(), 1u);
}

TEST_F(I2cTest, TakesAnyByteButZeroAsAnAcknowledgeFlagThatIsSet) {
    const auto [first, second] = reply<I2cAck>(i2c->getOptionAckGetMethod(), "80 00");
    EXPECT_TRUE(first);
    EXPECT_FALSE(second);
}

TEST(I2cResults, ConvertBackToTheirReplies) {
    const auto transfer = record<TransferReply>(1, 2, Bytes{3});
    EXPECT_EQ(TransferReply(I2cTransfer(transfer)), transfer);
    const auto read = record<ReadReply>(1, Bytes{2});
    EXPECT_EQ(ReadReply(I2cRead(read)), read);
    const auto ack = record<OptionAckGetReply>(false, true);
    EXPECT_EQ(OptionAckGetReply(I2cAck(ack)), ack);
    const auto timeout = record<OptionTimeoutGetReply>(1, 2);
    EXPECT_EQ(OptionTimeoutGetReply(I2cTimeout(timeout)), timeout);
    const auto frequency = record<FrequencyGetReply>(1u, 2);
    EXPECT_EQ(FrequencyGetReply(I2cSclFrequency(frequency)), frequency);
}

TEST(I2cResults, AreMadeFromTheirReplyAlone) {
    const auto other = outcomeWith(WriteReply());
    const std::string refusal = "Can't convert Result to desire type";
    EXPECT_EQ(failureOf<std::runtime_error>([&] { I2cTransfer{other}; }), refusal);
    EXPECT_EQ(failureOf<std::runtime_error>([&] { I2cRead{other}; }), refusal);
    EXPECT_EQ(failureOf<std::runtime_error>([&] { I2cAck{other}; }), refusal);
    EXPECT_EQ(failureOf<std::runtime_error>([&] { I2cTimeout{other}; }), refusal);
    EXPECT_EQ(failureOf<std::runtime_error>([&] { I2cSclFrequency{other}; }), refusal);
}

} // namespace
