#include <tavo/cli/failure.h>

#include <string_view>

#include <fmt/format.h>

#include <tavo/client/wire/error.h>
#include <tavo/toolkit/errors.h>

namespace TAVO::cli {

namespace {

struct Explanation {
    ExitCode code;
    std::string_view kind;
    std::string_view text;
};

constexpr Explanation explanations[] = {
    {ExitCode::done, "done", "done"},
    {ExitCode::refused, "refused", "the device refused: it reported an error, or a return code other than 0"},
    {ExitCode::usage, "usage", "wrong options, arguments or input files; nothing on the device was changed"},
    {ExitCode::notFound, "not-found", "no such object or method"},
    {ExitCode::notAuthorised, "not-authorised",
     "locked by another user, login refused, or unknown server key"},
    {ExitCode::network, "network", "no connection, or the connection broke"},
    {ExitCode::protocol, "protocol", "tool and device disagree, or any other failure"},
};

template <class... Classes>
bool isOneOf(const std::exception& exception) {
    return (... || (dynamic_cast<const Classes*>(&exception) != nullptr));
}

ExitCode codeOf(const std::exception& exception) {
    if (const auto* failure = dynamic_cast<const Failure*>(&exception))
        return failure->code;
    if (isOneOf<toolkit::Fault>(exception))
        return ExitCode::refused;
    if (isOneOf<toolkit::BadRequest>(exception))
        return ExitCode::usage;
    if (isOneOf<LockError, TAVOLoginError, TAVOKeyError>(exception))
        return ExitCode::notAuthorised;
    if (isOneOf<NetworkError>(exception))
        return ExitCode::network;
    if (const auto* error = dynamic_cast<const Error*>(&exception);
        error && error->facts().origin == ErrorOrigin::device)
        return ExitCode::refused;
    return ExitCode::protocol;
}

std::string_view kindOf(ExitCode code) {
    for (const auto& explanation : explanations)
        if (explanation.code == code)
            return explanation.kind;
    return "";
}

std::string hintFor(const std::exception& exception) {
    if (!isOneOf<TAVOKeyError>(exception))
        return "";
    return " (this build knows the keys of " TAVO_SERVER_KEYS_NAME
           "; to know others, build with -D TAVO_SERVER_KEYS_FILE=...)";
}

} // namespace

std::vector<ExitCodeMeaning> exitCodeMeanings() {
    std::vector<ExitCodeMeaning> meanings;
    for (const auto& explanation : explanations)
        meanings.push_back({explanation.code, std::string(explanation.text)});
    return meanings;
}

std::string exitCodesText() {
    std::string text = "Exit status:\n";
    for (const auto& [code, meaning] : exitCodeMeanings())
        text += fmt::format("  {}  {}\n", static_cast<int>(code), meaning);
    return text;
}

FailureReport describeFailure(const std::exception& exception) {
    if (const auto* reported = dynamic_cast<const ReportedFailure*>(&exception))
        return reported->report;
    const auto code = codeOf(exception);
    FailureReport report{code, std::string(kindOf(code)), exception.what() + hintFor(exception), std::nullopt,
                         std::nullopt};
    if (const auto* error = dynamic_cast<const Error*>(&exception))
        report.facts = error->facts();
    if (const auto* failure = dynamic_cast<const Failure*>(&exception))
        report.returned = failure->returned;
    return report;
}

} // namespace TAVO::cli
