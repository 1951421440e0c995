#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <tavo/cli/command.h>

#include <tavo/cli/object_choice.h>
#include <tavo/cli/output.h>
#include <tavo/cli/values/bit_string.h>

/// Shared by the `jtag` subcommands, which work with both versions of the "jtag" object.
namespace TAVO::cli {

struct JtagShiftOptions : ObjectOptions {
    std::vector<std::string> shifts;
    bool bytes = false;

    void describe(OptionList& list);
};

enum class JtagRegister { instruction, data };
using ShiftCall = std::shared_ptr<BoundMethod<dto::Jtag::ShiftReply>>;

std::shared_ptr<Object_v1_0> chooseJtag(Session& session, const ObjectOptions& options);

ShiftCall shiftCall(const Object_v1_0& jtag, JtagRegister target, const BitString& bits);
/// The bits that an executed call captured, as many as it shifted.
BitString capturedBy(const ShiftCall& call);
std::shared_ptr<Method> moveCall(const Object_v1_0& jtag, std::int32_t state);

void scanChain(Session& session, Output& output, const ObjectOptions& options);
void shiftBits(Session& session, Output& output, const JtagShiftOptions& options);
void showJtagOptions(Session& session, Output& output, const ObjectOptions& options);

} // namespace TAVO::cli
