#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include <tavo/client/exchange/call_exchange.h>
#include <tavo/client/object/object.h>
#include <tavo/client/wire/byte_order.h>
#include <tavo/client/wire/error.h>
#include <tests/fuzz/fuzz_input.h>
#include <tests/fuzz/method_choice.h>
#include <tests/support/allocation_meter.h>
#include <tests/support/fake_device.h>
#include <tests/support/scripted_transport.h>

// The reply of one exchange, against a second reading of its frame. Input: the number of calls (0 to 15), the
// number of the row of each (2 bytes), then the whole reply.

namespace {

using fuzz::Bytes;
using fuzz::require;
using fuzz::View;
using Batch = std::vector<std::shared_ptr<TAVO::Method>>;

/// An object that has the methods of all tables, each by the number of its row.
class Everything {
public:
    Everything() {
        auto& fake = device_->appliance.add(7, "everything");
        for (std::size_t i = 0; i < fuzz::allRows().size(); ++i) {
            const auto& row = *fuzz::allRows()[i].row;
            fake.listedMethod(std::to_string(i), static_cast<std::uint32_t>(100 + i));
            encoders_[std::to_string(i)] = row.encoder;
            decoders_[std::to_string(i)] = row.decoder;
        }
        object_ =
            std::make_shared<TAVO::Object_v1_0>(device_, "everything", 7u, nullptr, encoders_, decoders_);
    }

    std::shared_ptr<TAVO::Method> method(std::size_t number) const {
        const auto index = number % fuzz::allRows().size();
        TAVO::dto::Params params;
        if (const auto* request = fuzz::allRows()[index].row->request)
            params.request = request->create();
        return std::make_shared<TAVO::Method>(std::to_string(index), *object_, params);
    }

private:
    std::shared_ptr<support::FakeDevice> device_ = std::make_shared<support::FakeDevice>();
    TAVO::Object_v1_0::EncoderList encoders_;
    TAVO::Object_v1_0::DecoderList decoders_;
    std::shared_ptr<TAVO::Object_v1_0> object_;
};

/// How an exchange must end.
struct Ending {
    const std::type_info* exception = nullptr;
    std::string text;
    /// How many Methods have a result.
    std::size_t results = 0;
};

/// Reads a reply as docs/protocol.md describes it.
class Expectation {
public:
    Expectation(const Batch& batch, View reply)
        : batch_(batch)
        , rest_(reply) {}

    Ending ending() {
        try {
            run();
        } catch (const Ending& thrown) {
            return {thrown.exception, thrown.text.c_str(), results_}; // what() ends at a zero byte
        }
        return {nullptr, "", results_};
    }

private:
    template <class Exception>
    [[noreturn]] static void end(const std::string& text) {
        throw Ending{&typeid(Exception), text, 0};
    }

    View bytes(std::size_t count) {
        if (rest_.size() < count)
            end<TAVO::NetworkError>("closed");
        const auto head = rest_.first(count);
        rest_ = rest_.subspan(count);
        return head;
    }
    std::uint32_t number() { return TAVOX::loadBigEndian<std::uint32_t>(bytes(4).data()); }

    void run() {
        bytes(number());
        std::optional<std::pair<std::uint32_t, std::string>> error;
        if (const auto size = number(); size > 0)
            error = errorIn(bytes(size));
        const auto count = number();
        if (!error && count != batch_.size())
            end<TAVO::Error>("Error calling methods: received result count of " + std::to_string(count) +
                             " expected count of " + std::to_string(batch_.size()));
        for (; results_ < std::min<std::size_t>(count, batch_.size()); ++results_)
            checkResult(*batch_[results_], bytes(number()));
        if (error)
            endWith(error->first, error->second, count);
    }

    static std::pair<std::uint32_t, std::string> errorIn(View block) {
        if (block.size() < 12 || block.size() - 12 < TAVOX::loadBigEndian<std::uint32_t>(block.data() + 8))
            end<TAVO::Error>("Could not read Error from device");
        const auto length = TAVOX::loadBigEndian<std::uint32_t>(block.data() + 8);
        return {TAVOX::loadBigEndian<std::uint32_t>(block.data() + 4),
                fuzz::textOf(block.subspan(12, length))};
    }

    static void checkResult(const TAVO::Method& method, View block) {
        TAVOX::InputStream in(block.data(), block.size());
        static_cast<void>(method.getDecoder()(in));
        if (in.failed())
            end<TAVO::SpecificationError>(
                "Error decoding TAVOX return values in call to " + method.getFullName() +
                ": Could not read Result from device for method: " + method.getFullName());
    }

    [[noreturn]] void endWith(std::uint32_t code, const std::string& message, std::uint32_t count) const {
        switch (code) {
        case 1000:
            end<TAVO::ConfigurationError>(message);
        case 1001:
            end<TAVO::LockError>("The device is locked by " + message);
        case 1002:
        case 1003:
        case 1004:
        case 1005:
            end<TAVO::SpecificationError>(message);
        case 1006: {
            if (batch_.empty())
                end<TAVO::Error>(message);
            const auto blamed = std::clamp<std::size_t>(count, 1, batch_.size()) - 1;
            end<TAVO::ExecutionError>("Failed to execute " + batch_[blamed]->getFullName() + ": " + message);
        }
        case 1013:
            end<TAVO::TAVOLoginError>(message);
        default:
            end<TAVO::Error>("Unknown error code: " + std::to_string(code) + ": " + message);
        }
    }

    const Batch& batch_;
    View rest_;
    std::size_t results_ = 0;
};

Ending endingOf(TAVO::CallExchange& exchange, const Batch& batch) {
    Ending ending;
    try {
        exchange.run(0, batch);
    } catch (const TAVO::Error& error) {
        ending.exception = &typeid(error);
        ending.text = error.what();
    }
    while (ending.results < batch.size() && batch[ending.results]->isResultSet())
        ++ending.results;
    for (auto i = ending.results; i < batch.size(); ++i)
        require(!batch[i]->isResultSet() && batch[i]->returnCode() == -1 && !batch[i]->getResult().reply,
                "no result is set behind the first that is missing");
    return ending;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
    static const Everything object;
    fuzz::Input input(bytes, length);
    Batch batch;
    for (auto count = input.byte() % 16; count > 0; --count)
        batch.push_back(object.method(input.word()));
    const auto reply = input.rest();

    const auto expected = Expectation(batch, reply).ending();
    support::ScriptedTransport transport({reply.begin(), reply.end()});
    TAVO::CallExchange exchange(transport);
    const support::AllocationMeter meter;
    const auto ending = endingOf(exchange, batch);
    require(meter.largest() <= 64 * 1024 + 128 * length, "memory follows the bytes that came");
    require((ending.exception == nullptr) == (expected.exception == nullptr) &&
                (!ending.exception || *ending.exception == *expected.exception),
            "the exchange ends with the exception that the reply calls for", ending.text);
    require(ending.text == expected.text, "the exception has its text", ending.text + " != " + expected.text);
    require(ending.results == expected.results, "the results before a failure are stored");
    return 0;
}
