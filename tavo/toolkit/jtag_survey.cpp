#include <tavo/toolkit/jtag_survey.h>

#include <fmt/format.h>

namespace TAVO::toolkit {

namespace {

constexpr std::size_t mostTaps = 256;
constexpr std::size_t mostInstructionBits = 4096;
constexpr std::size_t mostSplits = 16;
constexpr std::size_t idcodeBits = 32;

[[noreturn]] void fail(const std::string& message) { throw ChainFault(message); }

/// Ones around a single zero, whose delay is the number of bits in between.
BitString markedOnes(std::size_t most) {
    BitString bits(2 * most + 1, true);
    bits.set(most, false);
    return bits;
}

/// The number of bits a probe of markedOnes() passed through; empty if the mark is not in a valid place.
std::optional<std::size_t> lengthBetween(const BitString& captured) {
    const auto most = captured.size() / 2;
    for (std::size_t length = 0; length <= most; ++length)
        if (!captured.at(most + length)) {
            const bool clean = captured.isAll(length, most + length, true) &&
                               captured.isAll(most + length + 1, captured.size(), true);
            return clean ? std::optional(length) : std::nullopt;
        }
    return std::nullopt;
}

void requireAnswer(const ChainProbes& captured) {
    for (const bool level : {true, false}) {
        const auto isStuck = [level](const BitString& bits) { return bits.isAll(0, bits.size(), level); };
        if (isStuck(captured.afterReset) && isStuck(captured.instruction) && isStuck(captured.bypass))
            fail(fmt::format("the chain does not answer: TDO is always {}", level ? 1 : 0));
    }
}

std::vector<std::optional<Idcode>> tapsAfterReset(const BitString& captured) {
    std::vector<std::optional<Idcode>> taps;
    for (std::size_t bit = 0; bit + idcodeBits <= captured.size();) {
        if (captured.isAll(bit, bit + idcodeBits, true))
            return taps;
        if (captured.at(bit)) {
            taps.emplace_back(Idcode{captured.number(bit, idcodeBits)});
            bit += idcodeBits;
        } else {
            taps.emplace_back();
            ++bit;
        }
    }
    fail(fmt::format("the data registers have no end: more than {} TAPs, or TDI does not reach the chain",
                     mostTaps));
}

/// The positions where an instruction register can start.
std::vector<std::size_t> possibleStarts(const BitString& capture) {
    std::vector<std::size_t> starts;
    for (std::size_t bit = 0; bit + 1 < capture.size(); ++bit)
        if (capture.at(bit) && !capture.at(bit + 1))
            starts.push_back(bit);
    return starts;
}

/// Advances to the next combination of indices below `count`. The first index stays.
bool advance(std::vector<std::size_t>& chosen, std::size_t count) {
    for (auto place = chosen.size(); place-- > 1;)
        if (chosen[place] + chosen.size() < count + place) {
            ++chosen[place];
            for (auto after = place + 1; after < chosen.size(); ++after)
                chosen[after] = chosen[after - 1] + 1;
            return true;
        }
    return false;
}

void splitInstructions(ChainSurvey& survey) {
    const auto& capture = survey.instructionCapture;
    const auto starts = possibleStarts(capture);
    if (starts.size() < survey.taps.size() || starts.front() != 0)
        return;
    std::vector<std::size_t> chosen(survey.taps.size());
    for (std::size_t tap = 0; tap < chosen.size(); ++tap)
        chosen[tap] = tap;
    do {
        if (survey.splits.size() == mostSplits) {
            survey.hasMoreSplits = true;
            return;
        }
        std::vector<std::size_t> lengths;
        for (std::size_t tap = 0; tap < chosen.size(); ++tap) {
            const auto end = tap + 1 < chosen.size() ? starts[chosen[tap + 1]] : capture.size();
            lengths.push_back(end - starts[chosen[tap]]);
        }
        survey.splits.push_back(std::move(lengths));
    } while (advance(chosen, starts.size()));
}

} // namespace

ChainProbes chainProbes() {
    return {BitString(idcodeBits * (mostTaps + 1), true), markedOnes(mostInstructionBits),
            markedOnes(mostTaps)};
}

ChainSurvey surveyChain(const ChainProbes& captured) {
    requireAnswer(captured);
    ChainSurvey survey;
    survey.taps = tapsAfterReset(captured.afterReset);
    const auto instructionBits = lengthBetween(captured.instruction);
    if (!instructionBits)
        fail(fmt::format("no instruction registers of up to {} bits pass on what is shifted into them",
                         mostInstructionBits));
    const auto bypasses = lengthBetween(captured.bypass);
    if (!bypasses || !captured.bypass.isAll(0, *bypasses, false))
        fail("BYPASS does not pass on what is shifted through it; is the termination state a reset?");
    if (*bypasses != survey.taps.size())
        fail(fmt::format("{} TAPs answer after a reset, but {} in BYPASS", survey.taps.size(), *bypasses));
    if (survey.taps.empty())
        fail("there is no TAP in the chain: TDI comes back at TDO");
    survey.instructionCapture = BitString(*instructionBits, captured.instruction.bytes());
    splitInstructions(survey);
    return survey;
}

} // namespace TAVO::toolkit
