#include <tavo/cli/output.h>

#include <cerrno>
#include <cstring>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <langinfo.h>
#include <unistd.h>

namespace TAVO::cli {

Output::Output(bool json, bool mayEndQuietly)
    : json_(json)
    , mayEndQuietly_(mayEndQuietly)
    , output_(STDOUT_FILENO)
    , errors_(STDERR_FILENO) {}

void Output::show(const Document& document, const Text& text) {
    if (!json_) {
        print(text);
        return;
    }
    JsonWriter writer(output_, layout_);
    document(writer);
    output_.write("\n");
}

void Output::show(const nlohmann::json& document, const Text& text) {
    show([&](JsonWriter& json) { json.write(document); }, text);
}

void Output::show(const nlohmann::json& document) {
    show(document, [](TextWriter&) {});
}

void Output::showNext(const Document& document, const Text& text) {
    if (json_) {
        JsonWriter writer(output_, JsonWriter::Layout::line);
        document(writer);
        output_.write("\n");
    } else {
        print(text);
    }
    finish();
}

void Output::print(const Text& text) {
    TextWriter writer(output_);
    text(writer);
}

namespace {

const char* nameOf(ErrorOrigin origin) {
    switch (origin) {
    case ErrorOrigin::device:
        return "device";
    case ErrorOrigin::connection:
        return "connection";
    case ErrorOrigin::library:
        break;
    }
    return "library";
}

/// Leaves out unknown facts.
void writeFacts(JsonWriter& json, const ErrorFacts& facts) {
    json.object([&] {
        json.key("connectionUsable").flag(facts.connectionUsable);
        if (facts.deviceErrorCode)
            json.key("deviceErrorCode").number(*facts.deviceErrorCode);
        if (!facts.field.empty())
            json.key("field").text(facts.field);
        if (!facts.method.empty())
            json.key("method").text(facts.method);
        if (facts.offset)
            json.key("offset").number(*facts.offset);
        json.key("origin").text(nameOf(facts.origin));
    });
}

void writeFacts(JsonWriter& json, const ReturnedCode& returned) {
    json.object([&] {
        json.key("connectionUsable").flag(true);
        json.key("method").text(returned.method);
        json.key("origin").text(nameOf(ErrorOrigin::device));
        json.key("returnCode").number(returned.code);
        if (!returned.meaning.empty())
            json.key("returnCodeMeaning").text(returned.meaning);
    });
}

} // namespace

void Output::tell(const FailureReport& report) {
    say("error", report.message, [&](JsonWriter& json) {
        json.key("code").number(static_cast<int>(report.code));
        if (report.facts)
            writeFacts(json.key("facts"), *report.facts);
        else if (report.returned)
            writeFacts(json.key("facts"), *report.returned);
        json.key("kind").text(report.kind);
    });
}

void Output::warn(std::string_view message) {
    say("warning", message, [](JsonWriter&) {});
}

void Output::say(std::string_view kind, std::string_view message, const Document& more) {
    // What came before is to stand before it, also where both streams go to one file.
    output_.flush();
    if (json_) {
        JsonWriter json(errors_, layout_);
        json.object([&] {
            json.key(kind).object([&] {
                more(json);
                json.key("message").text(message);
            });
        });
        errors_.write("\n");
    } else {
        TextWriter(errors_).print("tavo: {}{}\n", kind == "warning" ? "warning: " : "", message);
    }
    errors_.flush();
}

void Output::finish() {
    output_.flush();
    if (output_.error() == EPIPE && mayEndQuietly_)
        throw NobodyReads();
    if (output_.error() != 0)
        throw Failure(ExitCode::protocol, fmt::format("cannot write to standard output: {}",
                                                      std::generic_category().message(output_.error())));
}

// NOLINTNEXTLINE(concurrency-mt-unsafe): the locale is set once, before any thread is started
bool localeIsUtf8() { return std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0; }

void holdStandardStreams() {
    for (int stream = 0; stream <= 2; ++stream)
        if (::fcntl(stream, F_GETFD) == -1 && errno == EBADF)
            static_cast<void>(::open("/dev/null", stream == 0 ? O_WRONLY : O_RDONLY));
}

} // namespace TAVO::cli
