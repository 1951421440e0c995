#include <tests/hostile/reply_model.h>

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

namespace hostile {

namespace {

struct TooShort {};

/// Takes bytes from the front.
class Source {
public:
    explicit Source(std::span<const std::uint8_t> bytes)
        : bytes_(bytes) {}

    std::span<const std::uint8_t> take(std::size_t count) {
        if (count > bytes_.size())
            throw TooShort();
        const auto taken = bytes_.first(count);
        bytes_ = bytes_.subspan(count);
        return taken;
    }

    std::uint32_t number() {
        std::uint32_t value = 0;
        for (const auto byte : take(4))
            value = value << 8 | byte;
        return value;
    }

    std::uint64_t longNumber() {
        const std::uint64_t high = number();
        return high << 32 | number();
    }

    std::string block() {
        const auto taken = take(number());
        return {taken.begin(), taken.end()};
    }

    std::size_t left() const { return bytes_.size(); }

private:
    std::span<const std::uint8_t> bytes_;
};

/// Where the list ends whose bracket opens at `begin`.
std::size_t closingBracket(std::string_view form, std::size_t begin) {
    std::size_t depth = 0;
    for (auto i = begin;; ++i) {
        depth += form[i] == '[';
        depth -= form[i] == ']';
        if (depth == 0)
            return i;
    }
}

void readForm(Source& in, std::string_view form, Reading& reading) {
    for (std::size_t i = 0; i < form.size(); ++i) {
        if (form[i] == 'u') {
            reading.contents.number(in.number());
        } else if (form[i] == 'l') {
            reading.contents.number(in.longNumber());
        } else if (form[i] == 'b') {
            reading.contents.number(in.take(1)[0]);
        } else if (form[i] == 'f') {
            reading.contents.number(in.take(1)[0] ? 1 : 0);
        } else if (form[i] == 's') {
            reading.blocks.push_back(in.block());
            reading.contents.block(reading.blocks.back());
        } else {
            const auto end = closingBracket(form, i);
            const auto element = form.substr(i + 1, end - i - 1);
            const auto count = in.number();
            for (std::uint32_t done = 0; done < count; ++done)
                readForm(in, element, reading);
            reading.contents.number(count);
            i = end;
        }
    }
}

struct DeviceError {
    std::uint32_t code;
    std::string message;
};

DeviceError readError(std::span<const std::uint8_t> bytes) {
    Source in(bytes);
    in.number();
    const auto code = in.number();
    return {code, in.block()};
}

std::string outcomeOf(const DeviceError& error, std::uint32_t resultCount, const std::vector<Call>& calls) {
    if (error.code != 1006)
        return describe("Error", "Unknown error code: " + std::to_string(error.code) + ": " + error.message);
    const auto blamed = resultCount == 0 ? 0 : std::min<std::size_t>(resultCount, calls.size()) - 1;
    return describe("ExecutionError", "Failed to execute " + calls[blamed].fullName + ": " + error.message);
}

/// Reads one result; false when it is too short for what it must hold.
bool readResult(std::span<const std::uint8_t> bytes, const Call& call, Reading& reading) {
    auto read = reading;
    try {
        Source in(bytes);
        read.code = in.number();
        readForm(in, call.form, read);
    } catch (const TooShort&) {
        return false;
    }
    reading = std::move(read);
    ++reading.results;
    return true;
}

std::string outcomeOfReply(Source& in, const std::vector<Call>& calls, Reading& reading) {
    in.take(in.number());
    bool failed = false;
    DeviceError error{};
    if (const auto size = in.number()) {
        const auto bytes = in.take(size);
        failed = true;
        try {
            error = readError(bytes);
        } catch (const TooShort&) {
            return describe("Error", "Could not read Error from device");
        }
    }
    const auto count = in.number();
    if (!failed && count != calls.size())
        return describe("Error", "Error calling methods: received result count of " + std::to_string(count) +
                                     " expected count of " + std::to_string(calls.size()));
    while (reading.results < calls.size() && reading.results < count) {
        const auto& call = calls[reading.results];
        if (!readResult(in.take(in.number()), call, reading))
            return describe("SpecificationError",
                            "Error decoding TAVOX return values in call to " + call.fullName +
                                ": Could not read Result from device for method: " + call.fullName);
    }
    return failed ? outcomeOf(error, count, calls) : "ok";
}

} // namespace

Reading readingOf(const std::vector<Call>& calls, const Bytes& bytes) {
    Reading reading;
    Source in(bytes);
    try {
        reading.outcome = outcomeOfReply(in, calls, reading);
        reading.left = in.left();
    } catch (const TooShort&) {
        reading.outcome = closedEarly;
    }
    return reading;
}

} // namespace hostile
