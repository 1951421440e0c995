#pragma once

/// TAVO_API exports what applications may use. Everything else has hidden visibility.
///
/// On Windows it matters only while the library itself is built: applications need no definition of their
/// own, neither for the static nor for the shared library.
#if defined(_WIN32)
#if defined(TAVO_CLIENT_BUILDING_DLL)
#define TAVO_API __declspec(dllexport)
#else
#define TAVO_API
#endif
#else
#define TAVO_API __attribute__((visibility("default")))
#endif

/// The same for class templates: on Windows an application instantiates its own, elsewhere it shares the
/// library's.
#if defined(_WIN32)
#define TAVO_TEMPLATE_API
#else
#define TAVO_TEMPLATE_API TAVO_API
#endif
