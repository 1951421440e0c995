#pragma once

/// TAVO_API marks what the library shows to applications. Everything else has hidden visibility.
///
/// On Windows the mark matters only while the library itself is built: an application needs no definition
/// of its own, neither for the static nor for the shared library.
#if defined(_WIN32)
#if defined(TAVO_CLIENT_BUILDING_DLL)
#define TAVO_API __declspec(dllexport)
#else
#define TAVO_API
#endif
#else
#define TAVO_API __attribute__((visibility("default")))
#endif

/// The same for class templates: an application makes its own of them on Windows, and shares them elsewhere.
#if defined(_WIN32)
#define TAVO_TEMPLATE_API
#else
#define TAVO_TEMPLATE_API TAVO_API
#endif
