#pragma once

#include <cstdint>
#include <memory>

#include <tavo/client.h>
#include <tavo/jtag/step.h>
#include <tavo/toolkit/access.h>
#include <tavo/toolkit/jtag_survey.h>

namespace TAVO::toolkit {

using ShiftCall = std::shared_ptr<BoundMethod<dto::Jtag::ShiftReply>>;

/// Calls of a "jtag" object of either version.
ShiftCall shiftCall(const Object_v1_0& jtag, jtag::Register target, const BitString& bits);
std::shared_ptr<Method> moveCall(const Object_v1_0& jtag, jtag::TapState state);

/// The bits that an executed call captured, as many as it shifted.
/// @throws std::runtime_error if the device gave another number of bytes.
BitString capturedBy(const ShiftCall& call);

/// Resets the chain, examines it, and resets it again, in one exchange.
/// @throws ChainFault if it cannot be examined; what the access throws.
ChainSurvey scanChain(Access& access, const Object_v1_0& jtag);

} // namespace TAVO::toolkit
