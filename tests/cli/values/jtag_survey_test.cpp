#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tavo/cli/failure.h>
#include <tavo/cli/values/bit_notation.h>
#include <tavo/cli/values/chain_report.h>
#include <tavo/toolkit/jtag_survey.h>
#include <tests/support/failure_text.h>

namespace {

using namespace TAVO::cli;
using namespace TAVO::toolkit;
using testing::HasSubstr;

struct Part {
    std::size_t irLength;
    std::uint32_t irCapture;
    std::optional<std::uint32_t> idcode;
};

using Bits = std::vector<bool>;

void append(Bits& bits, std::uint32_t value, std::size_t length) {
    for (std::size_t bit = 0; bit < length; ++bit)
        bits.push_back((value >> bit & 1) != 0);
}

/// What a register that held `captured` gives back for a probe.
BitString passed(const Bits& captured, const BitString& probe) {
    auto out = probe;
    for (std::size_t bit = 0; bit < probe.size(); ++bit)
        out.set(bit, bit < captured.size() ? captured[bit] : probe.at(bit - captured.size()));
    return out;
}

/// The answers of a chain, the first part being next to TDO.
ChainProbes answersOf(const std::vector<Part>& chain) {
    Bits ids, instructions;
    for (const auto& part : chain) {
        append(instructions, part.irCapture, part.irLength);
        append(ids, part.idcode.value_or(0), part.idcode ? 32 : 1);
    }
    const auto probes = chainProbes();
    return {passed(ids, probes.afterReset), passed(instructions, probes.instruction),
            passed(Bits(chain.size(), false), probes.bypass)};
}

std::string failureOf(const ChainProbes& answers) {
    return support::failureOf<ChainFault>([&] { static_cast<void>(surveyChain(answers)); });
}

using Splits = std::vector<std::vector<std::size_t>>;

TEST(JtagSurvey, LeavesEveryInstructionOfAChainAtBypass) {
    const auto probe = chainProbes().instruction;
    EXPECT_TRUE(probe.isAll(probe.size() / 2 + 1, probe.size(), true));
}

TEST(JtagSurvey, FindsIdcodesAndInstructionLengthsFromTdoOn) {
    const auto survey = surveyChain(answersOf({{8, 0x01, 0x2A45D0C3}, {5, 0x01, 0x17B1E0C3}}));
    ASSERT_EQ(survey.taps.size(), 2u);
    EXPECT_EQ(survey.taps[0], Idcode{0x2A45D0C3});
    EXPECT_EQ(survey.taps[1], Idcode{0x17B1E0C3});
    EXPECT_EQ(bitsText(survey.instructionCapture, BitNotation::number), "0x0101");
    EXPECT_EQ(survey.splits, (Splits{{8, 5}}));
}

TEST(JtagSurvey, FindsTapsThatHaveNoIdcode) {
    const auto survey = surveyChain(answersOf({{4, 0x1, {}}, {6, 0x1, 0x4BA00477}, {3, 0x1, {}}}));
    ASSERT_EQ(survey.taps.size(), 3u);
    EXPECT_FALSE(survey.taps[0]);
    EXPECT_EQ(survey.taps[1], Idcode{0x4BA00477});
    EXPECT_FALSE(survey.taps[2]);
    EXPECT_EQ(survey.splits, (Splits{{4, 6, 3}}));
    EXPECT_THAT(chainText(survey), HasSubstr("\n  0    4  none\n  1    6  0x4ba00477  "));
    EXPECT_TRUE(chainDocument(survey)["taps"][0]["idcode"].is_null());
}

TEST(JtagSurvey, TakesAnIdcodeApart) {
    const Idcode idcode{0x4BA00477};
    EXPECT_EQ(idcode.version(), 4u);
    EXPECT_EQ(idcode.part(), 0xBA00u);
    EXPECT_EQ(idcode.manufacturerBank(), 5u);
    EXPECT_EQ(idcode.manufacturer(), 0x3Bu);
}

TEST(JtagSurvey, OneTapHasAllTheBitsWhateverItCaptures) {
    EXPECT_EQ(surveyChain(answersOf({{6, 0x15, 0x4BA00477}})).splits, (Splits{{6}}));
}

TEST(JtagSurvey, SaysWhereInstructionLengthsAreAmbiguous) {
    // Shifted out: 1 0 1 0 and 1 0 0 0, so the second register begins at bit 2 or at bit 4.
    const auto survey = surveyChain(answersOf({{4, 0x5, 0x4BA00477}, {4, 0x1, 0x17B1E0C3}}));
    EXPECT_EQ(survey.splits, (Splits{{2, 6}, {4, 4}}));
    EXPECT_FALSE(survey.hasMoreSplits);
    const auto text = chainText(survey);
    EXPECT_THAT(text, HasSubstr("\n  0    ?  0x4ba00477"));
    EXPECT_THAT(text, HasSubstr("The IR lengths are ambiguous, TAP 0 first: 2+6 or 4+4.\n"));
    const auto document = chainDocument(survey);
    EXPECT_EQ(document["ambiguous"], true);
    EXPECT_TRUE(document["taps"][1]["irLength"].is_null());
    EXPECT_EQ(document["irSplits"], nlohmann::json::parse("[[2, 6], [4, 4]]"));
}

TEST(JtagSurvey, ListsEverySplitThatFits) {
    // 1 0 0 | 1 0 1 0 | 1 0: three registers that can begin at 0, 3, 5 and 7.
    const auto survey = surveyChain(answersOf({{3, 0x1, {}}, {4, 0x5, {}}, {2, 0x1, {}}}));
    EXPECT_EQ(survey.splits, (Splits{{3, 2, 4}, {3, 4, 2}, {5, 2, 2}}));
}

TEST(JtagSurvey, GivesUpListingVeryManySplits) {
    // Ten possible beginnings for five registers.
    const auto survey =
        surveyChain(answersOf({{4, 0x5, {}}, {4, 0x5, {}}, {4, 0x5, {}}, {4, 0x5, {}}, {4, 0x5, {}}}));
    EXPECT_EQ(survey.splits.size(), 16u);
    EXPECT_TRUE(survey.hasMoreSplits);
    EXPECT_THAT(chainText(survey), HasSubstr(", and more.\n"));
    EXPECT_TRUE(chainDocument(survey)["taps"][0]["irLength"].is_null());
}

TEST(JtagSurvey, LeavesLengthsOpenThatTheCaptureDoesNotShow) {
    const auto survey = surveyChain(answersOf({{4, 0x1, 0x4BA00477}, {4, 0x0, 0x17B1E0C3}}));
    EXPECT_TRUE(survey.splits.empty());
    EXPECT_THAT(chainText(survey), HasSubstr("The IR lengths are unknown: "));
    EXPECT_EQ(chainDocument(survey)["ambiguous"], true);
}

TEST(JtagSurvey, SilenceIsToldFromAChain) {
    auto stuck = chainProbes();
    for (auto* answer : {&stuck.afterReset, &stuck.instruction, &stuck.bypass})
        *answer = BitString(answer->size(), true);
    EXPECT_EQ(failureOf(stuck), "the chain does not answer: TDO is always 1");
    for (auto* answer : {&stuck.afterReset, &stuck.instruction, &stuck.bypass})
        *answer = BitString(answer->size(), false);
    EXPECT_EQ(failureOf(stuck), "the chain does not answer: TDO is always 0");
    EXPECT_EQ(failureOf(answersOf({})), "there is no TAP in the chain: TDI comes back at TDO");
}

TEST(JtagSurvey, ContradictingAnswersAreTold) {
    const auto one = answersOf({{8, 0x01, 0x4BA00477}});
    const auto two = answersOf({{8, 0x01, 0x4BA00477}, {5, 0x01, 0x17B1E0C3}});
    EXPECT_EQ(failureOf({two.afterReset, two.instruction, one.bypass}),
              "2 TAPs answer after a reset, but 1 in BYPASS");
    EXPECT_THAT(
        failureOf({two.afterReset, two.instruction, passed(Bits{true, false, false}, chainProbes().bypass)}),
        HasSubstr("BYPASS does not pass on"));
    EXPECT_THAT(failureOf({two.afterReset, BitString(two.instruction.size(), true), two.bypass}),
                HasSubstr("no instruction registers of up to 4096 bits"));
    EXPECT_THAT(failureOf({BitString(two.afterReset.size(), false), two.instruction, two.bypass}),
                HasSubstr("more than 256 TAPs"));
}

} // namespace
