#include "core/hotkeys/refused_shortcuts.h"

#include <algorithm>
#include <array>

#include "platform/hotkey_backend.h"

namespace {

/// Letters that no tool and no application action has by default: E, J, M, Q, R, V, W, X, Y, Z, C, D.
constexpr std::array<std::uint32_t, 12> kCandidates = {14, 38, 46, 12, 15, 9, 13, 7, 16, 6, 8, 2};

}  // namespace

std::optional<Hotkey> freeCombination(HotkeyBackend& backend, const std::vector<Hotkey>& used, std::uint32_t probeID) {
  for (const std::uint32_t keyCode : kCandidates) {
    const Hotkey hotkey{keyCode, carbon::kControl | carbon::kOption};
    if (std::ranges::find(used, hotkey) != used.end()) continue;
    if (!backend.registerHotkey(probeID, hotkey.keyCode, hotkey.carbonModifiers)) continue;
    backend.unregisterHotkey(probeID);
    return hotkey;
  }
  return std::nullopt;
}
