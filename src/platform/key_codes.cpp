#include "platform/key_codes.h"

#include <QChar>

#include <algorithm>
#include <array>

namespace {

constexpr std::array kKeyCodes = {
    KeyCode{36, u"↩", u"Return", Qt::Key_Return, 0xff0d, 36},
    KeyCode{76, u"⌅", u"Enter", Qt::Key_Enter, 0xff8d, 104},
    KeyCode{49, u"Space", nullptr, Qt::Key_Space, 0x0020, 65},
    KeyCode{53, u"⎋", u"Esc", Qt::Key_Escape, 0xff1b, 9},
    KeyCode{51, u"⌫", u"Backspace", Qt::Key_Backspace, 0xff08, 22},
    KeyCode{117, u"⌦", u"Delete", Qt::Key_Delete, 0xffff, 119},
    KeyCode{48, u"⇥", u"Tab", Qt::Key_Tab, 0xff09, 23},
    KeyCode{126, u"↑", u"Up", Qt::Key_Up, 0xff52, 111},
    KeyCode{125, u"↓", u"Down", Qt::Key_Down, 0xff54, 116},
    KeyCode{123, u"←", u"Left", Qt::Key_Left, 0xff51, 113},
    KeyCode{124, u"→", u"Right", Qt::Key_Right, 0xff53, 114},
    KeyCode{115, u"↖", u"Home", Qt::Key_Home, 0xff50, 110},
    KeyCode{119, u"↘", u"End", Qt::Key_End, 0xff57, 115},
    KeyCode{116, u"⇞", u"Page Up", Qt::Key_PageUp, 0xff55, 112},
    KeyCode{121, u"⇟", u"Page Down", Qt::Key_PageDown, 0xff56, 117},
    KeyCode{122, u"F1", nullptr, Qt::Key_F1, 0xffbe, 67},
    KeyCode{120, u"F2", nullptr, Qt::Key_F2, 0xffbf, 68},
    KeyCode{99, u"F3", nullptr, Qt::Key_F3, 0xffc0, 69},
    KeyCode{118, u"F4", nullptr, Qt::Key_F4, 0xffc1, 70},
    KeyCode{96, u"F5", nullptr, Qt::Key_F5, 0xffc2, 71},
    KeyCode{97, u"F6", nullptr, Qt::Key_F6, 0xffc3, 72},
    KeyCode{98, u"F7", nullptr, Qt::Key_F7, 0xffc4, 73},
    KeyCode{100, u"F8", nullptr, Qt::Key_F8, 0xffc5, 74},
    KeyCode{101, u"F9", nullptr, Qt::Key_F9, 0xffc6, 75},
    KeyCode{109, u"F10", nullptr, Qt::Key_F10, 0xffc7, 76},
    KeyCode{103, u"F11", nullptr, Qt::Key_F11, 0xffc8, 95},
    KeyCode{111, u"F12", nullptr, Qt::Key_F12, 0xffc9, 96},
    KeyCode{0, u"A", nullptr, Qt::Key_A, 0x0061, 38},
    KeyCode{11, u"B", nullptr, Qt::Key_B, 0x0062, 56},
    KeyCode{8, u"C", nullptr, Qt::Key_C, 0x0063, 54},
    KeyCode{2, u"D", nullptr, Qt::Key_D, 0x0064, 40},
    KeyCode{14, u"E", nullptr, Qt::Key_E, 0x0065, 26},
    KeyCode{3, u"F", nullptr, Qt::Key_F, 0x0066, 41},
    KeyCode{5, u"G", nullptr, Qt::Key_G, 0x0067, 42},
    KeyCode{4, u"H", nullptr, Qt::Key_H, 0x0068, 43},
    KeyCode{34, u"I", nullptr, Qt::Key_I, 0x0069, 31},
    KeyCode{38, u"J", nullptr, Qt::Key_J, 0x006a, 44},
    KeyCode{40, u"K", nullptr, Qt::Key_K, 0x006b, 45},
    KeyCode{37, u"L", nullptr, Qt::Key_L, 0x006c, 46},
    KeyCode{46, u"M", nullptr, Qt::Key_M, 0x006d, 58},
    KeyCode{45, u"N", nullptr, Qt::Key_N, 0x006e, 57},
    KeyCode{31, u"O", nullptr, Qt::Key_O, 0x006f, 32},
    KeyCode{35, u"P", nullptr, Qt::Key_P, 0x0070, 33},
    KeyCode{12, u"Q", nullptr, Qt::Key_Q, 0x0071, 24},
    KeyCode{15, u"R", nullptr, Qt::Key_R, 0x0072, 27},
    KeyCode{1, u"S", nullptr, Qt::Key_S, 0x0073, 39},
    KeyCode{17, u"T", nullptr, Qt::Key_T, 0x0074, 28},
    KeyCode{32, u"U", nullptr, Qt::Key_U, 0x0075, 30},
    KeyCode{9, u"V", nullptr, Qt::Key_V, 0x0076, 55},
    KeyCode{13, u"W", nullptr, Qt::Key_W, 0x0077, 25},
    KeyCode{7, u"X", nullptr, Qt::Key_X, 0x0078, 53},
    KeyCode{16, u"Y", nullptr, Qt::Key_Y, 0x0079, 29},
    KeyCode{6, u"Z", nullptr, Qt::Key_Z, 0x007a, 52},
    KeyCode{29, u"0", nullptr, Qt::Key_0, 0x0030, 19},
    KeyCode{18, u"1", nullptr, Qt::Key_1, 0x0031, 10},
    KeyCode{19, u"2", nullptr, Qt::Key_2, 0x0032, 11},
    KeyCode{20, u"3", nullptr, Qt::Key_3, 0x0033, 12},
    KeyCode{21, u"4", nullptr, Qt::Key_4, 0x0034, 13},
    KeyCode{23, u"5", nullptr, Qt::Key_5, 0x0035, 14},
    KeyCode{22, u"6", nullptr, Qt::Key_6, 0x0036, 15},
    KeyCode{26, u"7", nullptr, Qt::Key_7, 0x0037, 16},
    KeyCode{28, u"8", nullptr, Qt::Key_8, 0x0038, 17},
    KeyCode{25, u"9", nullptr, Qt::Key_9, 0x0039, 18},
    KeyCode{27, u"-", nullptr, Qt::Key_Minus, 0x002d, 20},
    KeyCode{24, u"=", nullptr, Qt::Key_Equal, 0x003d, 21},
    KeyCode{33, u"[", nullptr, Qt::Key_BracketLeft, 0x005b, 34},
    KeyCode{30, u"]", nullptr, Qt::Key_BracketRight, 0x005d, 35},
    KeyCode{41, u";", nullptr, Qt::Key_Semicolon, 0x003b, 47},
    KeyCode{39, u"'", nullptr, Qt::Key_Apostrophe, 0x0027, 48},
    KeyCode{43, u",", nullptr, Qt::Key_Comma, 0x002c, 59},
    KeyCode{47, u".", nullptr, Qt::Key_Period, 0x002e, 60},
    KeyCode{44, u"/", nullptr, Qt::Key_Slash, 0x002f, 61},
    KeyCode{42, u"\\", nullptr, Qt::Key_Backslash, 0x005c, 51},
    KeyCode{50, u"`", nullptr, Qt::Key_QuoteLeft, 0x0060, 49},
};

const KeyCode* find(auto matches) {
  const auto found = std::ranges::find_if(kKeyCodes, matches);
  return found == kKeyCodes.end() ? nullptr : &*found;
}

}  // namespace

