#pragma once

/// Defines the references by which the functions of a Call go in the namespace of its type: encode_<method>
/// and decode_<method>.
#define TAVO_FUNCTION_NAMES(method)                                                                          \
    constinit EncoderFunction& encode_##method = encoderOf(method);                                          \
    constinit DecoderFunction& decode_##method = decoderOf(method)
