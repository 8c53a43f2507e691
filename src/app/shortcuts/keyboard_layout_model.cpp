#include "app/shortcuts/keyboard_layout_model.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "core/hotkeys/hotkey_center.h"
#include "core/net/network_monitor.h"
#include "core/tools/tool_registry.h"
#include "platform/key_codes.h"

using namespace Qt::StringLiterals;

namespace {

struct PrintedName {
  std::uint32_t keyCode;
  const char16_t* text;
};

/// What is printed on keys that type nothing, where it is not their sign.
constexpr std::array kPrintedNames = {
    PrintedName{53, u"Esc"},
    PrintedName{49, u"Space"},
    PrintedName{117, u"Del"},
    PrintedName{keycode::kInsert, u"Ins"},
    PrintedName{115, u"Home"},
    PrintedName{119, u"End"},
    PrintedName{116, u"PgUp"},
    PrintedName{121, u"PgDn"},
    PrintedName{keycode::kCapsLock, u"Caps"},
    PrintedName{keycode::kMenu, u"Menu"},
    PrintedName{keycode::kFunction, u"fn"},
    PrintedName{keycode::kIsoKey, u"<"},
};

constexpr std::array kModifierGlyphs = {
    PrintedName{carbon::kControl, u"⌃"},
    PrintedName{carbon::kOption, u"⌥"},
    PrintedName{carbon::kShift, u"⇧"},
    PrintedName{carbon::kCommand, u"⌘"},
};

std::optional<QString> textFor(std::span<const PrintedName> table, std::uint32_t code) {
  const auto found = std::ranges::find(table, code, &PrintedName::keyCode);
  return found == table.end() ? std::nullopt : std::optional(QString::fromUtf16(found->text));
}

/// The modifiers of a combination in words, "Ctrl+Alt"; empty for none.
QString modifierWords(const Hotkey& hotkey) {
  const QString all = hotkey.spelled();
  const qsizetype last = all.lastIndexOf(u'+', all.size() - 2);
  return last < 0 ? QString() : all.left(last);
}

/// How far `to` is from `from` in a direction, a step aside counting double; none when it lies elsewhere.
std::optional<double> distance(const QPointF& from, const QPointF& to, KeyboardLayoutModel::Direction direction) {
  using enum KeyboardLayoutModel::Direction;
  const bool isSideways = direction == left || direction == right;
  const QPointF way = to - from;
  const double ahead = (isSideways ? way.x() : way.y()) * (direction == right || direction == down ? 1 : -1);
  const double aside = std::abs(isSideways ? way.y() : way.x());
  // A row is left by the arrows up and down only.
  if (ahead < 0.4 || (isSideways && aside > 0.4)) return std::nullopt;
  return isSideways ? ahead : 3 * ahead + aside;
}

}  // namespace

KeyboardLayoutModel::KeyboardLayoutModel(ShortcutSources sources, KeyLegends& legends)
    : sources_(sources), legends_(legends) {
  connect(&sources_.registry, &ToolRegistry::changed, this, &KeyboardLayoutModel::refresh);
  connect(&sources_.hotkeys, &HotkeyCenter::changed, this, &KeyboardLayoutModel::refresh);
  connect(&sources_.network, &NetworkMonitor::changed, this, &KeyboardLayoutModel::refresh);
  refresh();
}

KeyboardLayoutModel::~KeyboardLayoutModel() { legends_.watch({}); }

void KeyboardLayoutModel::followLayout(bool following) {
  if (!following) {
    legends_.watch({});
    return;
  }
  legends_.watch([this] { refresh(); });
  refresh();
}

void KeyboardLayoutModel::setHeld(std::uint32_t carbonModifiers) {
  if (std::exchange(held_, carbonModifiers) != carbonModifiers) Q_EMIT heldChanged();
}

std::optional<std::size_t> KeyboardLayoutModel::entryOf(const Key& key) const {
  const auto found = std::ranges::find_if(key.entries, [this](std::size_t entry) {
    return held_ == 0 || entries_[entry].hotkey->carbonModifiers == held_;
  });
  return found == key.entries.end() ? std::nullopt : std::optional(*found);
}

KeyMark KeyboardLayoutModel::markOf(const Key& key) const {
  const auto entry = entryOf(key);
  if (!entry) return KeyMark::none;
  return entries_[*entry].isApplication() ? KeyMark::application : KeyMark::tool;
}

