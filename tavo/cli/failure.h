#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <tavo/client/wire/error_facts.h>

/// How the tool ends: its exit statuses, and the one place that maps exceptions to them.
namespace TAVO::cli {

enum class ExitCode : int {
    done = 0,
    refused = 1,       ///< the device reported an error, or a method returned a code other than 0
    usage = 2,         ///< wrong options, arguments or input files
    notFound = 3,      ///< no such object or method
    notAuthorised = 4, ///< locked by another user, login refused, unknown server key
    network = 5,       ///< no connection, or the connection broke
    protocol = 9,      ///< tool and device disagree, or any other failure
};

struct ExitCodeMeaning {
    ExitCode code;
    std::string text;
};

std::vector<ExitCodeMeaning> exitCodeMeanings();

/// The exit statuses explained, one line each, for help texts.
std::string exitCodesText();

/// The return code of a method, other than 0.
struct ReturnedCode {
    /// Full name.
    std::string method;
    std::int32_t code = 0;
    /// Empty if unknown.
    std::string meaning;
};

/// A failure detected by the tool itself.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode exitCode, const std::string& message,
            std::optional<ReturnedCode> returnedCode = std::nullopt)
        : std::runtime_error(message)
        , code(exitCode)
        , returned(std::move(returnedCode)) {}

    ExitCode code;
    /// Set if a method's return code is the failure.
    std::optional<ReturnedCode> returned;
};

/// What to tell the user about a failure.
struct FailureReport {
    ExitCode code = ExitCode::protocol;
    /// The exit code's name: "refused", "usage", "not-found", "not-authorised", "network" or "protocol".
    std::string kind;
    std::string message;
    /// What else the library knows, if the failure came from it.
    std::optional<ErrorFacts> facts;
    /// Set if a method's return code is the failure.
    std::optional<ReturnedCode> returned;
};

/// A failure of any kind with what to tell of it.
class ReportedFailure : public std::runtime_error {
public:
    explicit ReportedFailure(FailureReport told)
        : std::runtime_error(told.message)
        , report(std::move(told)) {}

    FailureReport report;
};

FailureReport describeFailure(const std::exception& exception);

} // namespace TAVO::cli
