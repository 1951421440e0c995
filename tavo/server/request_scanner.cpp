#include <tavo/server/request_scanner.h>

#include <algorithm>

#include <tavo/client/wire/byte_order.h>

namespace TAVO::server {

namespace {

constexpr std::size_t requestHeadBytes = 8;
constexpr std::size_t headOfCallBytes = 12;

std::uint32_t wordAt(const std::vector<std::uint8_t>& bytes, std::size_t place) {
    return TAVOX::loadBigEndian<std::uint32_t>(bytes.data() + place);
}

} // namespace

bool RequestScanner::gather(std::span<const std::uint8_t>& bytes, std::size_t wanted) {
    const auto taken = bytes.first(std::min(bytes.size(), wanted - held_.size()));
    held_.insert(held_.end(), taken.begin(), taken.end());
    bytes = bytes.subspan(taken.size());
    return held_.size() == wanted;
}

void RequestScanner::endCall(RequestReceiver& receiver) {
    receiver.callEnds();
    part_ = --callsLeft_ > 0 ? Part::callHead : Part::end;
}

bool RequestScanner::proceed(std::span<const std::uint8_t>& bytes, RequestReceiver& receiver) {
    switch (part_) {
    case Part::head:
        receiver.headBytes(bytes.first(std::min(bytes.size(), requestHeadBytes - held_.size())),
                           held_.size());
        if (!gather(bytes, requestHeadBytes))
            return false;
        callsLeft_ = wordAt(held_, 4);
        part_ = callsLeft_ > 0 ? Part::callHead : Part::end;
        receiver.head(wordAt(held_, 0), callsLeft_);
        held_.clear();
        return true;
    case Part::callHead:
        if (!gather(bytes, headOfCallBytes))
            return false;
        parametersLeft_ = wordAt(held_, 8);
        part_ = Part::parameters;
        receiver.callBegins(wordAt(held_, 0), wordAt(held_, 4), parametersLeft_);
        held_.clear();
        if (parametersLeft_ == 0)
            endCall(receiver);
        return true;
    case Part::parameters: {
        if (bytes.empty())
            return false;
        const auto passed = bytes.first(std::min<std::size_t>(bytes.size(), parametersLeft_));
        receiver.parameterBytes(passed);
        bytes = bytes.subspan(passed.size());
        parametersLeft_ -= static_cast<std::uint32_t>(passed.size());
        if (parametersLeft_ == 0)
            endCall(receiver);
        return true;
    }
    case Part::end:
        break;
    }
    return false;
}

std::size_t RequestScanner::feed(std::span<const std::uint8_t> bytes, RequestReceiver& receiver) {
    const auto given = bytes.size();
    while (proceed(bytes, receiver))
        ;
    return given - bytes.size();
}

} // namespace TAVO::server
