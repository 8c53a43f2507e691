#pragma once

#include <memory>

#include "platform/key_events.h"
#include "platform/key_target.h"

/// Types only while an X program has the focus: what is typed otherwise would be lost, or go to an X program in the
/// background. `targets` outlives it.
std::unique_ptr<KeyEvents> makeXWaylandKeyEvents(std::unique_ptr<KeyEvents> keyEvents, const KeyTargets& targets);
