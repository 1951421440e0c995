#include <tavo/cli/prepared_call.h>

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>

#include <fmt/format.h>

#include <tavo/cli/values/field_text.h>
#include <tavo/cli/values/value_output.h>

namespace TAVO::cli {

namespace {

using TAVOXTranscode::MethodRow;

std::string takesText(const std::string& method, const std::vector<FieldDescription>& fields) {
    return fmt::format("{} takes {}", method, fields.empty() ? "no parameters" : fieldsText(fields));
}

template <class Things, class Text>
std::string joined(const Things& things, Text text) {
    std::string list;
    for (const auto& thing : things)
        list += (list.empty() ? "" : ", ") + text(thing);
    return list;
}

const MethodRow& findMethod(const Object_v1_0& object, const std::string& method) {
    const bool listed = object.hasMethod(method);
    const auto* described = findMethodRow(object, method);
    if (listed && described)
        return *described;
    const auto names =
        joined(callableMethods(object), [](const auto* row) { return std::string(row->name); });
    if (listed)
        throw Failure(ExitCode::notFound,
                      fmt::format("the parameters of {}.{} are not known to this client; known are: {}",
                                  object.getFullName(), method, names));
    throw Failure(ExitCode::notFound,
                  fmt::format("{} has no method '{}'; it has: {}", object.getFullName(), method, names));
}

std::vector<std::string> slipsIn(const std::vector<CallWords::Assignment>& assignments,
                                 const std::vector<FieldDescription>& fields) {
    std::vector<std::string> slips;
    std::vector<std::string> seen;
    for (const auto& assignment : assignments) {
        const auto& name = assignment.field;
        const auto isNamed = [&](const auto& field) { return field.name == name; };
        if (std::none_of(fields.begin(), fields.end(), isNamed))
            slips.push_back(fmt::format("there is no field '{}'", name));
        else if (std::find(seen.begin(), seen.end(), name) != seen.end())
            slips.push_back(fmt::format("field '{}' is given twice", name));
        seen.push_back(name);
    }
    for (const auto& field : fields)
        if (std::find(seen.begin(), seen.end(), field.name) == seen.end())
            slips.push_back(fmt::format("field '{}' is missing", field.name));
    return slips;
}

Value recordOf(const std::vector<CallWords::Assignment>& assignments,
               const std::vector<FieldDescription>& fields) {
    Value::Record record;
    for (const auto& field : fields) {
        const auto given = std::find_if(assignments.begin(), assignments.end(), [&](const auto& assignment) {
            return assignment.field == field.name;
        });
        record.push_back({field.name, parseField(field, given->text)});
    }
    return Value(std::move(record));
}

dto::Params makeParams(const std::string& fullName, const MethodRow& row,
                       const std::vector<CallWords::Assignment>& assignments) {
    const auto fields = row.request ? row.request->fields() : std::vector<FieldDescription>();
    const auto refuse = [&](const std::string& slips) {
        throw Failure(ExitCode::usage,
                      fmt::format("{}: {}; {}", fullName, slips, takesText(fullName, fields)));
    };
    if (const auto slips = slipsIn(assignments, fields); !slips.empty())
        refuse(joined(slips, [](const auto& slip) { return slip; }));
    if (!row.request)
        return {};
    auto request = row.request->create();
    try {
        row.request->fromValue(recordOf(assignments, fields), *request);
    } catch (const std::invalid_argument& error) {
        refuse(error.what());
    }
    return {std::move(request)};
}

/// The reply of an executed call, if it has one.
std::optional<ValueView> replyOf(const PreparedCall& call) {
    const auto reply = call.method->getResult().reply;
    if (!call.row->reply || !reply)
        return std::nullopt;
    return call.row->reply->view(*reply);
}

} // namespace

CallWords parseCall(std::span<const std::string> words) {
    const auto refuse = [](const std::string& problem) {
        throw Failure(ExitCode::usage, problem + "; a call is OBJECT.METHOD [name=value ...]");
    };
    if (words.empty())
        refuse("no call given");
    CallWords call;
    const auto dot = words.front().rfind('.');
    if (dot == std::string::npos || dot == 0 || dot + 1 == words.front().size())
        refuse(fmt::format("'{}' does not name a method of an object", words.front()));
    call.object = words.front().substr(0, dot);
    call.method = words.front().substr(dot + 1);
    for (const auto& word : words.subspan(1)) {
        const auto equals = word.find('=');
        if (equals == std::string::npos || equals == 0)
            refuse(fmt::format("'{}' is not name=value", word));
        call.assignments.push_back({word.substr(0, equals), word.substr(equals + 1)});
    }
    return call;
}

PreparedCall prepareCall(Session& session, const CallWords& words) {
    return prepareCall(session.find(words.object), words);
}

PreparedCall prepareCall(const std::shared_ptr<Object_v1_0>& object, const CallWords& words) {
    const auto& row = findMethod(*object, words.method);
    const auto params = makeParams(words.object + "." + words.method, row, words.assignments);
    return {object, std::make_shared<Method>(words.method, *object, params), &row};
}

std::string signatureText(const MethodRow& row) {
    auto text = fmt::format("{}({})", row.name, row.request ? fieldsText(row.request->fields()) : "");
    if (row.reply)
        text += " -> " + fieldsText(row.reply->fields());
    return text;
}

void writeResult(JsonWriter& json, const PreparedCall& call) {
    json.key("method").text(call.method->getFullName());
    json.key("result");
    if (const auto reply = replyOf(call))
        writeValue(json, *reply);
    else
        json.null();
    json.key("returnCode").number(call.method->returnCode());
    if (const auto meaning = meaningOfReturnCode(*call.method); !meaning.empty())
        json.key("returnCodeMeaning").text(meaning);
}

void writeResult(TextWriter& text, const PreparedCall& call) {
    text.print("{}: return code {}\n", call.method->getFullName(), returnCodeText(*call.method));
    if (const auto reply = replyOf(call))
        writeFields(text, std::get<ValueView::Record>(reply->data));
}

} // namespace TAVO::cli
