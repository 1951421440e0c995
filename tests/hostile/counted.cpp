#include <tests/hostile/counted.h>

namespace hostile {

namespace {

// A reply has 12 bytes in front of its results, each result has 8 in front of its fields, a text or a list 4
// in front of its content; an entry of a list of names takes 8 and the name.
//
// A small reply is cut at every byte, a large one as cutPositions() says: at three positions for each field
// that is chosen, fewer where fields are short and so their positions meet, and at one for each 4099 bytes
// within a long field.
//
// Wrong replies: three for each 0 among the sizes and counts that are chosen, four for each 1, five for each
// other number; and four more for each that lies within a result.
constexpr CountedPlace allPlaces[] = {
    // serial
    {0, 0, "device.methods", 137, 137, 96},
    {0, 1, "device.type", 30, 30, 24},
    {0, 2, "device.version", 32, 32, 15},
    {0, 3, "device.methods", 137, 137, 96},
    {0, 4, "device.members", 24, 24, 22},
    {0, 5, "device.getKey", 40, 40, 24},
    {0, 6, "device.lock", 24, 24, 15},
    {0, 7, "private.methods", 51, 51, 42},
    {0, 8, "private.type", 31, 31, 24},
    {0, 9, "private.methods", 51, 51, 42},
    {0, 10, "private.members", 24, 24, 22},
    {0, 11, "system.methods", 66, 66, 51},
    {0, 12, "system.type", 30, 30, 24},
    {0, 13, "system.version", 32, 32, 15},
    {0, 14, "system.methods", 66, 66, 51},
    {0, 15, "system.members", 24, 24, 22},
    {0, 16, "device.rootMembers", 36, 36, 32},
    {0, 17, "uart.methods", 135, 135, 96},
    {0, 18, "uart.type", 27, 27, 24},
    {0, 19, "uart.version", 32, 32, 15},
    {0, 20, "uart.methods", 135, 135, 96},
    {0, 21, "uart.members", 24, 24, 22},
    {0, 22, "batch", 168, 168, 65},
    {0, 23, "faulty", 58, 58, 51},
    {0, 24, "device.info", 86, 86, 79},
    {0, 25, "device.unlock", 20, 20, 15},
    // bench
    {1, 16, "device.rootMembers", 46, 46, 42},
    {1, 17, "rig.methods", 51, 51, 42},
    {1, 18, "rig.type", 28, 28, 24},
    {1, 19, "rig.methods", 51, 51, 42},
    {1, 20, "rig.members", 37, 37, 32},
    {1, 21, "rig.shelf.methods", 51, 51, 42},
    {1, 22, "rig.shelf.type", 24, 24, 22},
    {1, 23, "rig.shelf.methods", 51, 51, 42},
    {1, 24, "rig.shelf.members", 47, 47, 42},
    {1, 25, "rig.shelf.port.methods", 83, 83, 60},
    {1, 26, "rig.shelf.port.type", 27, 27, 24},
    {1, 27, "rig.shelf.port.version", 32, 32, 15},
    {1, 28, "rig.shelf.port.methods", 83, 83, 60},
    {1, 29, "rig.shelf.port.members", 24, 24, 22},
    {1, 30, "rig.shelf.i2c.methods", 89, 89, 60},
    {1, 31, "rig.shelf.i2c.type", 27, 27, 24},
    {1, 32, "rig.shelf.i2c.version", 32, 32, 15},
    {1, 33, "rig.shelf.i2c.methods", 89, 89, 60},
    {1, 34, "rig.shelf.i2c.members", 24, 24, 22},
    {1, 35, "lpc.methods", 90, 90, 60},
    {1, 36, "lpc.type", 27, 27, 24},
    {1, 37, "lpc.version", 32, 32, 15},
    {1, 38, "lpc.methods", 90, 90, 60},
    {1, 39, "lpc.members", 66, 66, 42},
    {1, 40, "lpc.lpcRomEmulation.methods", 66, 66, 51},
    {1, 41, "lpc.lpcRomEmulation.type", 39, 39, 24},
    {1, 42, "lpc.lpcRomEmulation.version", 32, 32, 15},
    {1, 43, "lpc.lpcRomEmulation.methods", 66, 66, 51},
    {1, 44, "lpc.lpcRomEmulation.members", 24, 24, 22},
    {1, 45, "lpc.lpcPostCode.methods", 98, 98, 69},
    {1, 46, "lpc.lpcPostCode.type", 35, 35, 24},
    {1, 47, "lpc.lpcPostCode.version", 32, 32, 15},
    {1, 48, "lpc.lpcPostCode.methods", 98, 98, 69},
    {1, 49, "lpc.lpcPostCode.members", 24, 24, 22},
    {1, 50, "survey", 139, 139, 172},
    {1, 51, "refused", 96, 96, 116},
    {1, 52, "lpc.lpcPostCode.fifoGet", 46, 46, 24},
    // large_text
    {2, 17, "device.available", 70038, 48, 33},
    // large_bytes
    {3, 17, "device.login", 70024, 41, 24},
    // large_numbers
    {4, 22, "fifo.fifoGet", 67124, 84, 24},
    // large_records
    {5, 17, "device.info", 68171, 165, 217},
    // large_nested
    {6, 22, "i2c.headerStatusGet", 83599, 100, 112},
    // large_batch
    {7, 17, "large batch", 271140, 158, 104},
    // large_opening
    {8, 16, "rootMembers", 66032, 46, 32},
    {8, 17, "remote.methods", 72051, 106, 123},
    {8, 18, "remote.type", 67024, 40, 24},
};

} // namespace

std::span<const CountedPlace> countedPlaces() { return allPlaces; }

} // namespace hostile
