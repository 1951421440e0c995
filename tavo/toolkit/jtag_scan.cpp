#include <tavo/toolkit/jtag_scan.h>

#include <cstddef>
#include <stdexcept>

#include <fmt/format.h>

namespace TAVO::toolkit {

namespace {

namespace jtag_v1_0 = TAVOXTranscode::jtag_v1_0;

} // namespace

ShiftCall shiftCall(const Object_v1_0& jtag, jtag::Register target, const BitString& bits) {
    return jtag.make(target == jtag::Register::instruction ? jtag_v1_0::shiftIR : jtag_v1_0::shiftDR,
                     bits.size(), bits.bytes());
}

std::shared_ptr<Method> moveCall(const Object_v1_0& jtag, jtag::TapState state) {
    return jtag.make(jtag_v1_0::tapStateSet, static_cast<std::int32_t>(state));
}

BitString capturedBy(const ShiftCall& call) {
    const auto& request = dynamic_cast<const dto::Jtag::ShiftRequest&>(*call->getParams().request);
    const auto size = static_cast<std::size_t>(request.bits);
    const auto result = call->getResult();
    const auto& data = dto::replyOf<dto::Jtag::ShiftReply>(result).data;
    if (result.code == 0 && data.size() != BitString::bytesFor(size))
        throw std::runtime_error(
            fmt::format("{} captured {} bytes for {} bits", call->getFullName(), data.size(), size));
    return {size, data};
}

ChainSurvey scanChain(Access& access, const Object_v1_0& jtag) {
    const auto reset = [&] { return moveCall(jtag, jtag::TapState::testLogicReset); };
    const auto probes = chainProbes();
    const auto afterReset = shiftCall(jtag, jtag::Register::data, probes.afterReset);
    const auto instruction = shiftCall(jtag, jtag::Register::instruction, probes.instruction);
    const auto bypass = shiftCall(jtag, jtag::Register::data, probes.bypass);
    access.runAll({reset(), afterReset, instruction, bypass, reset()});
    return surveyChain({capturedBy(afterReset), capturedBy(instruction), capturedBy(bypass)});
}

} // namespace TAVO::toolkit
