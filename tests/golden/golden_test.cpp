#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/object/method_tables.h>
#include <tests/support/all_types.h>
#include <tests/support/allocation_meter.h>
#include <tests/support/golden_vectors.h>
#include <tests/support/output_chunks.h>
#include <tests/support/value_json.h>

namespace {

using support::GoldenReply;
using support::GoldenRequest;
using support::GoldenVector;
using support::written;
using Bytes = std::vector<std::uint8_t>;
using TAVO::TAVOXTranscode::MethodRow;
using TAVO::TAVOXTranscode::RecordDescription;
using TAVOX::InputStream;
using TAVOX::OutputStream;

InputStream readerOf(const Bytes& bytes) { return {bytes.data(), bytes.size()}; }

// An own block for each prefix, so that a sanitizer sees a read behind its end.
Bytes prefixOf(const Bytes& bytes, std::size_t length) {
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length)};
}

template <class Packet>
std::shared_ptr<Packet> made(const RecordDescription<Packet>& description, const nlohmann::json& record) {
    auto packet = description.create();
    description.fromValue(support::valueIn(record), *packet);
    return packet;
}

template <class Packet>
nlohmann::json jsonOf(const RecordDescription<Packet>* description, const std::shared_ptr<Packet>& packet) {
    return packet ? support::toJson(description->toValue(*packet)) : nlohmann::json();
}

template <class Packet>
void expectSurvivesValue(const RecordDescription<Packet>& description, const nlohmann::json& record) {
    const auto value = description.toValue(*made(description, record));
    auto copy = description.create();
    description.fromValue(value, *copy);
    EXPECT_EQ(description.toValue(*copy), value);
    EXPECT_EQ(support::toJson(value), record);
}

/// The vectors of one type and version, together with the rows of its methods.
class Golden : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override { file_ = support::loadGoldenFile(GetParam()); }

    TAVO::TAVOXTranscode::MethodRows rows() const { return support::rowsOf(file_.type, file_.version); }

    template <class Check>
    void forEachVector(Check check) const {
        for (const auto& vector : file_.vectors) {
            SCOPED_TRACE(vector.method + ": " + vector.name);
            const auto row = std::find_if(rows().begin(), rows().end(), [&](const auto& candidate) {
                return candidate.name == vector.method;
            });
            ASSERT_NE(row, rows().end()) << "there is no such method";
            check(*row, vector);
        }
    }

    template <class Check>
    void forEachRequest(Check check) const {
        forEachVector([&](const MethodRow& row, const GoldenVector& vector) {
            if (!vector.request)
                return;
            ASSERT_EQ(vector.request->record.is_null(), row.request == nullptr);
            check(row, *vector.request);
        });
    }

    template <class Check>
    void forEachReply(Check check) const {
        forEachVector([&](const MethodRow& row, const GoldenVector& vector) {
            if (!vector.reply)
                return;
            ASSERT_EQ(vector.reply->record.is_null(), row.reply == nullptr);
            check(row, *vector.reply);
        });
    }

private:
    support::GoldenFile file_;
};

TEST_P(Golden, RequestsAndRepliesCoverEveryMethod) {
    std::set<std::string> methods;
    for (const auto& row : rows())
        methods.emplace(row.name);
    std::set<std::string> withRequest;
    std::set<std::string> withReply;
    forEachVector([&](const MethodRow&, const GoldenVector& vector) {
        if (vector.request)
            withRequest.insert(vector.method);
        if (vector.reply)
            withReply.insert(vector.method);
    });
    EXPECT_EQ(withRequest, methods);
    EXPECT_EQ(withReply, methods);
}

TEST_P(Golden, RequestsAreEncodedAsTheirBytesAndNothingElse) {
    forEachRequest([](const MethodRow& row, const GoldenRequest& golden) {
        TAVO::dto::Params params;
        if (row.request)
            params.request = made(*row.request, golden.record);
        OutputStream out;
        row.encoder(out, params);
        EXPECT_EQ(written(out), golden.bytes);
        EXPECT_EQ(out.total(), golden.bytes.size());
        EXPECT_FALSE(out.failed());
    });
}

TEST_P(Golden, RequestsAreReadFromTheirBytes) {
    forEachRequest([](const MethodRow& row, const GoldenRequest& golden) {
        if (!row.request)
            return;
        auto in = readerOf(golden.bytes);
        auto packet = row.request->create();
        row.request->read(in, *packet);
        EXPECT_FALSE(in.failed());
        EXPECT_EQ(in.remaining(), 0u);
        EXPECT_EQ(jsonOf(row.request, packet), golden.record);
    });
}

