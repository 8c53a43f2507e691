#pragma once

#include <QString>

#include <optional>
#include <vector>

#include "core/hotkeys/hotkey.h"

class HotkeyBackend;

/// A combination that another program holds, as shown to people.
struct RefusedShortcut {
  /// The tool's name or the application action's.
  QString owner;
  Hotkey hotkey;
  QString reason;
};

/// An id for trying combinations out, far from those of registrations.
inline constexpr std::uint32_t kProbeHotkeyID = 0x7FFF0000;

/// A Control+Option combination with a letter that is neither in `used` nor taken: it is registered and given back to
/// find out, under ids from `probeID`. None when all are taken.
std::optional<Hotkey> freeCombination(HotkeyBackend& backend, const std::vector<Hotkey>& used, std::uint32_t probeID);
