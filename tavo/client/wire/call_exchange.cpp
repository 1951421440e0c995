#include <tavo/client/wire/call_exchange.h>

#include <algorithm>
#include <exception>
#include <optional>
#include <string>
#include <utility>

#include <tavo/client/object/object.h>
#include <tavo/client/wire/error.h>

namespace TAVO {

namespace {

struct DeviceError {
    std::uint32_t code = 0;
    std::string message;
};

void writeCall(TAVOX::OutputStream& out, const std::shared_ptr<Method>& method) {
    if (!method)
        throw Error("NULL method found in multicall queue");
    const auto* object = method->getObject();
    if (!object)
        throw SpecificationError("Method does not belong to a remote object: " + method->getFullName());
    out.writeUInt32(object->getInstanceID());
    out.writeUInt32(method->getID());
    out.beginSizedBlock();
    try {
        method->getEncoder()(out, method->getParams());
    } catch (const std::exception& failure) {
        throw SpecificationError("Error encoding TAVOX parameters in call to " + method->getFullName() +
                                 ": " + failure.what());
    }
    out.endSizedBlock();
    if (out.failed())
        throw Error("Error writing to output stream for method: " + method->getFullName());
}

template <class Batch>
[[noreturn]] void throwDeviceError(const DeviceError& error, std::uint32_t resultCount, const Batch& batch) {
    switch (error.code) {
    case 1000:
        throw ConfigurationError(error.message);
    case 1001:
        throw LockError(error.message);
    case 1002:
    case 1003:
    case 1004:
    case 1005:
        throw SpecificationError(error.message);
    case 1006: {
        if (batch.empty())
            throw Error(error.message);
        const auto blamed = std::clamp<std::size_t>(resultCount, 1, batch.size()) - 1;
        throw ExecutionError(batch[blamed], blamed, error.message);
    }
    case 1013:
        throw TAVOLoginError(error.message);
    default:
        throw Error("Unknown error code: " + std::to_string(error.code) + ": " + error.message);
    }
}

/// A result that is read while it arrives, so that what it holds can be received where it belongs.
class ArrivingResult final : public TAVOX::InputSource {
public:
    ArrivingResult(Transport& transport, ReplyBuffer& buffer)
        : transport_(transport)
        , buffer_(buffer) {}

    std::span<const std::uint8_t> gather(std::uint64_t count) noexcept override {
        std::span<const std::uint8_t> bytes;
        attempt([&] { bytes = buffer_.receive(transport_, count); });
        return bytes;
    }
    bool receive(std::uint8_t* destination, std::uint64_t count) noexcept override {
        return attempt([&] { transport_.receiveAll(destination, count); });
    }

    /// Receives what the decoder left.
    /// @throws what failed while it read.
    void finish(const TAVOX::InputStream& in) {
        if (failure_)
            std::rethrow_exception(failure_);
        buffer_.discard(transport_, in.remaining() - in.arrived());
    }

private:
    template <class Action>
    bool attempt(Action action) noexcept {
        try {
            action();
        } catch (...) {
            failure_ = std::current_exception();
        }
        return !failure_;
    }

    Transport& transport_;
    ReplyBuffer& buffer_;
    std::exception_ptr failure_;
};

/// Frames one reply.
class Reply {
public:
    Reply(Transport& transport, ReplyBuffer& buffer)
        : transport_(transport)
        , buffer_(buffer) {}

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

    void result(Method& method) {
        const auto size = number("Could not read Result Size from device for method: ", &method);
        if (size > largestWhole) {
            arrivingResult(method, size);
            return;
        }
        TAVOX::InputStream in = block(size);
        decode(method, in, [&] { return method.getDecoder()(in); });
    }

private:
    /// Results up to this size are received as a whole before they are decoded.
    static constexpr std::uint32_t largestWhole = 64 * 1024;

    template <class Decoding>
    static void decode(Method& method, const TAVOX::InputStream& in, Decoding decoding) {
        try {
            auto outcome = decoding();
            if (in.failed())
                throw Error("Could not read Result from device for method: " + method.getFullName());
            method.setResult(std::move(outcome));
        } catch (const std::exception& failure) {
            throw SpecificationError("Error decoding TAVOX return values in call to " + method.getFullName() +
                                     ": " + failure.what());
        }
    }

    void arrivingResult(Method& method, std::uint32_t size) {
        ArrivingResult source(transport_, buffer_);
        TAVOX::InputStream in(source, size);
        dto::result outcome;
        std::exception_ptr refusal;
        try {
            outcome = method.getDecoder()(in);
        } catch (...) {
            refusal = std::current_exception();
        }
        source.finish(in);
        decode(method, in, [&] {
            if (refusal)
                std::rethrow_exception(refusal);
            return std::move(outcome);
        });
    }

    TAVOX::InputStream block(std::uint32_t length) {
        const auto bytes = buffer_.receive(transport_, length);
        return {bytes.data(), bytes.size()};
    }

    Transport& transport_;
    ReplyBuffer& buffer_;
};

} // namespace

template <class Batch>
void CallExchange::runBatch(std::uint32_t lockId, const Batch& batch) {
    {
        TAVOX::OutputStream request;
        request.borrowLongRuns(); // the records, which the Methods hold, lie still until the request is sent
        request.writeUInt32(lockId);
        request.writeUInt32(static_cast<std::uint32_t>(batch.size()));
        for (const auto& method : batch)
            writeCall(request, method);
        transport_.send(request.chunks());
    }

    // Large blocks are given back however the exchange ends.
    const auto shrink = [](ReplyBuffer* buffer) { buffer->shrink(); };
    const std::unique_ptr<ReplyBuffer, decltype(shrink)> shrinkAtEnd(&buffer_, shrink);

    Reply reply(transport_, buffer_);
    reply.skipStatus();
    const auto error = reply.error();
    const auto resultCount = reply.number("Could not read Result Count from device");
    if (!error && resultCount != batch.size())
        throw Error("Error calling methods: received result count of " + std::to_string(resultCount) +
                    " expected count of " + std::to_string(batch.size()));
    auto unread = resultCount;
    for (const auto& method : batch)
        if (unread-- > 0)
            reply.result(*method);
        else
            break;
    if (error)
        throwDeviceError(*error, resultCount, batch);
}

void CallExchange::run(std::uint32_t lockId, std::span<const std::shared_ptr<Method>> batch) {
    runBatch(lockId, batch);
}

void CallExchange::run(std::uint32_t lockId, const std::deque<std::shared_ptr<Method>>& batch) {
    runBatch(lockId, batch);
}

} // namespace TAVO