TEST_P(Golden, RequestsFailTheReaderWhereverTheyAreCut) {
    forEachRequest([](const MethodRow& row, const GoldenRequest& golden) {
        for (std::size_t length = 0; length < golden.bytes.size(); ++length) {
            SCOPED_TRACE("cut after " + std::to_string(length) + " bytes");
            const auto bytes = prefixOf(golden.bytes, length);
            auto in = readerOf(bytes);
            auto packet = row.request->create();
            row.request->read(in, *packet);
            EXPECT_TRUE(in.failed());
        }
    });
}

TEST_P(Golden, RequestsSurviveTheWayThroughValue) {
    forEachRequest([](const MethodRow& row, const GoldenRequest& golden) {
        if (row.request)
            expectSurvivesValue(*row.request, golden.record);
    });
}

TEST_P(Golden, RepliesAreDecodedToTheirCodeAndRecord) {
    forEachReply([](const MethodRow& row, const GoldenReply& golden) {
        auto in = readerOf(golden.bytes);
        const auto result = row.decoder(in);
        EXPECT_EQ(result.code, golden.code);
        EXPECT_EQ(jsonOf(row.reply, result.reply), golden.record);
        EXPECT_FALSE(in.failed());
        EXPECT_EQ(in.remaining(), 0u);
    });
}

TEST_P(Golden, RepliesFailTheReaderWhereverTheyAreCut) {
    forEachReply([](const MethodRow& row, const GoldenReply& golden) {
        for (std::size_t length = 0; length < golden.bytes.size(); ++length) {
            SCOPED_TRACE("cut after " + std::to_string(length) + " bytes");
            const auto bytes = prefixOf(golden.bytes, length);
            auto in = readerOf(bytes);
            const support::AllocationMeter meter;
            const auto result = row.decoder(in);
            // The record itself, and as much again for each byte that could be an element.
            EXPECT_LT(meter.largest(), 200 + 100 * golden.bytes.size());
            EXPECT_TRUE(in.failed());
            EXPECT_EQ(result.reply == nullptr, row.reply == nullptr);
        }
    });
}

TEST_P(Golden, RepliesLeaveFurtherBytesUnread) {
    forEachReply([](const MethodRow& row, const GoldenReply& golden) {
        auto bytes = golden.bytes;
        bytes.insert(bytes.end(), {0xff, 0xff, 0xff, 0xff, 0xff});
        auto in = readerOf(bytes);
        const auto result = row.decoder(in);
        EXPECT_EQ(result.code, golden.code);
        EXPECT_EQ(jsonOf(row.reply, result.reply), golden.record);
        EXPECT_FALSE(in.failed());
        EXPECT_EQ(in.remaining(), 5u);
    });
}

TEST_P(Golden, RepliesAreWrittenAsTheirBytes) {
    forEachReply([](const MethodRow& row, const GoldenReply& golden) {
        OutputStream out;
        out.writeUInt32(static_cast<std::uint32_t>(golden.code));
        if (row.reply)
            row.reply->write(out, *made(*row.reply, golden.record));
        EXPECT_EQ(written(out), golden.writtenBytes);
    });
}

TEST_P(Golden, RepliesSurviveTheWayThroughValue) {
    forEachReply([](const MethodRow& row, const GoldenReply& golden) {
        if (row.reply)
            expectSurvivesValue(*row.reply, golden.record);
    });
}

std::string testName(const testing::TestParamInfo<std::string>& info) {
    auto name = info.param;
    std::replace(name.begin(), name.end(), '.', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Files, Golden, testing::ValuesIn(support::goldenFileNames()), testName);

TEST(GoldenFiles, AreThereForEveryTypeWithMethodsAndForNothingElse) {
    std::multiset<std::string> described;
    for (const auto& name : support::goldenFileNames()) {
        const auto file = support::loadGoldenFile(name);
        described.insert(file.type + " " + file.version);
    }
    std::multiset<std::string> expected;
    for (const auto& table : support::allTables())
        if (!table.rows.empty())
            expected.insert(std::string(table.type) + " " + std::string(table.version));
    EXPECT_EQ(described, expected);
}

} // namespace
