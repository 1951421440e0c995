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

constinit EncoderFunction& encode_headerStatusGet = encoderOf(table, "headerStatusGet");
constinit EncoderFunction& encode_headerStatusClear = encoderOf(table, "headerStatusClear");
constinit EncoderFunction& encode_enableGet = encoderOf(table, "enableGet");
constinit EncoderFunction& encode_enableSet = encoderOf(table, "enableSet");
constinit EncoderFunction& encode_iGet = encoderOf(table, "iGet");
constinit EncoderFunction& encode_iSet = encoderOf(table, "iSet");
constinit EncoderFunction& encode_oGet = encoderOf(table, "oGet");
constinit EncoderFunction& encode_ioGet = encoderOf(table, "ioGet");
constinit EncoderFunction& encode_ioSet = encoderOf(table, "ioSet");
constinit DecoderFunction& decode_headerStatusGet = decoderOf(table, "headerStatusGet");
constinit DecoderFunction& decode_headerStatusClear = decoderOf(table, "headerStatusClear");
constinit DecoderFunction& decode_enableGet = decoderOf(table, "enableGet");
constinit DecoderFunction& decode_enableSet = decoderOf(table, "enableSet");
constinit DecoderFunction& decode_iGet = decoderOf(table, "iGet");
constinit DecoderFunction& decode_iSet = decoderOf(table, "iSet");
constinit DecoderFunction& decode_oGet = decoderOf(table, "oGet");
constinit DecoderFunction& decode_ioGet = decoderOf(table, "ioGet");
constinit DecoderFunction& decode_ioSet = decoderOf(table, "ioSet");

} // namespace TAVO::TAVOXTranscode::headerStatus_v1_1
