#pragma once

#include <stddef.h>
#include <stdint.h>

#include "declare.h"

// bool on arm64; a signed char on x86_64.
typedef bool BOOL;

#define YES __objc_yes
#define NO __objc_no
#define nil nullptr

typedef long NSInteger;
typedef unsigned long NSUInteger;
