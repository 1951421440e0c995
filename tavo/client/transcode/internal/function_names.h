#pragma once

/// TAVO_FUNCTION_NAMES(get, set, ...) defines the references by which the functions of these Calls go in the
/// namespace of their type: encode_get and decode_get, encode_set and decode_set, ... 64 at most.
#define TAVO_FUNCTION_NAMES(...) TAVO_SCAN_64(TAVO_NAMES(__VA_ARGS__))

// A macro is not expanded inside itself: each further scan takes one more method off the list.
#define TAVO_NAMES(method, ...)                                                                              \
    constinit EncoderFunction& encode_##method = encoderOf(method);                                          \
    constinit DecoderFunction& decode_##method = decoderOf(method);                                          \
    __VA_OPT__(TAVO_NAMES_LATER TAVO_NO_ARGUMENTS(__VA_ARGS__))
#define TAVO_NAMES_LATER() TAVO_NAMES
#define TAVO_NO_ARGUMENTS ()

#define TAVO_SCAN_64(...) TAVO_SCAN_16(TAVO_SCAN_16(TAVO_SCAN_16(TAVO_SCAN_16(__VA_ARGS__))))
#define TAVO_SCAN_16(...) TAVO_SCAN_4(TAVO_SCAN_4(TAVO_SCAN_4(TAVO_SCAN_4(__VA_ARGS__))))
#define TAVO_SCAN_4(...) TAVO_SCAN(TAVO_SCAN(TAVO_SCAN(TAVO_SCAN(__VA_ARGS__))))
#define TAVO_SCAN(...) __VA_ARGS__
