#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include <tavo/cli/session.h>
#include <tavo/cli/values/json_writer.h>
#include <tavo/cli/values/text_writer.h>
#include <tavo/client.h>
#include <tavo/json/callable_methods.h>

namespace TAVO::cli {

/// A call as the user wrote it, `OBJECT.METHOD name=value ...`, with its syntax checked.
struct CallWords {
    struct Assignment {
        std::string field;
        std::string text;
    };

    std::string object;
    std::string method;
    std::vector<Assignment> assignments;
};

/// @throws Failure (usage)
CallWords parseCall(std::span<const std::string> words);

/// A call that the device offers, with the description of its records.
struct PreparedCall {
    std::shared_ptr<Object_v1_0> object;
    std::shared_ptr<Method> method;
    const TAVOXTranscode::MethodRow* row = nullptr;
};

/// Opens the session if needed; sends nothing else.
/// @throws Failure (not found) for an unknown object or method, Failure (usage) for a wrong field or value.
PreparedCall prepareCall(Session& session, const CallWords& words);
/// The same, with the object already found.
PreparedCall prepareCall(const std::shared_ptr<Object_v1_0>& object, const CallWords& words);

using json::callableMethods;

/// The method with its parameters and results: "get() -> state: u8".
std::string signatureText(const TAVOXTranscode::MethodRow& row);

/// Writes the members "method", "result", "returnCode" and, if known, "returnCodeMeaning" of an executed
/// call. Without reply data "result" is null.
void writeResult(JsonWriter& json, const PreparedCall& call);
/// The same as text: a line with method and return code, then a line for each field of the result.
void writeResult(TextWriter& text, const PreparedCall& call);

} // namespace TAVO::cli
