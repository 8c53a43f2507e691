#pragma once

// Declarations of the part of the system's interface that the .mm files next door use, so that clang can check them on
// a machine without the system's headers. They state facts of its documentation: names, types, values and the version
// that introduced each. Whoever uses more of the interface declares it here first, from the documentation.

#define SINCE(version) __attribute__((availability(macos, introduced = version)))

#ifdef __cplusplus
#define EXTERN extern "C"
#else
#define EXTERN extern
#endif

#define BEGIN_NONNULL _Pragma("clang assume_nonnull begin")
#define END_NONNULL _Pragma("clang assume_nonnull end")

// Enumerations have a fixed underlying type. In C++ a set of options is that integer itself, so that | needs no cast.
#define ENUMERATION(type, name) enum name : type
#define OPTION_SET(type, name) \
  typedef type name;           \
  enum : type
