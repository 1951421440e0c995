#pragma once

#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <utility>

#include <tavo/jtag/port.h>
#include <tavo/toolkit/access.h>

namespace TAVO::toolkit {

/// The port of a "jtag" object, which is given back as it was found.
class BorrowedPort {
public:
    /// @param warn is told why the port could not be given back, where a failure was on its way already.
    BorrowedPort(Access& access, std::shared_ptr<const Object_v1_0> jtag,
                 std::function<void(const std::exception&)> warn)
        : access_(access)
        , warn_(std::move(warn))
        , port_(std::move(jtag), counted(access.executor())) {}

    /// Runs an action with the port, then gives the port back, also when the action fails.
    template <class Action>
    void use(Action action) {
        try {
            action(port_);
        } catch (...) {
            try {
                restore();
            } catch (const std::exception& failure) {
                warn_(failure);
            }
            throw;
        }
        restore();
    }

    const Object_v1_0& object() const { return port_.object(); }
    std::size_t exchanges() const { return exchanges_; }

private:
    jtag::Executor counted(jtag::Executor executor) {
        return {[this, execute = std::move(executor.execute)](const Methods& calls) {
                    ++exchanges_;
                    execute(calls);
                },
                std::move(executor.insist)};
    }
    void restore() { port_.restore(counted(access_.lastExecutor())); }

    Access& access_;
    std::function<void(const std::exception&)> warn_;
    std::size_t exchanges_ = 0;
    jtag::Port port_;
};

} // namespace TAVO::toolkit
