#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include <tavo/cli/session.h>
#include <tavo/cli/values/json_writer.h>
#include <tavo/cli/values/text_writer.h>
#include <tavo/client.h>

namespace TAVO::cli {

/// A call in the user's words, `OBJECT.METHOD name=value ...`, checked as far as words can be.
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

/// A call that fits the device, with the description of its records.
struct PreparedCall {
    std::shared_ptr<Object_v1_0> object;
    std::shared_ptr<Method> method;
    const TAVOXTranscode::MethodRow* row = nullptr;
};

/// Sends nothing once the session is open.
/// @throws Failure (not found) for unknown objects and methods, Failure (usage) for wrong fields and values.
PreparedCall prepareCall(Session& session, const CallWords& words);
/// The same for the object that the words mean.
PreparedCall prepareCall(const std::shared_ptr<Object_v1_0>& object, const CallWords& words);

/// The object's methods that can be called, with their records, in published order: those that both the
/// device and this client know.
std::vector<const TAVOXTranscode::MethodRow*> callableMethods(const Object_v1_0& object);

/// The method with its parameters and results in words: "get() -> state: u8".
std::string signatureText(const TAVOXTranscode::MethodRow& row);

/// The members "method", "result" and "returnCode" of an executed call, the result null without reply data.
void writeResult(JsonWriter& json, const PreparedCall& call);
/// The same in lines: the method and its return code, then a line for each field of the result.
void writeResult(TextWriter& text, const PreparedCall& call);

} // namespace TAVO::cli
