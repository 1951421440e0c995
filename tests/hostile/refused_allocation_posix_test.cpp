#include <tests/hostile/refused_allocation.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include <tavo/client/exchange/call_exchange.h>
#include <tavo/client/object/method_tables.h>
#include <tavo/client/object/object.h>
#include <tavo/client/transcode/codec.h>
#include <tavo/client/transcode/device_tables.h>
#include <tavo/client/transcode/immortal.h>
#include <tavo/client/transcode/system_tables.h>
#include <tavo/client/wire/error.h>
#include <tests/support/fake_device.h>

namespace hostile {
namespace {

using support::block;
using support::Bytes;
using support::joined;
using support::replyWith;
using support::result;
using support::text;
using support::u32;

const std::string noMemory = "std::bad_alloc";

/// Yields prepared bytes, drops what is sent, and takes nothing from the heap.
class FrugalTransport final : public TAVO::Transport {
public:
    explicit FrugalTransport(const Bytes& reply)
        : reply_(reply) {}

    void send(const TAVOX::OutputStream::Chunks&) override { sent = true; }
    void receiveAll(std::uint8_t* buffer, std::uint64_t length) override {
        ASSERT_LE(length, reply_.size() - received);
        std::copy_n(reply_.begin() + static_cast<std::ptrdiff_t>(received), length, buffer);
        received += static_cast<std::size_t>(length);
    }

    bool sent = false;
    std::size_t received = 0;

private:
    const Bytes& reply_;
};

/// An object whose methods have names, parameters and results that do not fit into the strings themselves.
class RefusedAllocation : public testing::Test {
protected:
    static constexpr const char* longText = "a text that is longer than what a string holds in itself";

    RefusedAllocation() {
        auto& fake = device->appliance.add(0, "device");
        for (const auto* name : {"info", "reserve", "available"})
            fake.method(name);
        device->appliance.add(1, "system").method("firmwareUpdate");
        object = std::make_shared<TAVO::Object_v1_0>(
            device, "an object of a name that is long", 0u, nullptr,
            TAVO::immortal<const TAVO::TAVOXTranscode::device_v1_0::EncoderList>(),
            TAVO::immortal<const TAVO::TAVOXTranscode::device_v1_0::DecoderList>());
        system = std::make_shared<TAVO::Object_v1_0>(
            device, "system", 1u, nullptr,
            TAVO::immortal<const TAVO::TAVOXTranscode::system_v1_0::EncoderList>(),
            TAVO::immortal<const TAVO::TAVOXTranscode::system_v1_0::DecoderList>());
    }

    std::shared_ptr<TAVO::Method> info() const {
        return std::make_shared<TAVO::BoundMethod<TAVO::dto::Device::InfoReply>>("info", *object,
                                                                                 TAVO::dto::Params());
    }

    static Bytes infoResult(std::size_t length) {
        const std::string name(length, 'n');
        const auto version = joined({u32(1), u32(2), u32(3)});
        return result(0, joined({text(name), version, u32(1), text(longText), version, u32(1), text(longText),
                                 text(""), text(longText), text("")}));
    }
    static Bytes availableResult() { return result(0, joined({{1}, text(longText), text(longText)})); }

    /// Runs the batch over a reply with every allocation refused once.
    template <class MakeBatch, class Check>
    std::size_t refuseEachOf(const Bytes& reply, MakeBatch makeBatch, Check check) {
        bool sent = false;
        std::size_t received = 0, results = 0;
        return refuseEachAllocation(
            [&] {
                sent = false;
                received = results = 0;
                FrugalTransport transport(reply);
                TAVO::CallExchange exchange(transport);
                const auto batch = makeBatch();
                const auto note = [&] {
                    sent = transport.sent;
                    received = transport.received;
                    for (const auto& method : batch)
                        results += method->isResultSet();
                };
                try {
                    exchange.run(0, batch);
                } catch (...) {
                    note();
                    throw;
                }
                note();
            },
            [&](const Refusal& refusal) { check(refusal, sent, received, results); });
    }

