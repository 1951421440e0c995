#include <tavo/server/reply_scanner.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

#include <tavo/client/wire/byte_order.h>
#include <tavo/client/wire/input_stream.h>

namespace TAVO::server {

namespace {

constexpr std::uint32_t longestBlockOfHead = 1u << 20;

std::uint32_t requireSensible(std::uint32_t size) {
    if (size > longestBlockOfHead)
        throw std::runtime_error("the head of a reply announces " + std::to_string(size) + " bytes");
    return size;
}

ErrorFrame parseError(std::span<const std::uint8_t> bytes) {
    TAVOX::InputStream in(bytes.data(), bytes.size());
    ErrorFrame error;
    error.position = static_cast<std::uint32_t>(in.readInt32());
    error.code = static_cast<std::uint32_t>(in.readInt32());
    const auto length = static_cast<std::uint32_t>(in.readInt32());
    const auto* message = in.readSpan(length);
    if (in.failed())
        throw std::runtime_error("the error of a reply is cut short");
    error.message.assign(message, message + length);
    return error;
}

} // namespace

bool ReplyScanner::gather(std::span<const std::uint8_t>& bytes, std::size_t wanted) {
    const auto taken = bytes.first(std::min(bytes.size(), wanted - held_.size()));
    held_.insert(held_.end(), taken.begin(), taken.end());
    bytes = bytes.subspan(taken.size());
    return held_.size() == wanted;
}

std::optional<std::uint32_t> ReplyScanner::word(std::span<const std::uint8_t>& bytes) {
    if (!gather(bytes, sizeof(std::uint32_t)))
        return std::nullopt;
    const auto value = TAVOX::loadBigEndian<std::uint32_t>(held_.data());
    held_.clear();
    return value;
}

std::size_t ReplyScanner::feed(std::span<const std::uint8_t> bytes, ReplyReceiver& receiver) {
    const auto given = bytes.size();
    while (proceed(bytes, receiver))
        ;
    return given - bytes.size();
}

bool ReplyScanner::proceed(std::span<const std::uint8_t>& bytes, ReplyReceiver& receiver) {
    switch (part_) {
    case Part::resultSize:
        if (const auto size = word(bytes)) {
            beginResult(*size, receiver);
            return true;
        }
        return false;
    case Part::result:
        if (bytes.empty())
            return false;
        passResult(bytes, receiver);
        return true;
    case Part::end:
        return false;
    default:
        return proceedInHead(bytes, receiver);
    }
}

bool ReplyScanner::proceedInHead(std::span<const std::uint8_t>& bytes, ReplyReceiver& receiver) {
    if (part_ == Part::status || part_ == Part::error) {
        if (!gather(bytes, wanted_))
            return false;
        if (part_ == Part::status)
            status_ = std::exchange(held_, {});
        else if (wanted_ > 0)
            error_ = parseError(std::exchange(held_, {}));
        part_ = part_ == Part::status ? Part::errorSize : Part::resultCount;
        return true;
    }
    const auto number = word(bytes);
    if (!number)
        return false;
    if (part_ == Part::resultCount) {
        resultsLeft_ = *number;
        receiver.head(status_, error_, *number);
        part_ = resultsLeft_ > 0 ? Part::resultSize : Part::end;
    } else {
        wanted_ = requireSensible(*number);
        part_ = part_ == Part::statusSize ? Part::status : Part::error;
    }
    return true;
}

void ReplyScanner::beginResult(std::uint32_t size, ReplyReceiver& receiver) {
    receiver.resultBegins(size);
    resultLeft_ = size;
    part_ = Part::result;
    if (size == 0)
        endResult(receiver);
}

void ReplyScanner::passResult(std::span<const std::uint8_t>& bytes, ReplyReceiver& receiver) {
    const auto passed = bytes.first(std::min<std::size_t>(bytes.size(), resultLeft_));
    receiver.resultBytes(passed);
    bytes = bytes.subspan(passed.size());
    resultLeft_ -= static_cast<std::uint32_t>(passed.size());
    if (resultLeft_ == 0)
        endResult(receiver);
}

void ReplyScanner::endResult(ReplyReceiver& receiver) {
    receiver.resultEnds();
    part_ = --resultsLeft_ > 0 ? Part::resultSize : Part::end;
}

} // namespace TAVO::server
