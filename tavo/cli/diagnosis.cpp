#include <tavo/cli/diagnosis.h>

#include <utility>

#include <fmt/format.h>

namespace TAVO::cli {

namespace {

const char* nameOf(Finding::State state) {
    switch (state) {
    case Finding::State::ok:
        return "ok";
    case Finding::State::warning:
        return "warning";
    case Finding::State::failed:
        return "failed";
    case Finding::State::notTried:
        break;
    }
    return "not tried";
}

} // namespace

void Diagnosis::add(Finding finding) {
    if (finding.state == Finding::State::failed && !firstFailure_)
        firstFailure_.emplace(finding.code, fmt::format("{}: {}", finding.check, finding.text));
    if (!output_.isJson()) {
        output_.print([&](TextWriter& text) {
            text.print("{:<9}  {:<13}  {}\n", nameOf(finding.state), finding.check, finding.text);
            if (!finding.hint.empty())
                text.print("{:>24}  {}\n", "->", finding.hint);
        });
        // The next check may take its time.
        output_.finish();
        return;
    }
    auto document = std::move(finding.facts);
    document["check"] = finding.check;
    document["state"] = nameOf(finding.state);
    document["text"] = finding.text;
    if (!finding.hint.empty())
        document["hint"] = finding.hint;
    findings_.push_back(std::move(document));
}

void Diagnosis::addFailure(const std::string& check, const std::exception& cause, const std::string& hint) {
    const auto report = describeFailure(cause);
    add({.check = check,
         .state = Finding::State::failed,
         .text = report.message,
         .hint = hint,
         .facts = {{"code", static_cast<int>(report.code)}, {"kind", report.kind}},
         .code = report.code});
}

void Diagnosis::finish() {
    if (output_.isJson())
        output_.show({{"checks", findings_}, {"ok", !hasFailed()}});
    if (firstFailure_)
        throw Failure(*firstFailure_);
}

} // namespace TAVO::cli
