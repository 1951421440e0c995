#include <tavo/client/exchange/call_exchange.h>

#include <algorithm>
#include <exception>
#include <optional>
#include <string>
#include <utility>

#include <tavo/client/object/device.h>
#include <tavo/client/object/object.h>
#include <tavo/client/transcode/internal/failed_field.h>
#include <tavo/client/transcode/internal/record_functions.h>
#include <tavo/client/wire/error.h>

namespace TAVO {

namespace {

struct DeviceError {
    std::uint32_t code = 0;
    std::string message;
};

void writeCall(TAVOX::OutputStream& out, const Object_v1_0& object, const Method& method) {
    out.writeUInt32(object.getInstanceID());
    out.writeUInt32(method.getID());
    out.beginSizedBlock();
    try {
        method.getEncoder()(out, method.getParams());
    } catch (const std::exception& failure) {
        throw SpecificationError("Error encoding TAVOX parameters in call to " + method.getFullName() + ": " +
                                 failure.what());
    }
    out.endSizedBlock();
    if (out.failed())
        throw Error("Error writing to output stream for method: " + method.getFullName());
}

using Batch = std::span<const std::shared_ptr<Method>>;

/// Vouches for a batch whose encoders are all the library's own: others might change a record before the
/// request has been sent.
class RecordLender final : public TAVOX::Lender {
public:
    explicit RecordLender(Batch batch)
        : batch_(batch) {}

    bool answersForRuns() noexcept override {
        return std::ranges::all_of(batch_, [](const auto& method) {
            return method && TAVOXTranscode::isRecordEncoder(method->getEncoder());
        });
    }

private:
    Batch batch_;
};

[[noreturn]] void throwDeviceError(const DeviceError& error, std::uint32_t resultCount, Batch batch) {
    ErrorFacts facts{.origin = ErrorOrigin::device, .deviceErrorCode = error.code};
    switch (error.code) {
    case 1000:
        throw withFacts(ConfigurationError(error.message), facts);
    case 1001:
        throw withFacts(LockError(error.message), facts);
    case 1002:
    case 1003:
    case 1004:
    case 1005:
        throw withFacts(SpecificationError(error.message), facts);
    case 1006: {
        if (batch.empty())
            throw withFacts(Error(error.message), facts);
        const auto blamed = std::clamp<std::size_t>(resultCount, 1, batch.size()) - 1;
        facts.method = batch[blamed]->getFullName();
        throw withFacts(ExecutionError(batch[blamed], blamed, error.message), facts);
    }
    case 1013:
        throw withFacts(TAVOLoginError(error.message), facts);
    default:
        throw withFacts(Error("Unknown error code: " + std::to_string(error.code) + ": " + error.message),
                        facts);
    }
}

/// A result that is read while it arrives, so that large blocks are received straight into the record.
class ArrivingResult final : public TAVOX::InputSource {
public:
    ArrivingResult(Transport& transport, ReplyBuffer& buffer)
        : transport_(transport)
        , buffer_(buffer) {}

    std::span<const std::uint8_t> gather(std::uint64_t count) override {
        failed_ = true;
        const auto bytes = buffer_.receive(transport_, count);
        failed_ = false;
        return bytes;
    }
    void receive(std::uint8_t* destination, std::uint64_t count) override {
        failed_ = true;
        buffer_.receiveInto(transport_, destination, count);
        failed_ = false;
    }

    /// Whether the exception that ended the reading came from here.
    bool hasFailed() const { return failed_; }

private:
    Transport& transport_;
    ReplyBuffer& buffer_;
    bool failed_ = false;
};

[[noreturn]] void refuse(const Method& method, const std::string& fault, ErrorFacts facts = {}) {
    throw withFacts(SpecificationError("Error decoding TAVOX return values in call to " +
                                       method.getFullName() + ": " + fault),
                    std::move(facts));
}

dto::result decoded(const Method& method, TAVOX::InputStream& in) {
    try {
        return method.getDecoder()(in);
    } catch (const std::exception& failure) {
        refuse(method, failure.what());
    }
}

void store(Method& method, const TAVOX::InputStream& in, dto::result&& outcome) {
    if (!in.failed()) {
        method.setResult(std::move(outcome));
        return;
    }
    ErrorFacts facts;
    if (TAVOXTranscode::isRecordDecoder(method.getDecoder())) {
        facts.offset = in.failedAt();
        facts.field =
            TAVOXTranscode::fieldAt(in.failedAt(), outcome, TAVOXTranscode::recordOf(method.getDecoder()));
    }
    refuse(method, "Could not read Result from device for method: " + method.getFullName(), std::move(facts));
}

/// Reads the parts of one reply, in their order.
class Reply {
public:
    /// @param isRead becomes true once the last result has been received.
    Reply(Transport& transport, ReplyBuffer& buffer, bool& isRead)
        : transport_(transport)
        , buffer_(buffer)
        , isRead_(isRead) {}

    std::uint32_t number(const char* what, const Method* method = nullptr) {
        TAVOX::InputStream in = block(4);
        const auto value = static_cast<std::uint32_t>(in.readInt32());
        if (in.failed())
            throw Error(what + (method ? method->getFullName() : std::string()));
        return value;
    }

    void skipStatus() { buffer_.discard(transport_, number("Could not read Status count from device")); }

    std::optional<DeviceError> error() {
        const auto size = number("Could not read Error count from device");
        if (size == 0)
            return std::nullopt;
        TAVOX::InputStream in = block(size);
        in.readInt32();
        DeviceError error;
        error.code = static_cast<std::uint32_t>(in.readInt32());
        const auto length = static_cast<std::uint32_t>(in.readInt32());
        if (const auto* text = in.readSpan(length))
            error.message.assign(reinterpret_cast<const char*>(text), length);
        if (in.failed())
            throw Error("Could not read Error from device");
        return error;
    }

