#pragma once

#include <exception>
#include <functional>
#include <string_view>

#include <nlohmann/json.hpp>

#include <tavo/cli/failure.h>
#include <tavo/cli/values/json_writer.h>
#include <tavo/cli/values/text_writer.h>

namespace TAVO::cli {

/// Whoever read standard output has gone, as head does when it has enough: the tool is to end quietly.
class NobodyReads : public std::exception {
public:
    const char* what() const noexcept override { return "nobody reads standard output"; }
};

/// The tool's output: data goes to standard output as text or as one JSON document, failures go to standard
/// error. Everything is written as it is produced, so a large result is never held twice.
class Output {
public:
    using Document = std::function<void(JsonWriter&)>;
    using Text = std::function<void(TextWriter&)>;

    /// @param json writes data and failures as JSON.
    /// @param mayEndQuietly whether a closed pipe is no failure, but NobodyReads.
    explicit Output(bool json, bool mayEndQuietly = false);

    bool isJson() const { return json_; }
    /// Every JSON document is one line from now on.
    void useLines() { layout_ = JsonWriter::Layout::line; }

    /// Writes the data in one of its two forms. Call it once per run. Neither form may throw half-way: do
    /// what can fail first.
    void show(const Document& document, const Text& text);
    /// The same for a small document.
    void show(const nlohmann::json& document, const Text& text);
    /// The same for a command whose text output is empty.
    void show(const nlohmann::json& document);
    /// Writes one of many results, at once: as a JSON document of one line, or as text. Takes the place of
    /// show() where results come with time.
    void showNext(const Document& document, const Text& text);
    /// Text for people.
    void print(const Text& text);
    /// Writes bytes to standard output unchanged, in either form: help texts, and what a console receives.
    void write(std::string_view bytes) { output_.write(bytes); }
    /// Reports a failure on standard error.
    void tell(const FailureReport& report);
    /// Prints a warning.
    void warn(std::string_view message);

    /// Flushes, and checks that everything was written. Call it last, and after output that must appear at
    /// once.
    /// @throws Failure if standard output could not be written; NobodyReads.
    void finish();

private:
    void say(std::string_view kind, std::string_view message, const Document& more);

    bool json_;
    JsonWriter::Layout layout_ = JsonWriter::Layout::indented;
    bool mayEndQuietly_;
    Sink output_;
    Sink errors_;
};

/// Whether the locale uses UTF-8, so line-drawing characters can be shown.
bool localeIsUtf8();

/// Opens a placeholder for each standard stream that the caller closed, so that no socket gets its number.
/// Writing to a placeholder fails.
void holdStandardStreams();

} // namespace TAVO::cli
