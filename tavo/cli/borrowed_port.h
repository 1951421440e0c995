#pragma once

#include <cstddef>
#include <exception>
#include <memory>

#include <fmt/format.h>

#include <tavo/cli/output.h>
#include <tavo/cli/session.h>
#include <tavo/jtag/port.h>

namespace TAVO::cli {

/// The port of a "jtag" object of the session's device, which is given back as it was found.
class BorrowedPort {
public:
    BorrowedPort(Session& session, Output& output, const std::shared_ptr<Object_v1_0>& jtag)
        : session_(session)
        , output_(output)
        , port_(jtag, {[this](const jtag::Methods& methods) {
                           ++exchanges_;
                           session_.run(methods);
                       },
                       requireSuccess}) {}

    /// Runs an action with the port, then gives the port back, also when the action fails.
    template <class Action>
    void use(Action action) {
        try {
            action(port_);
        } catch (...) {
            try {
                restore();
            } catch (const std::exception& failure) {
                output_.warn(fmt::format("the options of {} are not restored: {}",
                                         port_.object().getFullName(), failure.what()));
            }
            throw;
        }
        restore();
    }

    std::size_t exchanges() const { return exchanges_; }

private:
    void restore() {
        port_.restore({[this](const jtag::Methods& methods) {
                           ++exchanges_;
                           session_.releaseAll(methods);
                       },
                       requireSuccess});
    }

    Session& session_;
    Output& output_;
    std::size_t exchanges_ = 0;
    jtag::Port port_;
};

} // namespace TAVO::cli
