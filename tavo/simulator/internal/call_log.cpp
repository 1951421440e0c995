#include <tavo/simulator/internal/call_log.h>

#include <utility>

namespace TAVO::simulator {

namespace {

std::size_t bytesOutside(const Value& value);

std::size_t bytesOutside(const std::string& text) {
    return text.capacity() > std::string().capacity() ? text.capacity() : 0;
}
std::size_t bytesOutside(const Value::Bytes& bytes) { return bytes.capacity(); }
std::size_t bytesOutside(const Value::List& list) {
    auto sum = list.capacity() * sizeof(Value);
    for (const auto& element : list)
        sum += bytesOutside(element);
    return sum;
}
std::size_t bytesOutside(const Value::Record& record) {
    auto sum = record.capacity() * sizeof(Value::Member);
    for (const auto& member : record)
        sum += bytesOutside(member.name) + bytesOutside(member.value);
    return sum;
}
template <class Number>
std::size_t bytesOutside(Number) {
    return 0;
}

/// The memory a value takes outside the object itself.
std::size_t bytesOutside(const Value& value) {
    return std::visit([](const auto& content) { return bytesOutside(content); }, value.data);
}

std::size_t bytesOf(const CallRecord& record) {
    return sizeof record + bytesOutside(record.object) + bytesOutside(record.method) +
           bytesOutside(record.parameters);
}

} // namespace

void CallLog::add(CallRecord record) {
    auto bytes = bytesOf(record);
    if (bytes > mostBytes_) {
        record.parameters = Value(Value::Record{});
        bytes = bytesOf(record);
    }
    if (bytes > mostBytes_)
        return;
    while (!entries_.empty() && (entries_.size() >= mostCalls_ || bytes_ + bytes > mostBytes_)) {
        bytes_ -= entries_.front().bytes;
        entries_.pop_front();
    }
    entries_.push_back({std::move(record), bytes});
    bytes_ += bytes;
}

void CallLog::clear() {
    entries_.clear();
    bytes_ = 0;
}

std::vector<CallRecord> CallLog::records() const {
    std::vector<CallRecord> records;
    records.reserve(entries_.size());
    for (const auto& entry : entries_)
        records.push_back(entry.record);
    return records;
}

} // namespace TAVO::simulator
