/// \file
/// The mark of what the library exports.
#ifndef DEVDEF_PLATFORM_EXPORT_H_
#define DEVDEF_PLATFORM_EXPORT_H_

/// \def DEVDEF_API
/// Marks what the library exports: the public classes and functions, and with the classes their static data (the
/// name lists). A shared build hides everything else. On Windows a host of the shared library needs DEVDEF_SHARED
/// defined, which the library's CMake target and pkg-config file pass on.

#if defined(_WIN32) && defined(DEVDEF_SHARED)
#if defined(DEVDEF_BUILDING)
#define DEVDEF_API __declspec(dllexport)
#else
#define DEVDEF_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define DEVDEF_API __attribute__((visibility("default")))
#else
#define DEVDEF_API
#endif

#endif  // DEVDEF_PLATFORM_EXPORT_H_
