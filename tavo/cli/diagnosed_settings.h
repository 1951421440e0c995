#pragma once

#include <optional>

#include <tavo/cli/diagnosis.h>
#include <tavo/cli/session.h>

namespace TAVO::cli {

/// Checks what holds before anything is connected: configuration file, settings and where they come from, and
/// whether there is a password, which is neither read nor asked for.
/// @return what holds; empty if no device is known.
std::optional<ConnectionOptions> diagnoseSettings(const ConnectionOptions& given, Diagnosis& diagnosis);

} // namespace TAVO::cli
