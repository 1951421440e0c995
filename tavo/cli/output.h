#pragma once

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include <tavo/cli/failure.h>

namespace TAVO::cli {

/// Where the tool's words go: data to the standard output as text or as one JSON document, failures to the
/// standard error stream.
class Output {
public:
    /// @param json whether data and failures are JSON.
    explicit Output(bool json)
        : json_(json) {}

    bool isJson() const { return json_; }

    /// Data in both forms, of which one is written. The document is the only one of the run.
    void show(const nlohmann::json& document, std::string_view text);
    /// Text for the standard output whatever the form: help texts.
    void write(std::string_view text);
    /// Tells a failure on the standard error stream.
    void tell(const FailureReport& report) const;

    /// Call it last, and after what has to be seen at once: makes sure that everything has arrived.
    /// @throws Failure when the standard output cannot take what was written.
    void finish();

private:
    bool json_;
    int writeError_ = 0;
};

/// `text` with control characters as \xNN, so that what a device says cannot steer the terminal.
std::string printable(std::string_view text);

/// Whether line-drawing characters can be shown: the locale's characters are UTF-8.
bool localeIsUtf8();

/// Gives the three standard streams something to stand on where the caller closed them, so that no socket
/// ever gets their numbers. Writing to one of them then fails.
void holdStandardStreams();

} // namespace TAVO::cli
