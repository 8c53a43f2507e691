#include "core/hotkeys/hotkey.h"

#include <QJsonObject>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "platform/key_codes.h"

namespace {

struct Modifier {
  std::uint32_t bit;
  const char16_t* glyph;
  const char16_t* word;
};

/// In the order in which shortcuts are written.
constexpr std::array kModifiers = {
    Modifier{carbon::kControl, u"⌃", u"Ctrl"},
    Modifier{carbon::kOption, u"⌥", u"Alt"},
    Modifier{carbon::kShift, u"⇧", u"Shift"},
    Modifier{carbon::kCommand, u"⌘", u"Super"},
};

bool decodeUnsigned(const QJsonValue& value, std::uint32_t& out) {
  const double number = value.toDouble(-1);
  if (number < 0 || number > std::numeric_limits<std::uint32_t>::max() || number != std::floor(number)) return false;
  out = static_cast<std::uint32_t>(number);
  return true;
}

}  // namespace

QString keyName(std::uint32_t keyCode) {
  const KeyCode* key = findKeyCode(keyCode);
  return key && key->name ? QString::fromUtf16(key->name) : QStringLiteral("key%1").arg(keyCode);
}

QStringList Hotkey::keyCaps() const {
  QStringList caps;
  for (const Modifier& modifier : kModifiers)
    if (carbonModifiers & modifier.bit) caps.append(QString::fromUtf16(modifier.glyph));
  caps.append(keyName(keyCode));
  return caps;
}

QString Hotkey::display() const { return keyCaps().join(QString()); }

QString Hotkey::spelled() const {
  QStringList words;
  for (const Modifier& modifier : kModifiers)
    if (carbonModifiers & modifier.bit) words.append(QString::fromUtf16(modifier.word));
  const KeyCode* key = findKeyCode(keyCode);
  words.append(key && key->word ? QString::fromUtf16(key->word) : keyName(keyCode));
  return words.join(QLatin1Char('+'));
}

bool Hotkey::isFunctionKey() const {
  constexpr std::array<std::uint32_t, 12> kFunctionKeys = {122, 120, 99, 118, 96, 97, 98, 100, 101, 109, 103, 111};
  return std::ranges::find(kFunctionKeys, keyCode) != kFunctionKeys.end();
}

bool decode(const QJsonValue& value, Hotkey& out) {
  const QJsonObject object = value.toObject();
  Hotkey hotkey;
  if (!decodeUnsigned(object.value(QLatin1StringView("keyCode")), hotkey.keyCode)) return false;
  if (!decodeUnsigned(object.value(QLatin1StringView("carbonModifiers")), hotkey.carbonModifiers)) return false;
  out = hotkey;
  return true;
}

QJsonValue encode(const Hotkey& hotkey) {
  return QJsonObject{{QStringLiteral("keyCode"), static_cast<qint64>(hotkey.keyCode)},
                     {QStringLiteral("carbonModifiers"), static_cast<qint64>(hotkey.carbonModifiers)}};
}
