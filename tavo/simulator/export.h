#pragma once

/// TAVO_SIMULATOR_API marks what the simulator exports, as TAVO_API does for the client library. Two macros,
/// so that in a shared build neither library exports symbols of the other.
#if defined(_WIN32)
#if defined(TAVO_SIMULATOR_BUILDING_DLL)
#define TAVO_SIMULATOR_API __declspec(dllexport)
#else
#define TAVO_SIMULATOR_API
#endif
#else
#define TAVO_SIMULATOR_API __attribute__((visibility("default")))
#endif
