#pragma once

#include <functional>
#include <string_view>

#include <nlohmann/json.hpp>

#include <tavo/cli/failure.h>
#include <tavo/cli/values/json_writer.h>
#include <tavo/cli/values/text_writer.h>

namespace TAVO::cli {

/// Where the tool's words go: data to the standard output as text or as one JSON document, failures to the
/// standard error stream. All is written as it is made, so that a large result is not held twice.
class Output {
public:
    using Document = std::function<void(JsonWriter&)>;
    using Text = std::function<void(TextWriter&)>;

    /// @param json whether data and failures are JSON.
    explicit Output(bool json);

    bool isJson() const { return json_; }

    /// Data in both forms, of which one is written. The document is the only one of the run. Neither may
    /// fail half-way: what can fail comes before.
    void show(const Document& document, const Text& text);
    /// The same for a small document.
    void show(const nlohmann::json& document, const Text& text);
    /// The same for what has nothing to tell but that it was done.
    void show(const nlohmann::json& document);
    /// Text for people that does not wait for the end.
    void print(const Text& text);
    /// Bytes for the standard output as they are, whatever the form: help texts, and what a console receives.
    void write(std::string_view bytes) { output_.write(bytes); }
    /// Tells a failure on the standard error stream.
    void tell(const FailureReport& report);
    /// Tells what the user should know, and goes on.
    void warn(std::string_view message);

    /// Call it last, and after what has to be seen at once: makes sure that everything has arrived.
    /// @throws Failure when the standard output cannot take what was written.
    void finish();

private:
    void say(std::string_view kind, std::string_view message, const Document& more);

    bool json_;
    Sink output_;
    Sink errors_;
};

/// Whether line-drawing characters can be shown: the locale's characters are UTF-8.
bool localeIsUtf8();

/// Gives the three standard streams something to stand on where the caller closed them, so that no socket
/// ever gets their numbers. Writing to one of them then fails.
void holdStandardStreams();

} // namespace TAVO::cli
