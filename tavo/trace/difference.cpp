#include <tavo/trace/difference.h>

#include <algorithm>
#include <optional>

#include <tavo/client/wire/input_stream.h>
#include <tavo/server/frames.h>
#include <tavo/trace/secrets.h>

namespace TAVO::trace {

namespace {

/// Whose value is the client's own. The user only where he takes a lock or logs in.
bool isOwn(const std::string& field, const TAVOXTranscode::MethodRow& row) {
    const bool tellsUser = row.name == "lock" || row.name == "unlock" || row.name == "login";
    return isSecretField(field) || (tellsUser && field == "user");
}

/// The parameters without what is the client's own; empty if they have nothing of the kind or cannot be read.
std::optional<Value> commonPart(const TAVOXTranscode::MethodRow& row, std::span<const std::uint8_t> bytes) {
    TAVOX::InputStream in(bytes.data(), bytes.size());
    const auto packet = row.request->create();
    row.request->read(in, *packet);
    if (in.failed() || in.remaining() > 0)
        return std::nullopt;
    auto value = row.request->toValue(*packet);
    auto* record = std::get_if<Value::Record>(&value.data);
    if (!record || std::erase_if(*record, [&](const auto& one) { return isOwn(one.name, row); }) == 0)
        return std::nullopt;
    return value;
}

std::string hexadecimal(std::uint8_t byte) {
    constexpr auto digits = "0123456789abcdef";
    return {digits[byte >> 4], digits[byte & 15]};
}

std::string differenceOf(const RecordedCall& recorded, const server::CallFrame& came, const Names& names) {
    const CallId id{came.instanceId, came.methodId};
    const auto name = names.nameOf(recorded.id);
    if (id.instanceId != recorded.id.instanceId || id.methodId != recorded.id.methodId)
        return "expected " + name + ", came " + names.nameOf(id);
    const std::span<const std::uint8_t> expected = recorded.parameters;
    if (std::ranges::equal(expected, came.parameters))
        return "";
    if (const auto* row = names.row(id); row && row->request) {
        const auto wanted = commonPart(*row, expected);
        if (wanted && wanted == commonPart(*row, came.parameters))
            return "";
    }
    const auto [at, other] = std::ranges::mismatch(expected, came.parameters);
    const auto place = std::to_string(at - expected.begin());
    if (at == expected.end() || other == came.parameters.end())
        return name + ": expected " + std::to_string(expected.size()) + " bytes of parameters, came " +
               std::to_string(came.parameters.size());
    return name + ": byte " + place + " of the parameters differs: expected " + hexadecimal(*at) + ", came " +
           hexadecimal(*other);
}

} // namespace

std::string differenceOf(const Exchange& recorded, std::span<const std::uint8_t> request,
                         const Names& names) {
    server::RequestFrame frame(request);
    for (std::uint32_t i = 0; i < frame.callCount(); ++i) {
        const auto came = frame.nextCall();
        const auto place = frame.callCount() > 1 || recorded.calls.size() > 1
                               ? "call " + std::to_string(i + 1) + ": "
                               : std::string();
        if (i >= recorded.calls.size())
            return place + "expected the end of the request, came " +
                   names.nameOf({came.instanceId, came.methodId});
        if (const auto difference = differenceOf(recorded.calls[i], came, names); !difference.empty())
            return place + difference;
    }
    if (frame.callCount() < recorded.calls.size())
        return "call " + std::to_string(frame.callCount() + 1) + ": expected " +
               names.nameOf(recorded.calls[frame.callCount()].id) + ", came the end of the request";
    return "";
}

} // namespace TAVO::trace
