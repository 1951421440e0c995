#include <tavo/client/transcode/base_tables.h>

#include <tavo/client/transcode/immortal.h>
#include <tavo/client/transcode/internal/brief_methods.h>
#include <tavo/client/transcode/internal/function_names.h>
#include <tavo/client/transcode/internal/record_functions.h>
#include <tavo/client/transcode/table.h>

namespace TAVO::TAVOXTranscode::base_v1_0 {

constexpr MethodRow table[] = {
    rowOf(type),
    rowOf(version),
    rowOf(members),
    {methods.name, encodeNothing, decodeBriefMethods, nullptr, &briefMethodsDescription},
    rowOf(methodsVerbose),
    rowOf(available),
    rowOf(reserve),
    rowOf(unreserve),
};

MethodRows rows() noexcept { return table; }

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

void EncoderList::enter(MethodRows entered) {
    rememberRecordFunctions(entered);
    for (const auto& method : entered)
        (*this)[std::string(method.name)] = method.encoder;
}

void DecoderList::enter(MethodRows entered) {
    rememberRecordFunctions(entered);
    for (const auto& method : entered)
        (*this)[std::string(method.name)] = method.decoder;
}

const EncoderList& encoders() noexcept { return immortal<const EncoderList>(); }
const DecoderList& decoders() noexcept { return immortal<const DecoderList>(); }

TAVO_FUNCTION_NAMES(type, version, members, methodsVerbose, available, reserve, unreserve);
constinit EncoderFunction& encode_methods = encodeNothing;
constinit DecoderFunction& decode_methods = decodeBriefMethods;

} // namespace TAVO::TAVOXTranscode::base_v1_0
