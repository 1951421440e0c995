#include <algorithm>
#include <cctype>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include <tavo/cli/json_value.h>
#include <tavo/client/method_tables.h>
#include <tests/support/allocation_meter.h>
#include <tests/support/golden_vectors.h>

namespace {

using support::GoldenVector;
using TAVO::TAVOXTranscode::Bytes;
using TAVO::TAVOXTranscode::MethodRow;
using TAVO::TAVOXTranscode::RecordDescription;
using TAVOX::InputStream;
using TAVOX::OutputStream;

const MethodRow* findRow(const GoldenVector& vector) {
    for (const auto& row : TAVO::methodRows(vector.type, vector.version))
        if (row.name == vector.method)
            return &row;
    return nullptr;
}

Bytes written(const OutputStream& out) {
    Bytes bytes;
    for (const auto chunk : out.chunks())
        bytes.insert(bytes.end(), chunk.begin(), chunk.end());
    return bytes;
}

InputStream readerOf(const Bytes& bytes) { return {bytes.data(), bytes.size()}; }

// An own block for each prefix, so that a sanitizer sees a read behind its end.
Bytes prefixOf(const Bytes& bytes, std::size_t length) {
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length)};
}

template <class Packet>
std::shared_ptr<Packet> made(const RecordDescription<Packet>& description, const nlohmann::json& record) {
    auto packet = description.create();
    description.fromValue(TAVO::cli::fromJson(record), *packet);
    return packet;
}

template <class Packet>
nlohmann::json jsonOf(const RecordDescription<Packet>* description, const std::shared_ptr<Packet>& packet) {
    return packet ? TAVO::cli::toJson(description->toValue(*packet)) : nlohmann::json();
}

class Golden : public testing::TestWithParam<GoldenVector> {
protected:
    void SetUp() override {
        row_ = findRow(GetParam());
        ASSERT_TRUE(row_) << "no table has this method";
    }

    const MethodRow& row() const { return *row_; }

private:
    const MethodRow* row_ = nullptr;
};

class GoldenRequest : public Golden {
protected:
    const support::GoldenRequest& golden() const { return *GetParam().request; }
};

class GoldenReply : public Golden {
protected:
    const support::GoldenReply& golden() const { return *GetParam().reply; }
};

TEST_P(GoldenRequest, IsEncodedAsItsBytesAndNothingElse) {
    ASSERT_EQ(golden().record.is_null(), row().request == nullptr);
    TAVO::dto::Params params;
    if (row().request)
        params.request = made(*row().request, golden().record);
    OutputStream out;
    row().encoder(out, params);
    EXPECT_EQ(written(out), golden().bytes);
    EXPECT_EQ(out.total(), golden().bytes.size());
    EXPECT_FALSE(out.failed());
}

TEST_P(GoldenRequest, IsReadFromItsBytes) {
    if (!row().request) {
        EXPECT_TRUE(golden().bytes.empty());
        return;
    }
    auto in = readerOf(golden().bytes);
    auto packet = row().request->create();
    row().request->read(in, *packet);
    EXPECT_FALSE(in.failed());
    EXPECT_EQ(in.remaining(), 0u);
    EXPECT_EQ(jsonOf(row().request, packet), golden().record);
}

TEST_P(GoldenRequest, FailsTheReaderWhereverItIsCut) {
    for (std::size_t length = 0; length < golden().bytes.size(); ++length) {
        SCOPED_TRACE("cut after " + std::to_string(length) + " bytes");
        const auto bytes = prefixOf(golden().bytes, length);
        auto in = readerOf(bytes);
        auto packet = row().request->create();
        row().request->read(in, *packet);
        EXPECT_TRUE(in.failed());
    }
}

TEST_P(GoldenRequest, SurvivesTheWayThroughValue) {
    if (!row().request)
        return;
    const auto value = row().request->toValue(*made(*row().request, golden().record));
    auto copy = row().request->create();
    row().request->fromValue(value, *copy);
    EXPECT_EQ(row().request->toValue(*copy), value);
    EXPECT_EQ(TAVO::cli::toJson(value), golden().record);
}

