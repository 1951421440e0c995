#include <tavo/cli/commands/jtag.h>

#include <tavo/cli/values/chain_report.h>
#include <tavo/cli/values/jtag_survey.h>
#include <tavo/cli/values/tap_state_name.h>

namespace TAVO::cli {

ChainSurvey survey(Session& session, const Object_v1_0& jtag) {
    const auto reset = [&] { return moveCall(jtag, parseTapState("Test-Logic-Reset")); };
    const auto probes = chainProbes();
    const auto afterReset = shiftCall(jtag, JtagRegister::data, probes.afterReset);
    const auto instruction = shiftCall(jtag, JtagRegister::instruction, probes.instruction);
    const auto bypass = shiftCall(jtag, JtagRegister::data, probes.bypass);
    const std::vector<std::shared_ptr<Method>> batch{reset(), afterReset, instruction, bypass, reset()};
    session.runAll(batch);
    try {
        return surveyChain({capturedBy(afterReset), capturedBy(instruction), capturedBy(bypass)});
    } catch (const ChainFault& fault) {
        throw Failure(ExitCode::refused, fault.what());
    }
}

void scanChain(Session& session, Output& output, const ObjectOptions& options) {
    const auto jtag = chooseJtag(session, options);
    const auto found = survey(session, *jtag);
    auto document = chainDocument(found);
    document["object"] = jtag->getFullName();
    output.show(document, [&](TextWriter& text) { text.write(chainText(found)); });
}

} // namespace TAVO::cli