std::span<const KeyCode> keyCodes() { return kKeyCodes; }

const KeyCode* findKeyCode(std::uint32_t mac) {
  return find([mac](const KeyCode& key) { return key.mac == mac; });
}

const KeyCode* findKeyByQtKey(int qtKey) {
  return find([qtKey](const KeyCode& key) { return key.qtKey == qtKey; });
}

const KeyCode* findKeyByPosition(std::uint32_t position) {
  return find([position](const KeyCode& key) { return key.position == position; });
}

std::uint32_t keyForChord(std::uint32_t keyCode, const std::function<char16_t(std::uint32_t)>& characterOn) {
  const KeyCode* wanted = findKeyCode(keyCode);
  const bool isPrinted = wanted && wanted->keysym > 0x20 && wanted->keysym < 0x7F;
  if (!isPrinted) return keyCode;
  const auto hasIt = [&](std::uint32_t code) { return QChar(characterOn(code)).toLower().unicode() == wanted->keysym; };
  if (hasIt(keyCode)) return keyCode;
  const KeyCode* found = find([&](const KeyCode& key) { return hasIt(key.mac); });
  return found ? found->mac : keyCode;
}

std::optional<std::uint32_t> macKeyCode(const ReportedKey& key) {
#ifdef Q_OS_MACOS
  return key.virtualKey;
#else
  const KeyCode* found = findKeyByQtKey(key.qtKey);
  if (!found && key.qtKey == Qt::Key_Backtab) found = findKeyByQtKey(Qt::Key_Tab);
  if (!found && key.scanCode != 0) found = findKeyByPosition(key.scanCode);
  return found ? std::optional(found->mac) : std::nullopt;
#endif
}

std::uint32_t carbonModifiers(Qt::KeyboardModifiers modifiers) {
  constexpr std::uint32_t kCommand = 0x0100, kShift = 0x0200, kOption = 0x0800, kControl = 0x1000;
#ifdef Q_OS_MACOS
  // Qt names the Command key Control there, and the Control key Meta.
  constexpr std::uint32_t kQtControl = kCommand, kQtMeta = kControl;
#else
  constexpr std::uint32_t kQtControl = kControl, kQtMeta = kCommand;
#endif
  std::uint32_t bits = 0;
  if (modifiers & Qt::ControlModifier) bits |= kQtControl;
  if (modifiers & Qt::MetaModifier) bits |= kQtMeta;
  if (modifiers & Qt::AltModifier) bits |= kOption;
  if (modifiers & Qt::ShiftModifier) bits |= kShift;
  return bits;
}
