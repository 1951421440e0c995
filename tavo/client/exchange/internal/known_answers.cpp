#include <tavo/client/exchange/internal/known_answers.h>

#include <utility>

#include <tavo/client/object/method.h>
#include <tavo/client/object/object.h>
#include <tavo/client/transcode/packet.h>

namespace TAVO {

namespace {

std::uint64_t keyOf(std::uint32_t instanceId, std::uint32_t methodId) {
    return std::uint64_t{instanceId} << 32 | methodId;
}

} // namespace

void KnownAnswers::add(std::uint32_t instanceId, std::uint32_t methodId, Bytes result) {
    size_ += result.size();
    results_.insert_or_assign(keyOf(instanceId, methodId), std::move(result));
}

const KnownAnswers::Bytes* KnownAnswers::find(const Method& method) const {
    // An encoder of the application's own may write parameters.
    if (!method.getObject() || method.getEncoder() != TAVOXTranscode::encodeNothing)
        return nullptr;
    return find(method.getObject()->getInstanceID(), method.getID());
}

const KnownAnswers::Bytes* KnownAnswers::find(std::uint32_t instanceId, std::uint32_t methodId) const {
    const auto found = results_.find(keyOf(instanceId, methodId));
    return found == results_.end() ? nullptr : &found->second;
}

} // namespace TAVO
