#pragma once

#include <functional>
#include <memory>

#include "platform/key_events.h"
#include "platform/key_target.h"
#include "platform/portal/portal_typist.h"

/// Types with X's keys while an X program has the focus: what is typed with them otherwise would be lost, or go to an X
/// program in the background. All other programs are typed into by the `typist`. `targets` outlives it.
std::unique_ptr<KeyEvents> makeXWaylandKeyEvents(std::unique_ptr<KeyEvents> keyEvents,
                                                 std::unique_ptr<PortalTypist> typist, const KeyTargets& targets);
