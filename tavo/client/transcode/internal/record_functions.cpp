#include <tavo/client/transcode/internal/record_functions.h>

#include <map>
#include <mutex>
#include <set>

#include <tavo/client/transcode/immortal.h>

namespace TAVO::TAVOXTranscode {

namespace {

struct RecordFunctions {
    std::mutex mutex;
    std::set<Encoder> encoders{encodeNothing};
    std::map<Decoder, const ReplyDescription*> decoders{{decodeStatus, nullptr}};
};

} // namespace

void rememberRecordFunctions(MethodRows rows) {
    auto& known = immortal<RecordFunctions>();
    const std::lock_guard lock(known.mutex);
    for (const auto& row : rows) {
        if (row.request && row.request->function == row.encoder)
            known.encoders.insert(row.encoder);
        if (row.reply && row.reply->function == row.decoder)
            known.decoders[row.decoder] = row.reply;
    }
}

bool isRecordEncoder(Encoder encoder) noexcept {
    auto& known = immortal<RecordFunctions>();
    const std::lock_guard lock(known.mutex);
    return known.encoders.contains(encoder);
}

bool isRecordDecoder(Decoder decoder) noexcept {
    auto& known = immortal<RecordFunctions>();
    const std::lock_guard lock(known.mutex);
    return known.decoders.contains(decoder);
}

const ReplyDescription* recordOf(Decoder decoder) noexcept {
    auto& known = immortal<RecordFunctions>();
    const std::lock_guard lock(known.mutex);
    const auto found = known.decoders.find(decoder);
    return found == known.decoders.end() ? nullptr : found->second;
}

} // namespace TAVO::TAVOXTranscode
