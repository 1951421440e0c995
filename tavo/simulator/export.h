#pragma once

/// TAVO_SIMULATOR_API marks what the simulator shows to applications, as TAVO_API does for the client
/// library. The two are apart, so that neither library of a shared build shows what belongs to the other.
#if defined(_WIN32)
#if defined(TAVO_SIMULATOR_BUILDING_DLL)
#define TAVO_SIMULATOR_API __declspec(dllexport)
#else
#define TAVO_SIMULATOR_API
#endif
#else
#define TAVO_SIMULATOR_API __attribute__((visibility("default")))
#endif
