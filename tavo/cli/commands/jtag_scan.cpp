#include <tavo/cli/commands/jtag.h>

#include <tavo/cli/session_access.h>
#include <tavo/cli/values/chain_report.h>

namespace TAVO::cli {

namespace {

namespace jtag_v1_0 = TAVOXTranscode::jtag_v1_0;

} // namespace

ChainSurvey survey(Session& session, const Object_v1_0& jtag) {
    for (const auto method : {jtag_v1_0::shiftDR.name, jtag_v1_0::shiftIR.name, jtag_v1_0::tapStateSet.name})
        requireOffer(jtag, method);
    SessionAccess access(session);
    return toolkit::scanChain(access, jtag);
}

void scanChain(Session& session, Output& output, const ObjectOptions& options) {
    const auto jtag = chooseJtag(session, options);
    const auto found = survey(session, *jtag);
    auto document = chainDocument(found);
    document["object"] = jtag->getFullName();
    output.show(document, [&](TextWriter& text) { text.write(chainText(found)); });
}

} // namespace TAVO::cli
