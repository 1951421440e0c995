#include <tavo/json/value_output.h>

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace TAVO::json {

namespace {

/// The indices of a record's fields in alphabetical order.
std::vector<std::size_t> byName(const ValueView::Record& record) {
    std::vector<std::size_t> order(record.fields.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&](std::size_t left, std::size_t right) {
        return record.fields[left].name < record.fields[right].name;
    });
    return order;
}

struct JsonForm {
    JsonWriter& json;
    /// Null where bytes are written as text.
    std::vector<ValueView::Bytes>* blocks;

    void write(const ValueView& value) const { std::visit(*this, value.data); }

    void operator()(bool value) const { json.flag(value); }
    void operator()(std::int64_t value) const { json.number(value); }
    void operator()(std::uint64_t value) const { json.number(value); }
    void operator()(std::string_view value) const { json.exactText(value); }
    void operator()(ValueView::Bytes value) const {
        if (!blocks) {
            json.bytes(value);
            return;
        }
        blocks->push_back(value);
        json.object([&] { json.key("block").number(blocks->size() - 1); });
    }
    void operator()(const ValueView::List& value) const {
        json.array([&] {
            for (std::size_t i = 0; i < value.size; ++i)
                write(value[i]);
        });
    }
    void operator()(const ValueView::Record& value) const {
        json.object([&] {
            for (const auto field : byName(value)) {
                json.key(value.fields[field].name);
                write(value[field]);
            }
        });
    }
};

} // namespace

void writeValue(JsonWriter& json, const ValueView& value) { JsonForm{json, nullptr}.write(value); }

void writeValue(JsonWriter& json, const ValueView& value, std::vector<ValueView::Bytes>& blocks) {
    JsonForm{json, &blocks}.write(value);
}

} // namespace TAVO::json
