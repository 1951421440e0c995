#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <tavo/client/transcode/value.h>
#include <tests/support/wire_bytes.h>

namespace support {

/// The bytes of a value whose type is in the words of TAVO::FieldDescription: `said` for every text, two of
/// everything there can be several of, and 2 for numbers.
class SaidValue {
public:
    SaidValue(std::string_view type, std::string_view said)
        : rest_(type)
        , said_(said) {}

    Bytes bytes() { return value(); }

private:
    bool take(std::string_view words) {
        const bool there = rest_.starts_with(words);
        rest_.remove_prefix(there ? words.size() : 0);
        return there;
    }

    Bytes value() {
        if (take("list of ")) {
            const auto element = value();
            return joined({u32(2), element, element});
        }
        if (take("{"))
            return record();
        if (take("text"))
            return text(std::string(said_));
        if (take("bytes"))
            return block({0x9b, 0x1b});
        const auto size = take("bool") || take("u8") ? 1u : take("i32") || take("u32") ? 4u : 8u;
        if (size == 8)
            rest_.remove_prefix(3);
        Bytes number(size, 0);
        number.back() = 2;
        return number;
    }

    Bytes record() {
        Bytes fields;
        while (!take("}")) {
            rest_.remove_prefix(rest_.find(": ") + 2);
            fields = joined({fields, value()});
            take(", ");
        }
        return fields;
    }

    std::string_view rest_;
    std::string_view said_;
};

/// The bytes of a record of these fields, made in that way.
inline Bytes saidRecord(const std::vector<TAVO::FieldDescription>& fields, std::string_view said) {
    Bytes record;
    for (const auto& field : fields)
        record = joined({record, SaidValue(field.type, said).bytes()});
    return record;
}

} // namespace support
