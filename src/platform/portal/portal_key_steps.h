#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/key_events.h"

/// A press or a release of a key, named by what it writes or by its position.
struct PortalKey {
  enum class By { keysym, evdevCode };
  By by = By::keysym;
  std::uint32_t code = 0;
  bool isPressed = true;

  bool operator==(const PortalKey&) const = default;
};

/// Keys that belong together, and the pause after them.
struct PortalStep {
  std::vector<PortalKey> keys = {};
  /// What the keys write, a press and a release for each character; empty for other keys.
  std::u32string text = {};
  std::chrono::milliseconds pause{0};
};

/// The keysym that writes a character on the keyboard's layout as it is now; none where no key has the character.
using Layout = std::function<std::optional<std::uint32_t>(char32_t)>;

/// The keys of a sequence. Desktops drop what no key of theirs writes and say nothing, so that one character that is
/// not on the layout is an error for the whole of it: `refused`.
std::expected<std::vector<PortalStep>, KeyEventError> portalSteps(const KeySequence& sequence, const Layout& layout);

/// What steps from that one on would have written, but for the first `written` characters of it.
QString textFrom(const std::vector<PortalStep>& steps, std::size_t first, std::size_t written);
