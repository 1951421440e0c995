#pragma once

#include <exception>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

#include <tavo/cli/failure.h>
#include <tavo/cli/output.h>

namespace TAVO::cli {

/// What one check has found.
struct Finding {
    enum class State { ok, warning, failed, notTried };

    /// What was checked, such as "lock".
    std::string check;
    State state = State::ok;
    std::string text;
    /// What to do about it; may be empty.
    std::string hint = {};
    /// More members of the JSON document.
    nlohmann::json facts = nlohmann::json::object();
    /// Of a failure.
    ExitCode code = ExitCode::done;
};

/// The findings of a number of checks: shown one by one as text, or together as JSON.
class Diagnosis {
public:
    explicit Diagnosis(Output& output)
        : output_(output) {}

    void add(Finding finding);
    /// A failed check.
    void addFailure(const std::string& check, const std::exception& cause, const std::string& hint);
    /// A check that was not tried.
    void skip(const std::string& check, const std::string& why) {
        add({.check = check, .state = Finding::State::notTried, .text = why});
    }
    bool hasFailed() const { return firstFailure_.has_value(); }
    /// Shows what has not been shown.
    /// @throws Failure the first failed check.
    void finish();

private:
    Output& output_;
    nlohmann::json findings_ = nlohmann::json::array();
    std::optional<Failure> firstFailure_;
};

} // namespace TAVO::cli