    /// Announces how many results follow.
    void expectResults(std::uint32_t count) {
        unread_ = count;
        isRead_ = count == 0;
    }
    bool hasMore() const { return unread_ > 0; }

    void result(Method& method) {
        const auto size = number("Could not read Result Size from device for method: ", &method);
        if (size > largestWhole && TAVOXTranscode::isRecordDecoder(method.getDecoder()))
            arrivingResult(method, size);
        else
            wholeResult(method, size);
    }

private:
    /// Larger results are read while they arrive, but only by the library's own decoders: an application's
    /// may keep views or copy the reader, which needs a whole block.
    static constexpr std::uint32_t largestWhole = 64 * 1024;

    void wholeResult(Method& method, std::uint32_t size) {
        TAVOX::InputStream in = block(size);
        countResult();
        store(method, in, decoded(method, in));
    }

    void arrivingResult(Method& method, std::uint32_t size) {
        ArrivingResult source(transport_, buffer_);
        TAVOX::InputStream in(source, size);
        dto::result outcome;
        try {
            outcome = method.getDecoder()(in);
        } catch (const std::exception& failure) {
            if (source.hasFailed())
                throw;
            takeRest(in);
            refuse(method, failure.what());
        }
        takeRest(in);
        store(method, in, std::move(outcome));
    }

    /// Drops what the decoder left unread, which completes the result.
    void takeRest(const TAVOX::InputStream& in) {
        buffer_.discard(transport_, in.remaining() - in.arrived());
        countResult();
    }

    void countResult() { isRead_ = --unread_ == 0; }

    TAVOX::InputStream block(std::uint32_t length) {
        const auto bytes = buffer_.receive(transport_, length);
        return {bytes.data(), bytes.size()};
    }

    Transport& transport_;
    ReplyBuffer& buffer_;
    bool& isRead_;
    std::uint32_t unread_ = 0;
};

} // namespace

const Object_v1_0& CallExchange::addressee(const std::shared_ptr<Method>& method) const {
    if (!method)
        throw Error("NULL method found in multicall queue");
    const auto* object = method->getObject();
    if (!object)
        throw SpecificationError("Method does not belong to a remote object: " + method->getFullName());
    if (owner_ && object->deviceAddress_ != owner_)
        if (const auto other = object->device()) {
            const auto& device = *other;
            if (typeid(device) == *kind_)
                throw SpecificationError("Method belongs to another device: " + method->getFullName());
        }
    return *object;
}

/// How far an exchange has come.
struct CallExchange::Progress {
    const Method* at = nullptr; ///< the Method in work; null between them
};

void CallExchange::addFacts(Error& failure, const Method* concerned) const {
    auto facts = failure.facts();
    facts.connectionUsable = facts.connectionUsable && inStep_;
    if (concerned && facts.method.empty())
        facts.method = concerned->getFullName();
    failure.setFacts(std::move(facts));
}

void CallExchange::run(std::uint32_t lockId, Batch batch) {
    Progress progress;
    try {
        converse(lockId, batch, progress);
    } catch (Error& failure) {
        addFacts(failure, progress.at || batch.size() != 1 ? progress.at : batch.front().get());
        throw;
    }
}

void CallExchange::answer(const std::shared_ptr<Method>& method, std::span<const std::uint8_t> result) const {
    try {
        static_cast<void>(addressee(method));
        TAVOX::InputStream in(result.data(), result.size());
        store(*method, in, decoded(*method, in));
    } catch (Error& failure) {
        addFacts(failure, method.get());
        throw;
    }
}

void CallExchange::converse(std::uint32_t lockId, Batch batch, Progress& progress) {
    {
        TAVOX::OutputStream request(spareChunks_);
        RecordLender lender(batch);
        request.takeLentRuns(lender);
        request.writeUInt32(lockId);
        request.writeUInt32(static_cast<std::uint32_t>(batch.size()));
        for (const auto& method : batch) {
            progress.at = method.get();
            const auto& object = addressee(method);
            writeCall(request, object, *method);
        }
        progress.at = nullptr;
        inStep_ = false;
        transport_->send(request.chunks());
    }

    // However the exchange ends, what was received is taken, and large blocks are given back.
    const auto settle = [this](ReplyBuffer* buffer) { buffer->settle(*transport_); };
    const std::unique_ptr<ReplyBuffer, decltype(settle)> settledAtEnd(&buffer_, settle);

    Reply reply(*transport_, buffer_, inStep_);
    reply.skipStatus();
    const auto error = reply.error();
    const auto resultCount = reply.number("Could not read Result Count from device");
    if (!error && resultCount != batch.size())
        throw Error("Error calling methods: received result count of " + std::to_string(resultCount) +
                    " expected count of " + std::to_string(batch.size()));
    reply.expectResults(resultCount);
    for (const auto& method : batch) {
        if (!reply.hasMore())
            break;
        progress.at = method.get();
        reply.result(*method);
    }
    progress.at = nullptr;
    if (error)
        throwDeviceError(*error, resultCount, batch);
}

void CallExchange::run(std::uint32_t lockId, const std::deque<std::shared_ptr<Method>>& batch) {
    constexpr std::size_t mostKept = 4096;
    auto copy = std::exchange(spareBatch_, {});
    const auto giveBack = [&](auto* used) {
        used->clear();
        if (used->capacity() <= mostKept)
            spareBatch_ = std::move(*used);
    };
    const std::unique_ptr<decltype(copy), decltype(giveBack)> giveBackAtEnd(&copy, giveBack);
    copy.assign(batch.begin(), batch.end());
    run(lockId, Batch(copy));
}

} // namespace TAVO
