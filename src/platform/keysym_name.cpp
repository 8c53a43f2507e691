#include "platform/keysym_name.h"

#include <algorithm>
#include <array>

#include "platform/key_codes.h"

using namespace Qt::StringLiterals;

namespace {

struct KeysymName {
  std::uint32_t keysym;
  QLatin1StringView name;
};
/// Of those keys whose keysym is not called after what the key writes.
constexpr std::array kKeysymNames = {
    KeysymName{0xff0d, "Return"_L1},       KeysymName{0xff8d, "KP_Enter"_L1},  KeysymName{0x0020, "space"_L1},
    KeysymName{0xff1b, "Escape"_L1},       KeysymName{0xff08, "BackSpace"_L1}, KeysymName{0xffff, "Delete"_L1},
    KeysymName{0xff09, "Tab"_L1},          KeysymName{0xff52, "Up"_L1},        KeysymName{0xff54, "Down"_L1},
    KeysymName{0xff51, "Left"_L1},         KeysymName{0xff53, "Right"_L1},     KeysymName{0xff50, "Home"_L1},
    KeysymName{0xff57, "End"_L1},          KeysymName{0xff55, "Prior"_L1},     KeysymName{0xff56, "Next"_L1},
    KeysymName{0x002d, "minus"_L1},        KeysymName{0x003d, "equal"_L1},     KeysymName{0x005b, "bracketleft"_L1},
    KeysymName{0x005d, "bracketright"_L1}, KeysymName{0x003b, "semicolon"_L1}, KeysymName{0x0027, "apostrophe"_L1},
    KeysymName{0x002c, "comma"_L1},        KeysymName{0x002e, "period"_L1},    KeysymName{0x002f, "slash"_L1},
    KeysymName{0x005c, "backslash"_L1},    KeysymName{0x0060, "grave"_L1},
};

}  // namespace

QString keysymName(const KeyCode& key) {
  const auto named = std::ranges::find(kKeysymNames, key.keysym, &KeysymName::keysym);
  if (named != kKeysymNames.end()) return named->name;
  // The rest writes what its cap shows: letters, digits, F1 to F12.
  const QString cap = QString::fromUtf16(key.name);
  return cap.size() == 1 ? cap.toLower() : cap;
}
