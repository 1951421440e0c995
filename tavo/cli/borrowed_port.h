#pragma once

#include <cstddef>
#include <exception>
#include <memory>
#include <utility>

#include <fmt/format.h>

#include <tavo/cli/output.h>
#include <tavo/cli/session_access.h>
#include <tavo/toolkit/borrowed_port.h>

namespace TAVO::cli {

/// Warns that the port of an object is not given back as it was found.
inline void warnOfOptions(Output& output, const Object_v1_0& jtag, const std::exception& failure) {
    output.warn(fmt::format("the options of {} are not restored: {}", jtag.getFullName(), failure.what()));
}

/// The port of a "jtag" object of the session's device, which is given back as it was found.
class BorrowedPort {
public:
    BorrowedPort(Session& session, Output& output, const std::shared_ptr<Object_v1_0>& jtag)
        : access_(session)
        , port_(access_, jtag,
                [&output, jtag](const std::exception& failure) { warnOfOptions(output, *jtag, failure); }) {}

    /// Runs an action with the port, then gives the port back, also when the action fails.
    template <class Action>
    void use(Action action) {
        port_.use(std::move(action));
    }

private:
    SessionAccess access_;
    toolkit::BorrowedPort port_;
};

} // namespace TAVO::cli
