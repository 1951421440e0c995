#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include <tavo/simulator/fault_script.h>

namespace {

using namespace TAVO::simulator;

Fault parsed(const std::string& text) { return FaultScript().add("7:" + text).faultsAt(7).at(0); }

std::string refusal(const std::string& text) {
    try {
        FaultScript().add(text);
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "accepted";
}

TEST(FaultScript, ReadsEveryKindOfFault) {
    EXPECT_EQ(parsed("silent"), Fault(faults::Silent{}));
    EXPECT_EQ(parsed("dribble"), Fault(faults::Dribble{std::chrono::microseconds(500)}));
    EXPECT_EQ(parsed("dribble=20"), Fault(faults::Dribble{std::chrono::microseconds(20)}));
    EXPECT_EQ(parsed("cut=17"), Fault(faults::Cut{17}));
    EXPECT_EQ(parsed("close"), Fault(faults::Close{}));
    EXPECT_EQ(parsed("reset"), Fault(faults::Reset{}));
    EXPECT_EQ(parsed("count=0"), Fault(faults::Count{0}));
    EXPECT_EQ(parsed("size=status:5"), Fault(faults::Size{faults::Size::Field::status, 5}));
    EXPECT_EQ(parsed("size=error:0xffffFFFF"), Fault(faults::Size{faults::Size::Field::error, 0xFFFFFFFF}));
    EXPECT_EQ(parsed("size=result:4294967295"), Fault(faults::Size{faults::Size::Field::result, 0xFFFFFFFF}));
    EXPECT_EQ(parsed("stray"), Fault(faults::Stray{1}));
    EXPECT_EQ(parsed("stray=12"), Fault(faults::Stray{12}));
    EXPECT_EQ(parsed("error=1006:2"), Fault(faults::DeviceError{1006, 2, ""}));
    EXPECT_EQ(parsed("error=1000:0:at 10:30, = broken"),
              Fault(faults::DeviceError{1000, 0, "at 10:30, = broken"}));
    EXPECT_EQ(parsed("return=5"), Fault(faults::ReturnCode{5, 0}));
    EXPECT_EQ(parsed("return=-2147483648:3"), Fault(faults::ReturnCode{-2147483647 - 1, 3}));
}

TEST(FaultScript, KeepsFaultsByRequestInTheOrderOfAdding) {
    FaultScript script;
    script.add("2:stray=3").add("1:close").add("2:count=9").at(2, faults::Cut{4});
    EXPECT_EQ(script.faultsAt(1), std::vector<Fault>{faults::Close{}});
    EXPECT_EQ(script.faultsAt(2), (std::vector<Fault>{faults::Stray{3}, faults::Count{9}, faults::Cut{4}}));
    EXPECT_TRUE(script.faultsAt(3).empty());
    EXPECT_TRUE(FaultScript().empty());
}

TEST(FaultScript, ReadsAWholeTextWithComments) {
    const auto script = FaultScript::parse("# the third reply\n\n  3:cut=17\r\n4:reset");
    EXPECT_EQ(script, FaultScript().add("3:cut=17").add("4:reset"));
}

TEST(FaultScript, NamesTheOffendingPiece) {
    EXPECT_EQ(refusal(""), "fault '': expected REQUEST:FAULT");
    EXPECT_EQ(refusal("cut=17"), "fault 'cut=17': expected REQUEST:FAULT");
    EXPECT_EQ(refusal("x:close"), "fault 'x:close': 'x' is no request number");
    EXPECT_EQ(refusal("0:close"), "requests are counted from 1, there is no request 0");
    EXPECT_EQ(refusal("1:"), "fault '1:': '' is no kind of fault");
    EXPECT_EQ(refusal("1:explode"), "fault '1:explode': 'explode' is no kind of fault");
    EXPECT_EQ(refusal("1:cut"), "fault '1:cut': expected cut=BYTES");
    EXPECT_EQ(refusal("1:cut=-1"), "fault '1:cut=-1': '-1' is no number of bytes");
    EXPECT_EQ(refusal("1:cut=12x"), "fault '1:cut=12x': '12x' is no number of bytes");
    EXPECT_EQ(refusal("1:cut=4294967296"), "fault '1:cut=4294967296': '4294967296' is no number of bytes");
    EXPECT_EQ(refusal("1:close=3"), "fault '1:close=3': close takes no value");
    EXPECT_EQ(refusal("1:size=5"), "fault '1:size=5': '5' is none of status, error, result");
    EXPECT_EQ(refusal("1:size=status"), "fault '1:size=status': '' is no number of bytes");
    EXPECT_EQ(refusal("1:error=1006"), "fault '1:error=1006': '' is no number of results");
    EXPECT_EQ(refusal("1:return=0x"), "fault '1:return=0x': '0x' is no return code");
    EXPECT_EQ(refusal("1:return=1:"), "fault '1:return=1:': '' is no position of a call");
    EXPECT_EQ(refusal("1:return=2147483648"), "fault '1:return=2147483648': '2147483648' is no return code");
}

TEST(FaultScript, RefusesTwoWaysOfDeliveringOneReply) {
    FaultScript script;
    script.add("1:close");
    EXPECT_THROW(script.add("1:silent"), std::invalid_argument);
    EXPECT_NO_THROW(script.add("2:silent"));
    EXPECT_NO_THROW(script.add("1:stray"));
}

TEST(FaultScript, ExplainsEveryKindInItsGrammar) {
    const auto grammar = FaultScript::grammar();
    for (const auto* kind :
         {"silent", "dribble", "cut", "close", "reset", "count", "size", "stray", "error", "return"})
        EXPECT_NE(grammar.find("\n  " + std::string(kind)), std::string::npos) << kind;
}

} // namespace
