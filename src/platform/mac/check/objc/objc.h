#pragma once

#include <stddef.h>
#include <stdint.h>

#include "declare.h"

#ifdef __x86_64__
typedef signed char BOOL;
#else
typedef bool BOOL;
#endif

#define YES __objc_yes
#define NO __objc_no
#define nil nullptr

typedef long NSInteger;
typedef unsigned long NSUInteger;
