#pragma once

#include <tavo/cli/session.h>
#include <tavo/toolkit/access.h>

namespace TAVO::cli {

/// The device of a session, as the toolkit uses it.
class SessionAccess : public toolkit::Access {
public:
    explicit SessionAccess(Session& session)
        : session_(session) {}

    void run(const toolkit::Methods& calls) override { session_.run(calls); }
    void runLast(const toolkit::Methods& calls) override { session_.releaseAll(calls); }
    void insist(const Method& executed) override { requireSuccess(executed); }
    bool isRefusal(const std::exception& failure) const override {
        const auto* known = dynamic_cast<const Failure*>(&failure);
        return known != nullptr && known->code == ExitCode::refused;
    }
    void throwIfStopped() override { InterruptWatch::throwIfInterrupted(); }
    void pause(std::chrono::milliseconds time) override { InterruptWatch::pause(time); }

private:
    Session& session_;
};

} // namespace TAVO::cli
