#include <tavo/trace/blanker.h>

#include <algorithm>
#include <stdexcept>

namespace TAVO::trace {

namespace {

constexpr std::size_t lockIdBytes = 4;
constexpr std::size_t longestLesson = std::size_t{16} << 20;

} // namespace

void Blanker::sent(std::span<std::uint8_t> bytes) {
    passing_ = bytes;
    scanner_.sent(bytes);
}

void Blanker::received(std::span<std::uint8_t> bytes) {
    passing_ = bytes;
    understood_ = 0;
    if (!isLost_)
        try {
            scanner_.received(bytes);
            return;
        } catch (const std::runtime_error&) { // the library says what it thinks of such a reply
            isLost_ = true;
        }
    // The library may go on with such a device, and nothing tells where the lock ids are from here on.
    blankOut(bytes.subspan(understood_));
}

void Blanker::blankOut(Bytes bytes) {
    std::fill_n(passing_.begin() + (bytes.data() - passing_.data()), bytes.size(), blank);
}

void Blanker::blankIn(Bytes bytes) {
    while (!bytes.empty()) {
        const auto run = secrets_.next(bytes);
        if (run.isSecret)
            blankOut(bytes.first(run.length));
        bytes = bytes.subspan(run.length);
    }
}

void Blanker::requestHeadBytes(Bytes bytes, std::size_t offset) {
    if (offset >= lockIdBytes)
        return;
    const auto ofLockId = bytes.first(std::min(bytes.size(), lockIdBytes - offset));
    const bool isNone =
        ofLockId.size() == lockIdBytes && std::ranges::all_of(ofLockId, [](auto byte) { return byte == 0; });
    if (!isNone)
        blankOut(ofLockId);
}

void Blanker::callBegins(const CallId& call, std::uint32_t) { secrets_ = secretParameters(names_, call); }

void Blanker::resultBegins(const CallId* call, std::uint32_t size) {
    secrets_ = call ? secretResult(names_, *call) : SecretFields();
    taught_.reset();
    if (call && size <= longestLesson && names_.teaches(*call))
        taught_ = *call;
}

void Blanker::resultBytes(Bytes bytes) {
    if (taught_)
        lesson_.insert(lesson_.end(), bytes.begin(), bytes.end());
    blankIn(bytes);
    understood_ = static_cast<std::size_t>(bytes.data() + bytes.size() - passing_.data());
}

void Blanker::resultEnds() {
    if (taught_)
        names_.learn(*taught_, lesson_);
    taught_.reset();
    lesson_.clear();
}

} // namespace TAVO::trace
