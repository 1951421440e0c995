#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <tavo/cli/command.h>

#include <tavo/cli/object_choice.h>
#include <tavo/cli/output.h>
#include <tavo/cli/values/bit_notation.h>
#include <tavo/cli/values/tap_place.h>
#include <tavo/toolkit/jtag_scan.h>

/// Shared by the `jtag` subcommands, which work with both versions of the "jtag" object.
namespace TAVO::cli {

struct JtagShiftOptions : ObjectOptions {
    std::vector<std::string> shifts;
    bool bytes = false;
    /// The TAP that the shifts are for; empty for the chain as a whole.
    std::optional<std::uint32_t> tap;
    /// Lengths of the instruction registers; empty to find them by a scan.
    std::string chain;

    void describe(OptionList& list);
};

struct JtagSvfOptions : ObjectOptions {
    std::string file;
    std::string stopAt = "check";
    std::optional<std::int32_t> retry;
    bool noCheck = false;
    bool dryRun = false;
    bool stats = false;

    bool isLocal() const { return dryRun; }
    void describe(OptionList& list);
};

using toolkit::capturedBy, toolkit::ChainSurvey, toolkit::ShiftCall;

struct JtagServeOptions : ObjectOptions {
    std::string bitbang;
    std::string xvc;
    bool once = false;
    std::string vcd;

    void describe(OptionList& list);
};

std::shared_ptr<Object_v1_0> chooseJtag(Session& session, const ObjectOptions& options);

ShiftCall shiftCall(const Object_v1_0& jtag, JtagRegister target, const BitString& bits);
std::shared_ptr<Method> moveCall(const Object_v1_0& jtag, std::int32_t state);

/// Resets the chain, examines it, and resets it again, in one exchange.
/// @throws toolkit::ChainFault if it cannot be examined.
ChainSurvey survey(Session& session, const Object_v1_0& jtag);

void scanChain(Session& session, Output& output, const ObjectOptions& options);
void shiftBits(Session& session, Output& output, const JtagShiftOptions& options);
void serveJtag(Session& session, Output& output, const JtagServeOptions& options);
void playSvf(Session& session, Output& output, const JtagSvfOptions& options);
/// Tells what a file does.
void measureSvf(Output& output, const JtagSvfOptions& options);
void showJtagOptions(Session& session, Output& output, const ObjectOptions& chosen);

} // namespace TAVO::cli
