#include <tavo/client/transcode/value_view.h>

#include <string>
#include <utility>

namespace TAVO {

namespace {

Value copied(bool flag) { return Value(flag); }
Value copied(std::int64_t number) { return Value(number); }
Value copied(std::uint64_t number) { return Value(number); }
Value copied(std::string_view text) { return Value(std::string(text)); }
Value copied(ValueView::Bytes bytes) { return Value(Value::Bytes(bytes.begin(), bytes.end())); }

Value copied(const ValueView::List& list) {
    Value::List values;
    values.reserve(list.size);
    for (std::size_t i = 0; i < list.size; ++i)
        values.push_back(valueOf(list[i]));
    return Value(std::move(values));
}

Value copied(const ValueView::Record& record) {
    Value::Record members;
    members.reserve(record.fields.size());
    for (std::size_t i = 0; i < record.fields.size(); ++i)
        members.push_back({std::string(record.fields[i].name), valueOf(record[i])});
    return Value(std::move(members));
}

} // namespace

Value valueOf(const ValueView& view) {
    return std::visit([](const auto& content) { return copied(content); }, view.data);
}

} // namespace TAVO