    std::string decodingFailure(const std::string& method) const {
        return "Error decoding TAVOX return values in call to an object of a name that is long." + method +
               ": std::bad_alloc";
    }

    std::shared_ptr<support::FakeDevice> device = std::make_shared<support::FakeDevice>();
    std::shared_ptr<TAVO::Object_v1_0> object;
    std::shared_ptr<TAVO::Object_v1_0> system;
};

TEST_F(RefusedAllocation, InABatchEndsWithTheResultsBeforeItAndLosesNothing) {
    const auto reply =
        replyWith({availableResult(), result(0), infoResult(100), availableResult(), infoResult(200)});
    // Where each result ends.
    std::vector<std::size_t> ends{12};
    for (const auto& bytes :
         {availableResult(), result(0), infoResult(100), availableResult(), infoResult(200)})
        ends.push_back(ends.back() + block(bytes).size());
    const std::vector<std::string> names{"available", "reserve", "info", "available", "info"};

    std::size_t unsent = 0, beforeReceiving = 0, decoding = 0;
    const auto makeBatch = [&] {
        return std::vector<std::shared_ptr<TAVO::Method>>{object->getAvailableMethod(),
                                                          object->getReserveMethod(longText, longText),
                                                          info(), object->getAvailableMethod(), info()};
    };
    const auto count = refuseEachOf(
        reply, makeBatch, [&](const Refusal& refusal, bool sent, std::size_t received, std::size_t results) {
            if (!sent) {
                ++unsent;
                EXPECT_EQ(refusal.outcome, noMemory);
            } else if (received == 0) {
                ++beforeReceiving;
                EXPECT_EQ(refusal.outcome, noMemory);
                EXPECT_EQ(results, 0u);
            } else {
                ++decoding;
                ASSERT_LT(results, names.size());
                EXPECT_EQ(refusal.outcome, decodingFailure(names[results]));
                EXPECT_EQ(received, ends[results + 1]);
            }
        });
    EXPECT_EQ(unsent + beforeReceiving + decoding, count);
    EXPECT_GE(unsent, 5u);             // a Method each
    EXPECT_EQ(beforeReceiving, 1u);    // the buffer
    EXPECT_GE(decoding, 4u + 2u + 5u); // texts and lists; the thread may keep memory for the records
    RecordProperty("cases", static_cast<int>(count));
}

TEST_F(RefusedAllocation, LeavesAFormerResultInItsMethod) {
    const auto reply = replyWith({infoResult(100)});
    const auto former = std::make_shared<TAVO::dto::Device::InfoReply>();
    const auto method = info();
    const auto count = refuseEachAllocation(
        [&] {
            FrugalTransport transport(reply);
            TAVO::CallExchange exchange(transport);
            exchange.run(0, std::span(&method, 1));
            method->setResult({7, former});
        },
        [&](const Refusal&) {
            EXPECT_EQ(method->returnCode(), 7);
            EXPECT_EQ(method->getResult().reply, former);
        });
    EXPECT_GE(count, 6u);
    RecordProperty("cases", static_cast<int>(count));
}

TEST_F(RefusedAllocation, InTheErrorOfADeviceIsReportedInItsPlace) {
    std::size_t cases = 0;
    for (const std::uint32_t code : {1000u, 1001u, 1002u, 1006u, 1010u, 1013u}) {
        SCOPED_TRACE(code);
        const auto reply = support::errorReply(code, longText, {availableResult()});
        const auto results = [&] {
            return std::vector<std::shared_ptr<TAVO::Method>>{object->getAvailableMethod(), info()};
        };
        bool whole = false;
        const auto count = refuseEachAllocation(
            [&] {
                FrugalTransport transport(reply);
                TAVO::CallExchange exchange(transport);
                const auto batch = results();
                try {
                    exchange.run(0, batch);
                    ADD_FAILURE() << "the device's error is lost";
                } catch (const TAVO::Error& error) {
                    if (std::string(error.what()).find(longText) == std::string::npos)
                        throw;
                } catch (...) {
                    whole = whole || transport.received == reply.size();
                    throw;
                }
            },
            [&](const Refusal& refusal) {
                EXPECT_TRUE(refusal.outcome == noMemory || refusal.outcome == decodingFailure("available"));
            });
        EXPECT_TRUE(whole) << "no allocation was refused to the exception itself";
        EXPECT_GE(count, 8u);
        cases += count;
    }
    RecordProperty("cases", static_cast<int>(cases));
}

TEST_F(RefusedAllocation, InALargeReplyLeavesTheRestUnreadOrReadsItToItsEnd) {
    const auto reply = replyWith({infoResult(300 * 1000)});
    std::size_t decoding = 0;
    const auto count = refuseEachOf(
        reply, [&] { return std::vector<std::shared_ptr<TAVO::Method>>{info()}; },
        [&](const Refusal& refusal, bool sent, std::size_t received, std::size_t results) {
            EXPECT_EQ(results, 0u);
            if (refusal.outcome == noMemory) {
                EXPECT_TRUE(!sent || received < reply.size());
            } else {
                ++decoding;
                EXPECT_EQ(refusal.outcome, decodingFailure("info"));
                EXPECT_EQ(received, reply.size());
            }
        });
    EXPECT_GE(decoding, 3u);
    RecordProperty("cases", static_cast<int>(count));
}

TEST_F(RefusedAllocation, InALargeRequestSendsNothing) {
    const auto makeBatch = [&] {
        auto request = std::make_shared<TAVO::dto::system::FirmwareUpdateRequest>();
        request->image.resize(100 * 1000);
        std::vector<std::shared_ptr<TAVO::Method>> batch{
            std::make_shared<TAVO::Method>("firmwareUpdate", *system, TAVO::dto::Params{std::move(request)})};
        for (int i = 0; i < 80; ++i)
            batch.push_back(object->getReserveMethod(std::string(500, 'x'), ""));
        return batch;
    };
    auto reply = joined({u32(0), u32(0), u32(81)});
    for (int i = 0; i < 81; ++i)
        reply = joined({reply, block(result(0))});
    std::size_t refusedWriting = 0;
    const auto count = refuseEachOf(
        reply, makeBatch, [&](const Refusal& refusal, bool sent, std::size_t received, std::size_t) {
            if (refusal.outcome != noMemory) {
                ++refusedWriting;
                EXPECT_TRUE(refusal.outcome.starts_with("Error writing to output stream for method: "));
                EXPECT_FALSE(sent);
            }
            EXPECT_EQ(received, 0u);
        });
    EXPECT_GE(refusedWriting, 1u);
    RecordProperty("cases", static_cast<int>(count));
}

TEST_F(RefusedAllocation, InPrintingARecordIsReported) {
    const auto block = infoResult(100);
    TAVOX::InputStream in(block.data(), block.size());
    const auto outcome = TAVO::TAVOXTranscode::decodeReply<TAVO::dto::Device::InfoReply>(in);
    const auto& row = TAVO::describeMethod(*object, "info");
    const auto count = refuseEachAllocation(
        [&] {
            const auto printed = row.reply->toValue(*outcome.reply).toString();
            if (printed.find(longText) == std::string::npos)
                throw std::runtime_error("the text is missing");
        },
        [&](const Refusal& refusal) { EXPECT_EQ(refusal.outcome, noMemory); });
    EXPECT_GE(count, 10u);
    RecordProperty("cases", static_cast<int>(count));
}

TEST_F(RefusedAllocation, InAFieldReadFromDataIsReported) {
    const auto block = infoResult(100);
    TAVOX::InputStream in(block.data(), block.size());
    const auto outcome = TAVO::TAVOXTranscode::decodeReply<TAVO::dto::Device::InfoReply>(in);
    const auto& row = TAVO::describeMethod(*object, "info");
    const auto value = row.reply->toValue(*outcome.reply);
    const auto count =
        refuseEachAllocation([&] { row.reply->fromValue(value, *row.reply->create()); },
                             [&](const Refusal& refusal) { EXPECT_EQ(refusal.outcome, noMemory); });
    EXPECT_GE(count, 5u);
    RecordProperty("cases", static_cast<int>(count));
}

} // namespace
} // namespace hostile
