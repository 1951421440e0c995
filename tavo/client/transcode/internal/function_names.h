#pragma once

#include <tavo/client/transcode/table.h>

/// TAVO_METHODS(get, set, ...) defines what a type's namespace declares for these Calls, in their order:
/// rows(), and the functions by name. Once in a namespace.
#define TAVO_METHODS(...)                                                                                    \
    constexpr auto table = tableOf(__VA_ARGS__);                                                             \
    MethodRows rows() noexcept { return table; }                                                             \
    TAVO_FUNCTION_NAMES(__VA_ARGS__)

/// TAVO_FUNCTION_NAMES(get, set, ...) defines references to the functions of these Calls: encode_get and
/// decode_get, encode_set and decode_set, ... Takes up to 64 Calls.
#define TAVO_FUNCTION_NAMES(...) TAVO_SCAN_64(TAVO_NAMES(__VA_ARGS__))

// A macro does not expand inside itself, so each scan handles one method and leaves the rest to the next.
#define TAVO_NAMES(method, ...)                                                                              \
    constinit EncoderFunction& encode_##method = encoderOf(method);                                          \
    constinit DecoderFunction& decode_##method =                                                             \
        decoderOf(method) __VA_OPT__(; TAVO_NAMES_LATER TAVO_NO_ARGUMENTS(__VA_ARGS__))
#define TAVO_NAMES_LATER() TAVO_NAMES
#define TAVO_NO_ARGUMENTS ()

#define TAVO_SCAN_64(...) TAVO_SCAN_16(TAVO_SCAN_16(TAVO_SCAN_16(TAVO_SCAN_16(__VA_ARGS__))))
#define TAVO_SCAN_16(...) TAVO_SCAN_4(TAVO_SCAN_4(TAVO_SCAN_4(TAVO_SCAN_4(__VA_ARGS__))))
#define TAVO_SCAN_4(...) TAVO_SCAN(TAVO_SCAN(TAVO_SCAN(TAVO_SCAN(__VA_ARGS__))))
#define TAVO_SCAN(...) __VA_ARGS__