KeyLight KeyboardLayoutModel::lightOf(const Key& key) const {
  if (held_ == 0) return KeyLight::rest;
  return (key.modifier & held_) != 0 || entryOf(key) ? KeyLight::lit : KeyLight::faded;
}

QString KeyboardLayoutModel::spokenName(const Key& key) const {
  QStringList carried;
  for (const std::size_t entry : key.entries) {
    const QString words = modifierWords(*entries_[entry].hotkey);
    carried.append(words.isEmpty() ? entries_[entry].name : u"%1: %2"_s.arg(words, entries_[entry].name));
  }
  const QString printed = legends_.legend(key.place.keyCode);
  const QString name = printed.isEmpty() ? Hotkey{key.place.keyCode, 0}.spelled() : printed;
  return name + u", "_s + carried.join(u"; "_s);
}

QStringList KeyboardLayoutModel::remarks(std::size_t entry) const {
  const auto place = keyOf(entry);
  if (!place) return {};
  const Key& key = keys_[*place];
  QStringList remarks;
  const Hotkey& hotkey = *entries_[entry].hotkey;
  const QString printed = legends_.legend(key.place.keyCode);
  if (!printed.isEmpty() && printed != keyName(hotkey.keyCode))
    remarks.append(u"On this keyboard the key is “%1”."_s.arg(printed));
  QStringList others;
  for (const std::size_t other : key.entries)
    if (other != entry) others.append(u"%1 %2"_s.arg(entries_[other].hotkey->display(), entries_[other].name));
  if (!others.isEmpty()) remarks.append(u"Also on this key: %1"_s.arg(others.join(u", "_s)));
  return remarks;
}

std::optional<std::size_t> KeyboardLayoutModel::keyOf(std::size_t entry) const {
  const auto found = std::ranges::find_if(
      keys_, [entry](const Key& key) { return std::ranges::find(key.entries, entry) != key.entries.end(); });
  return found == keys_.end() ? std::nullopt : std::optional<std::size_t>(std::distance(keys_.begin(), found));
}

std::optional<std::size_t> KeyboardLayoutModel::neighbour(std::size_t key, Direction direction) const {
  std::optional<std::size_t> nearest;
  double shortest = std::numeric_limits<double>::max();
  for (std::size_t other = 0; other < keys_.size(); ++other) {
    if (other == key || keys_[other].entries.empty()) continue;
    const auto way = distance(keys_[key].place.area.center(), keys_[other].place.area.center(), direction);
    if (!way || *way >= shortest) continue;
    shortest = *way;
    nearest = other;
  }
  return nearest;
}

void KeyboardLayoutModel::refresh() {
  entries_ = shortcutEntries(sources_);
  placeKeys();
  Q_EMIT changed();
}

/// The key beside the left Shift is drawn only for somebody who has a shortcut there: most layouts know it, few
/// keyboards have it.
void KeyboardLayoutModel::placeKeys() {
  std::vector<std::optional<std::uint32_t>> positions;
  for (const ShortcutEntry& entry : entries_)
    positions.push_back(entry.hotkey ? std::optional(legends_.position(entry.hotkey->keyCode)) : std::nullopt);
  const bool iso = std::ranges::find(positions, keycode::kIsoKey) != positions.end();
  keys_.clear();
  for (const KeyPlace& place : keyPlaces(legends_.kind(), iso)) {
    Key key{.place = place, .legend = legendOf(place), .modifier = carbonModifierOf(place.keyCode)};
    for (std::size_t entry = 0; entry < entries_.size(); ++entry)
      if (positions[entry] == place.keyCode) key.entries.push_back(entry);
    keys_.push_back(std::move(key));
  }
}

QString KeyboardLayoutModel::legendOf(const KeyPlace& place) const {
  if (const auto modifier = carbonModifierOf(place.keyCode); modifier != 0)
    return textFor(kModifierGlyphs, modifier).value_or(QString()) + u' ' + legends_.modifierWord(modifier);
  if (const QString own = legends_.legend(place.keyCode); !own.isEmpty()) return own;
  return textFor(kPrintedNames, place.keyCode).value_or(keyName(place.keyCode));
}
