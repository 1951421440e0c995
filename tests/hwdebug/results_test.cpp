#include <gtest/gtest.h>

#include <tavo/client/hwdebug/gpu_scan.h>
#include <tavo/client/hwdebug/i2c.h>
#include <tavo/client/hwdebug/jtag.h>
#include <tavo/client/hwdebug/lpc.h>
#include <tavo/client/transcode/base_records.h>

namespace {

namespace dto = TAVO::dto;
using namespace TAVO::HWDebug;

template <class ResultType, class ReplyType>
struct Conversion {
    using Result = ResultType;
    using Reply = ReplyType;
};

template <class Conversion>
class Results : public testing::Test {};

using Conversions =
    testing::Types<Conversion<I2c_v1_0_Structs::I2cTransfer, dto::i2c::TransferReply>,
                   Conversion<I2c_v1_0_Structs::I2cAck, dto::i2c::OptionAckGetReply>,
                   Conversion<I2c_v1_0_Structs::I2cTimeout, dto::i2c::OptionTimeoutGetReply>,
                   Conversion<I2c_v1_0_Structs::I2cSclFrequency, dto::Base::FrequencyGetReply>,
                   Conversion<GpuScan_v1_0_Structs::GpuScanIoSck, dto::Header::IoGetReply>,
                   Conversion<GpuScan_v1_0_Structs::GpuScanSckFrequency, dto::Base::FrequencyGetReply>,
                   Conversion<Jtag_v1_1_Structs::RepeatGet, dto::Jtag::OptionRepeatGetReply>,
                   Conversion<Jtag_v1_1_Structs::RetryGet, dto::Jtag::OptionRetryGetReply>,
                   Conversion<Jtag_v1_1_Structs::TdoExpectedGet, dto::Jtag::OptionTdoExpectedGetReply>>;
TYPED_TEST_SUITE(Results, Conversions);

TYPED_TEST(Results, MadeWithoutReplyAreThoseOfAReplyOfZeros) {
    const typename TypeParam::Result made;
    EXPECT_EQ(made, typename TypeParam::Result(typename TypeParam::Reply{}));
}

TEST(Records, AreEqualWhenTheirFieldsAre) {
    dto::lpc::HeaderConnection header{"J12", true};
    EXPECT_EQ(header, (dto::lpc::HeaderConnection{"J12", true}));
    EXPECT_NE(header, (dto::lpc::HeaderConnection{"J12", false}));
    EXPECT_NE(header, (dto::lpc::HeaderConnection{"J13", true}));
    dto::Base::IntegerReply one, two;
    one.value = two.value = 7;
    EXPECT_EQ(one, two);
    two.value = 8;
    EXPECT_NE(one, two);
}

} // namespace
