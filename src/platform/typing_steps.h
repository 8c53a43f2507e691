#pragma once

#include <string>
#include <variant>
#include <vector>

#include "platform/key_events.h"

/// Text here is whole characters that a keyboard could have: U'\n' for the Return key, U'\t' for Tab.
using TypingStep = std::variant<std::u32string, Pause, PressKey>;

/// The steps with their text decoded. A surrogate pair that was cut between two chunks is joined in the second one;
/// lone halves and control characters without a key are left out; "\r\n" is one Return.
std::vector<TypingStep> typingSteps(const KeySequence& steps);
