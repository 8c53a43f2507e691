#pragma once

// A field of this C header has a name that C++ keeps for itself.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpragmas"
#pragma GCC diagnostic ignored "-Wunknown-warning-option"
#pragma GCC diagnostic ignored "-Wkeyword-macro"
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
#pragma GCC diagnostic pop