TEST_P(GoldenReply, IsDecodedToItsCodeAndRecord) {
    ASSERT_EQ(golden().record.is_null(), row().reply == nullptr);
    auto in = readerOf(golden().bytes);
    const auto result = row().decoder(in);
    EXPECT_EQ(result.code, golden().code);
    EXPECT_EQ(jsonOf(row().reply, result.reply), golden().record);
    EXPECT_FALSE(in.failed());
    EXPECT_EQ(in.remaining(), 0u);
}

TEST_P(GoldenReply, FailsTheReaderWhereverItIsCut) {
    for (std::size_t length = 0; length < golden().bytes.size(); ++length) {
        SCOPED_TRACE("cut after " + std::to_string(length) + " bytes");
        const auto bytes = prefixOf(golden().bytes, length);
        auto in = readerOf(bytes);
        const support::AllocationMeter meter;
        const auto result = row().decoder(in);
        // The record itself, and as much again for each byte that could be an element.
        EXPECT_LT(meter.largest(), 200 + 100 * golden().bytes.size());
        EXPECT_TRUE(in.failed());
        EXPECT_EQ(result.reply == nullptr, row().reply == nullptr);
    }
}

TEST_P(GoldenReply, LeavesFurtherBytesUnread) {
    auto bytes = golden().bytes;
    bytes.insert(bytes.end(), {0xff, 0xff, 0xff, 0xff, 0xff});
    auto in = readerOf(bytes);
    const auto result = row().decoder(in);
    EXPECT_EQ(result.code, golden().code);
    EXPECT_EQ(jsonOf(row().reply, result.reply), golden().record);
    EXPECT_FALSE(in.failed());
    EXPECT_EQ(in.remaining(), 5u);
}

TEST_P(GoldenReply, IsWrittenAsItsBytes) {
    OutputStream out;
    out.writeUInt32(static_cast<std::uint32_t>(golden().code));
    if (row().reply)
        row().reply->write(out, *made(*row().reply, golden().record));
    EXPECT_EQ(written(out), golden().writtenBytes);
}

TEST_P(GoldenReply, SurvivesTheWayThroughValue) {
    if (!row().reply)
        return;
    const auto value = row().reply->toValue(*made(*row().reply, golden().record));
    auto copy = row().reply->create();
    row().reply->fromValue(value, *copy);
    EXPECT_EQ(row().reply->toValue(*copy), value);
    EXPECT_EQ(TAVO::cli::toJson(value), golden().record);
}

template <class Condition>
std::vector<GoldenVector> vectorsWith(Condition condition) {
    auto vectors = support::loadGoldenVectors();
    std::erase_if(vectors, [&](const auto& vector) { return !condition(vector); });
    return vectors;
}

std::string testName(const testing::TestParamInfo<GoldenVector>& info) {
    const auto& vector = info.param;
    auto name = vector.type + "_" + vector.version + "_" + vector.method + "_" + vector.name;
    for (auto& c : name)
        if (!std::isalnum(static_cast<unsigned char>(c)))
            c = '_';
    return name;
}

INSTANTIATE_TEST_SUITE_P(Vectors, GoldenRequest, testing::ValuesIn(vectorsWith([](const auto& vector) {
                             return vector.request.has_value();
                         })),
                         testName);

INSTANTIATE_TEST_SUITE_P(Vectors, GoldenReply, testing::ValuesIn(vectorsWith([](const auto& vector) {
                             return vector.reply.has_value();
                         })),
                         testName);

using MethodNames = std::map<std::pair<std::string, std::string>, std::set<std::string>>;

MethodNames namesOfVectors(const std::vector<GoldenVector>& vectors) {
    MethodNames names;
    for (const auto& vector : vectors)
        names[{vector.type, vector.version}].insert(vector.method);
    return names;
}

MethodNames namesOfTables() {
    MethodNames names;
    for (const auto& table : TAVO::objectTables())
        for (const auto& row : table.rows)
            names[{std::string(table.type), std::string(table.version)}].insert(std::string(row.name));
    return names;
}

TEST(GoldenVectors, HoldARequestForEveryMethodAndForNothingElse) {
    const auto requests = vectorsWith([](const auto& vector) { return vector.request.has_value(); });
    EXPECT_EQ(namesOfVectors(requests), namesOfTables());
}

TEST(GoldenVectors, HoldAReplyForEveryMethodAndForNothingElse) {
    const auto replies = vectorsWith([](const auto& vector) { return vector.reply.has_value(); });
    EXPECT_EQ(namesOfVectors(replies), namesOfTables());
}

} // namespace
