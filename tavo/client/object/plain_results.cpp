#include <tavo/client/object/plain_results.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <variant>

#include <tavo/client/transcode/internal/record_functions.h>

namespace TAVO {

namespace {

using Bytes = std::span<const std::uint8_t>;

std::optional<ValueView> onlyField(const dto::result& outcome) {
    const auto* description = outcome.reply ? TAVOXTranscode::replyDescription(*outcome.reply) : nullptr;
    if (!description)
        return std::nullopt;
    const auto record = std::get<ValueView::Record>(description->view(*outcome.reply).data);
    return record.fields.size() == 1 ? std::optional(record[0]) : std::nullopt;
}

[[noreturn]] void refuse(const std::type_info& desired) {
    dto::refuseResult("const Can't convert result ", desired);
}

template <class Desired>
Bytes bytesIn(const dto::result& outcome) {
    const auto field = onlyField(outcome);
    if (const auto* bytes = field ? std::get_if<Bytes>(&field->data) : nullptr)
        return *bytes;
    refuse(typeid(Desired));
}

} // namespace

std::vector<unsigned char> PlainResult<std::vector<unsigned char>>::of(const dto::result& outcome) {
    const auto field = onlyField(outcome);
    if (const auto* text = field ? std::get_if<std::string_view>(&field->data) : nullptr)
        return {text->begin(), text->end()};
    const auto bytes = bytesIn<std::vector<unsigned char>>(outcome);
    return {bytes.begin(), bytes.end()};
}

std::vector<int> PlainResult<std::vector<int>>::of(const dto::result& outcome) {
    const auto bytes = bytesIn<std::vector<int>>(outcome);
    return {bytes.begin(), bytes.end()};
}

std::vector<bool> PlainResult<std::vector<bool>>::of(const dto::result& outcome) {
    std::vector<bool> flags;
    for (const auto byte : bytesIn<std::vector<bool>>(outcome))
        flags.push_back(byte != 0);
    return flags;
}

long long PlainResult<long long>::of(const dto::result& outcome) {
    if (const auto field = onlyField(outcome)) {
        if (const auto* number = std::get_if<std::int64_t>(&field->data))
            return *number;
        if (const auto* number = std::get_if<std::uint64_t>(&field->data))
            return static_cast<long long>(*number);
        if (const auto* flag = std::get_if<bool>(&field->data))
            return *flag ? 1 : 0;
    }
    refuse(typeid(long long));
}

} // namespace TAVO
