#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/object/method_tables.h>
#include <tavo/client/transcode/base_records.h>
#include <tavo/client/transcode/value_view.h>
#include <tavo/client/transcode/value_view_codec.h>
#include <tavo/client/wire/input_stream.h>
#include <tests/support/all_types.h>
#include <tests/support/said_value.h>

namespace {

using namespace TAVO;
using namespace TAVO::TAVOXTranscode;

/// A copy of what is seen.
Value copyOf(const ValueView& view) {
    return std::visit(
        [](const auto& seen) {
            using Seen = std::remove_cvref_t<decltype(seen)>;
            if constexpr (std::same_as<Seen, std::string_view>) {
                return Value(std::string(seen));
            } else if constexpr (std::same_as<Seen, ValueView::Bytes>) {
                return Value(Value::Bytes(seen.begin(), seen.end()));
            } else if constexpr (std::same_as<Seen, ValueView::List>) {
                Value::List list;
                for (std::size_t i = 0; i < seen.size; ++i)
                    list.push_back(copyOf(seen[i]));
                return Value(std::move(list));
            } else if constexpr (std::same_as<Seen, ValueView::Record>) {
                Value::Record record;
                for (std::size_t i = 0; i < seen.fields.size(); ++i)
                    record.push_back({std::string(seen.fields[i].name), copyOf(seen[i])});
                return Value(std::move(record));
            } else {
                return Value(seen);
            }
        },
        view.data);
}

/// Fills a record of that kind from bytes, and compares what is seen in it with its copy.
template <class Packet>
void expectSame(const RecordDescription<Packet>* description, std::size_t& records) {
    if (!description)
        return;
    const auto bytes = support::saidRecord(description->fields(), "said");
    TAVOX::InputStream in(bytes.data(), bytes.size());
    const auto packet = description->create();
    description->read(in, *packet);
    EXPECT_FALSE(in.failed());
    EXPECT_EQ(copyOf(description->view(*packet)), description->toValue(*packet));
    EXPECT_EQ(copyOf(description->view(*description->create())),
              description->toValue(*description->create()));
    ++records;
}

TEST(ValueView, ShowsEveryRecordAsItsCopy) {
    std::size_t records = 0;
    for (const auto& table : support::allTables())
        for (const auto& row : table.rows) {
            SCOPED_TRACE(std::string(table.type) + "." + std::string(row.name));
            expectSame(row.request, records);
            expectSame(row.reply, records);
        }
    EXPECT_GT(records, 100u);
}

TEST(ValueView, LooksIntoTheRecordItself) {
    dto::Base::HeaderStatusGetReply reply;
    reply.headers = {{"first", 1, 2, 3}, {"second", 4, 5, 6}};
    const auto view = viewRecord<dto::Base::HeaderStatusGetReply>(reply);
    const auto& record = std::get<ValueView::Record>(view.data);
    ASSERT_EQ(record.fields.size(), 2u);
    EXPECT_EQ(record.fields[0].name, "headers");
    const auto headers = std::get<ValueView::List>(record[0].data);
    ASSERT_EQ(headers.size, 2u);
    const auto second = std::get<ValueView::Record>(headers[1].data);
    EXPECT_EQ(std::get<std::string_view>(second[0].data).data(), reply.headers[1].name.data());
    EXPECT_EQ(std::get<std::uint64_t>(second[3].data), 6u);
}

} // namespace
