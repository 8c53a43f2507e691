#pragma once

// xcb's header has a member named like a keyword of C++.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
