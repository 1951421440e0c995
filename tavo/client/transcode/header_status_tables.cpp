#include <tavo/client/transcode/header_status_tables.h>

namespace TAVO::TAVOXTranscode::headerStatus_v1_1 {

namespace {

using namespace dto::Header;

constexpr MethodRow table[] = {
    row<None, dto::Base::HeaderStatusGetReply>("headerStatusGet"),
    row<None, None>("headerStatusClear"),
    row<None, EnableGetReply>("enableGet"),
    row<EnableSetRequest, None>("enableSet"),
    row<None, iGetReply>("iGet"),
    row<iSetRequest, None>("iSet"),
    row<None, oGetReply>("oGet"),
    row<None, IoGetReply>("ioGet"),
    row<IoSetRequest, None>("ioSet"),
};

} // namespace

MethodRows rows() noexcept { return table; }

EncoderFunction& encode_headerStatusGet = encoderOf(table, "headerStatusGet");
EncoderFunction& encode_headerStatusClear = encoderOf(table, "headerStatusClear");
EncoderFunction& encode_enableGet = encoderOf(table, "enableGet");
EncoderFunction& encode_enableSet = encoderOf(table, "enableSet");
EncoderFunction& encode_iGet = encoderOf(table, "iGet");
EncoderFunction& encode_iSet = encoderOf(table, "iSet");
EncoderFunction& encode_oGet = encoderOf(table, "oGet");
EncoderFunction& encode_ioGet = encoderOf(table, "ioGet");
EncoderFunction& encode_ioSet = encoderOf(table, "ioSet");
DecoderFunction& decode_headerStatusGet = decoderOf(table, "headerStatusGet");
DecoderFunction& decode_headerStatusClear = decoderOf(table, "headerStatusClear");
DecoderFunction& decode_enableGet = decoderOf(table, "enableGet");
DecoderFunction& decode_enableSet = decoderOf(table, "enableSet");
DecoderFunction& decode_iGet = decoderOf(table, "iGet");
DecoderFunction& decode_iSet = decoderOf(table, "iSet");
DecoderFunction& decode_oGet = decoderOf(table, "oGet");
DecoderFunction& decode_ioGet = decoderOf(table, "ioGet");
DecoderFunction& decode_ioSet = decoderOf(table, "ioSet");

} // namespace TAVO::TAVOXTranscode::headerStatus_v1_1
