#include <algorithm>
#include <array>
#include <cstring>
#include <deque>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/wire/socket_transport.h>
#include <tests/support/exchange_fixture.h>
#include <tests/support/raw_server.h>

namespace {

using support::block;
using support::Bytes;
using support::joined;
using support::replyWith;
using support::result;
using support::u32;
using TAVO::TAVOXTranscode::Decoder;
using TAVO::TAVOXTranscode::Encoder;
namespace base = TAVO::TAVOXTranscode::base_v1_0;

struct FillRequest : TAVO::dto::request_packet {
    std::size_t size = 0;
    std::uint8_t filling = 0;
};

struct ContentReply : TAVO::dto::reply_packet {
    Bytes content;
};

Bytes filled(const FillRequest& request) { return Bytes(request.size, request.filling); }

const FillRequest& requestIn(const TAVO::dto::Params& params) {
    return dynamic_cast<const FillRequest&>(*params.request);
}

void packIntoALocalBuffer(TAVOX::OutputStream& out, const TAVO::dto::Params& params) {
    const auto local = filled(requestIn(params));
    out.writeBytes(local.size(), local.data());
}

/// One buffer for three runs, filled anew for each.
void packIntoOneBufferThreeTimes(TAVOX::OutputStream& out, const TAVO::dto::Params& params) {
    auto local = filled(requestIn(params));
    for (int i = 0; i < 3; ++i) {
        out.writeBytes(local.size(), local.data());
        std::ranges::fill(local, static_cast<std::uint8_t>(local[0] + 1));
    }
}

/// Hands a record of its own, which ends with this call, to the library's encoder.
void callTheLibrarysEncoder(TAVOX::OutputStream& out, const TAVO::dto::Params& params) {
    const auto local = filled(requestIn(params));
    TAVO::dto::Base::ReserveRequest record;
    record.first.assign(local.begin(), local.end());
    record.second = "x";
    base::encode_reserve(out, {std::shared_ptr<TAVO::dto::request_packet>(std::shared_ptr<void>(), &record)});
    std::ranges::fill(record.first, '!');
}

TAVO::dto::result contentOf(std::int32_t code, Bytes content) {
    auto reply = std::make_shared<ContentReply>();
    reply->content = std::move(content);
    return {code, std::move(reply)};
}

/// Looks at both views only when it has them both.
TAVO::dto::result keepTwoViews(TAVOX::InputStream& in) {
    const auto code = in.readInt32();
    const auto length = static_cast<std::uint32_t>(in.readInt32());
    const auto half = length / 2;
    const auto* first = in.readSpan(half);
    const auto* second = in.readSpan(length - half);
    Bytes content;
    if (first && second) {
        content.assign(first, first + half);
        content.insert(content.end(), second, second + (length - half));
    }
    return contentOf(code, std::move(content));
}

/// Reads all with a copy of the reader, then again with the reader itself.
TAVO::dto::result peekWithACopy(TAVOX::InputStream& in) {
    auto look = in;
    look.readInt32();
    const auto peekedLength = static_cast<std::uint32_t>(look.readInt32());
    const auto* peeked = look.readSpan(peekedLength);
    const Bytes seen = peeked ? Bytes(peeked, peeked + peekedLength) : Bytes();

    const auto code = in.readInt32();
    Bytes content(static_cast<std::uint32_t>(in.readInt32()));
    in.readRaw(content.data(), content.size());
    if (content != seen)
        throw std::runtime_error("the copy has read something else");
    return contentOf(code, std::move(content));
}

/// Lets the library's decoder read with a copy first.
TAVO::dto::result peekWithTheLibrarysDecoder(TAVOX::InputStream& in) {
    auto look = in;
    const auto peeked = base::decode_type(look);
    const auto outcome = base::decode_type(in);
    const auto& text = dynamic_cast<const TAVO::dto::Base::TypeReply&>(*outcome.reply).type;
    if (text != dynamic_cast<const TAVO::dto::Base::TypeReply&>(*peeked.reply).type)
        throw std::runtime_error("the copy has read something else");
    return contentOf(outcome.code, Bytes(text.begin(), text.end()));
}

struct OwnPair {
    const char* name;
    Encoder encoder;
    Decoder decoder;
    Bytes (*parameters)(const FillRequest&);
};

void PrintTo(const OwnPair& pair, std::ostream* out) { *out << pair.name; }

Bytes oneRun(const FillRequest& request) { return block(filled(request)); }

Bytes threeRuns(const FillRequest& request) {
    Bytes all;
    for (int i = 0; i < 3; ++i)
        all = joined(
            {std::move(all), block(Bytes(request.size, static_cast<std::uint8_t>(request.filling + i)))});
    return all;
}

Bytes reserveRecord(const FillRequest& request) {
    return joined({{0}, block(filled(request)), block({'x'})});
}

constexpr std::array pairs{
    OwnPair{"LocalBufferAndTwoViews", packIntoALocalBuffer, keepTwoViews, oneRun},
    OwnPair{"OneBufferAndAPeekingCopy", packIntoOneBufferThreeTimes, peekWithACopy, threeRuns},
    OwnPair{"LibrarysFunctionsWithin", callTheLibrarysEncoder, peekWithTheLibrarysDecoder, reserveRecord},
};

constexpr std::array<std::size_t, 5> sizes{1, 65535, 65536, 65537, std::size_t{1024} * 1024};

/// Functions of an application's own, in the middle of a batch of the library's: what they see and send is
/// the same at every size.
class OwnFunctions : public support::ExchangeFixture,
                     public testing::WithParamInterface<std::tuple<OwnPair, std::size_t>> {
protected:
    OwnFunctions() {
        device->appliance.add(8, "own").withoutListedMethods().listedMethod("fill", 0x31);
        own_.first["fill"] = std::get<OwnPair>(GetParam()).encoder;
        own_.second["fill"] = std::get<OwnPair>(GetParam()).decoder;
        ownObject_ = std::make_shared<TAVO::Object_v1_0>(device, "own", 8u, nullptr, own_.first, own_.second);
        for (const std::uint8_t filling : {std::uint8_t{0x11}, std::uint8_t{0x55}}) {
            auto request = std::make_shared<FillRequest>();
            request->size = size();
            request->filling = filling;
            requests_.push_back(request);
        }
        for (const auto& request : requests_)
            calls_.push_back(std::make_shared<TAVO::Method>("fill", *ownObject_, TAVO::dto::Params{request}));
    }

    static std::size_t size() { return std::get<std::size_t>(GetParam()); }
    static Bytes answer(std::size_t which) { return support::pattern(size() + which); }

    /// A large call of the library's own, the two, and a small one.
    Batch batch() { return {reserve(large_, ""), calls_[0], calls_[1], last_}; }

    Bytes expectedRequest() const {
        const auto& pair = std::get<OwnPair>(GetParam());
        const auto largeText = Bytes(large_.begin(), large_.end());
        const auto call = [](std::uint32_t instance, std::uint32_t method, const Bytes& parameters) {
            return joined({u32(instance), u32(method), block(parameters)});
        };
        return joined({u32(0), u32(4), call(7, 0x22, joined({{0}, block(largeText), u32(0)})),
                       call(8, 0x31, pair.parameters(*requests_[0])),
                       call(8, 0x31, pair.parameters(*requests_[1])), call(7, 0x21, {})});
    }

    static Bytes reply() {
        return replyWith(
            {result(0), result(1, block(answer(0))), result(2, block(answer(1))), typeResult("gauge")});
    }

    void expectAnswers() const {
        for (std::size_t i = 0; i < calls_.size(); ++i) {
            EXPECT_EQ(calls_[i]->returnCode(), static_cast<int>(i) + 1);
            const auto outcome = calls_[i]->getResult();
            const auto* content = dynamic_cast<const ContentReply*>(outcome.reply.get());
            ASSERT_NE(content, nullptr);
            EXPECT_TRUE(content->content == answer(i));
        }
        EXPECT_EQ(last_->value().type, "gauge");
    }

private:
    Tables own_;
    std::shared_ptr<TAVO::Object_v1_0> ownObject_;
    std::vector<std::shared_ptr<FillRequest>> requests_;
    std::vector<std::shared_ptr<TAVO::Method>> calls_;
    std::shared_ptr<TypeMethod> last_ = type();
    const std::string large_ = std::string(100'000, 'L');
};

TEST_P(OwnFunctions, AreServedAlikeOverMemory) {
    run(batch(), reply());
    EXPECT_TRUE(transport.sent == expectedRequest());
    expectAnswers();
}

TEST_P(OwnFunctions, AreServedAlikeOverASocket) {
    Bytes arrived;
    support::ScriptedServer server([&](support::RawListener& listener) {
        auto connection = listener.accept();
        arrived = connection.readRequest();
        connection.write(reply());
        connection.readToEnd();
    });
    {
        TAVO::SocketTransport socket("127.0.0.1", server.portText());
        TAVO::CallExchange overSocket(socket);
        overSocket.run(0, batch());
    }
    server.join();
    EXPECT_TRUE(arrived == expectedRequest());
    expectAnswers();
}

/// Notes where the bytes of a request lie.
class PlaceNotingTransport : public support::ScriptedTransport {
public:
    void send(const TAVOX::OutputStream::Chunks& chunks) override {
        for (const auto chunk : chunks)
            places.push_back(chunk.data());
        ScriptedTransport::send(chunks);
    }

    bool holds(const std::string& text) const {
        return std::ranges::count(places, reinterpret_cast<const std::uint8_t*>(text.data())) > 0;
    }

    std::vector<const std::uint8_t*> places;
};

class LentBlocks : public support::ExchangeFixture {
protected:
    std::shared_ptr<TAVO::Method> own(Encoder encoder) {
        tables.first["throwingDecoder"] = encoder;
        tables.second["throwingDecoder"] = TAVO::TAVOXTranscode::decodeStatus;
        return named("throwingDecoder");
    }

    static std::string& textOf(const TAVO::Method& method) {
        return dynamic_cast<TAVO::dto::Base::ReserveRequest&>(*method.getParams().request).first;
    }

    PlaceNotingTransport noting;
    TAVO::CallExchange exchangeNoted{noting};
    std::shared_ptr<TAVO::Method> large = reserve(std::string(100'000, 'L'), "");
};

TEST_F(LentBlocks, GoFromTheirRecordsWhereAllEncodersAreTheLibrarys) {
    noting.reply = replyWith({result(0), result(0), typeResult("gauge")});
    exchangeNoted.run(0, Batch{unreserve(), large, type()});
    EXPECT_TRUE(noting.holds(textOf(*large)));
}

TEST_F(LentBlocks, AreCopiedWhereAnyEncoderIsTheApplications) {
    for (const bool first : {true, false}) {
        const auto other = own([](TAVOX::OutputStream&, const TAVO::dto::Params&) {});
        noting.places.clear();
        const auto reply = replyWith({result(0), result(0)});
        noting.reply.insert(noting.reply.end(), reply.begin(), reply.end());
        exchangeNoted.run(0, first ? Batch{other, large} : Batch{large, other});
        EXPECT_FALSE(noting.holds(textOf(*large)));
    }
}

std::string* textToOverwrite = nullptr;

TEST_F(LentBlocks, DoNotShowWhatALaterEncoderMakesOfTheirRecords) {
    textToOverwrite = &textOf(*large);
    const auto overwriting = own([](TAVOX::OutputStream& out, const TAVO::dto::Params&) {
        std::ranges::fill(*textToOverwrite, '!');
        out.writeByte(1);
    });
    noting.reply = replyWith({result(0), result(0)});
    exchangeNoted.run(0, Batch{large, overwriting});
    const auto sentText =
        Bytes(noting.sent.begin() + 8 + 12 + 1 + 4, noting.sent.begin() + 8 + 12 + 1 + 4 + 100'000);
    EXPECT_TRUE(sentText == Bytes(100'000, 'L'));
}

std::deque<std::shared_ptr<TAVO::Method>>* queueToChange = nullptr;

/// A batch whose functions change the queue that it was made of.
class ChangedQueue : public LentBlocks {
protected:
    ChangedQueue() { queueToChange = &queue; }

    static void empty(TAVOX::OutputStream& out, const TAVO::dto::Params&) {
        queueToChange->clear();
        out.writeByte(1);
    }
    static void fill(TAVOX::OutputStream& out, const TAVO::dto::Params&) {
        for (int i = 0; i < 1000; ++i)
            queueToChange->push_front(nullptr);
        out.writeByte(1);
    }
    static TAVO::dto::result emptyWhileReading(TAVOX::InputStream& in) {
        queueToChange->clear();
        return TAVO::TAVOXTranscode::decodeStatus(in);
    }

    std::shared_ptr<TAVO::Method> both(Encoder encoder, Decoder decoder) {
        const auto method = own(encoder);
        tables.second["throwingDecoder"] = decoder;
        return named("throwingDecoder");
    }

    void expectThatAllIsDoneAsItWasQueued(const std::shared_ptr<TAVO::Method>& changing) {
        const auto first = type();
        const auto last = type();
        queue = {first, changing, last};
        transport.reply = replyWith({typeResult("first"), result(7), typeResult("last")});
        transport.received = 0;
        exchange.run(0, queue);
        EXPECT_EQ(first->value().type, "first");
        EXPECT_EQ(changing->returnCode(), 7);
        EXPECT_EQ(last->value().type, "last");
        EXPECT_EQ(transport.received, transport.reply.size());
    }

    std::deque<std::shared_ptr<TAVO::Method>> queue;
};

TEST_F(ChangedQueue, IsBuiltWithTheFunctionsThatTheTablesHaveThen) {
    const auto before = both(empty, TAVO::TAVOXTranscode::decodeStatus);
    const auto after = both(fill, emptyWhileReading);
    EXPECT_EQ(before->getEncoder(), empty);
    EXPECT_EQ(before->getDecoder(), TAVO::TAVOXTranscode::decodeStatus);
    EXPECT_EQ(after->getEncoder(), fill);
    EXPECT_EQ(after->getDecoder(), emptyWhileReading);
}

TEST_F(ChangedQueue, ChangesNothingOfTheExchangeThatRuns) {
    using TAVO::TAVOXTranscode::decodeStatus;
    using TAVO::TAVOXTranscode::encodeNothing;
    expectThatAllIsDoneAsItWasQueued(both(empty, decodeStatus));
    EXPECT_TRUE(queue.empty());
    expectThatAllIsDoneAsItWasQueued(both(fill, decodeStatus));
    EXPECT_EQ(queue.size(), 1003u);
    expectThatAllIsDoneAsItWasQueued(both(encodeNothing, emptyWhileReading));
    EXPECT_TRUE(queue.empty());
}

INSTANTIATE_TEST_SUITE_P(OfEverySize, OwnFunctions,
                         testing::Combine(testing::ValuesIn(pairs), testing::ValuesIn(sizes)),
                         [](const auto& test) {
                             return std::string(std::get<OwnPair>(test.param).name) + "_" +
                                    std::to_string(std::get<std::size_t>(test.param));
                         });

} // namespace
