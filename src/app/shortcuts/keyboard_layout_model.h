#pragma once

#include <QObject>

#include <optional>
#include <vector>

#include "app/shortcuts/keyboard_geometry.h"
#include "core/tools/shortcut_entry.h"

/// What a drawn key stands for at the moment.
enum class KeyMark { none, tool, application };
/// `rest` while no modifier is held. With some held, keys that complete a combination are `lit`, all others `faded`.
enum class KeyLight { rest, lit, faded };

/// The drawn keyboard: its keys with what is printed on them, the shortcuts they carry, and what the modifiers held now
/// make of that. Follows tools, bindings, network and layout. Main thread only.
class KeyboardLayoutModel : public QObject {
  Q_OBJECT

 public:
  struct Key {
    KeyPlace place = {};
    QString legend = {};
    /// The Carbon bit that it holds, 0 for none.
    std::uint32_t modifier = 0;
    /// Places in `entries()` of the shortcuts pressed with it.
    std::vector<std::size_t> entries = {};
  };
  enum class Direction { left, right, up, down };

  KeyboardLayoutModel(ShortcutSources sources, KeyLegends& legends);
  ~KeyboardLayoutModel() override;

  /// Whether changes of the layout are followed. Typing borrows keys, which changes it too: a keyboard that nobody sees
  /// should not read it each time.
  void followLayout(bool following);

  const std::vector<Key>& keys() const { return keys_; }
  const std::vector<ShortcutEntry>& entries() const { return entries_; }
  /// The Carbon bits of the modifiers held now.
  std::uint32_t held() const { return held_; }
  void setHeld(std::uint32_t carbonModifiers);

  /// The place of the shortcut that a key stands for: the first that the held modifiers complete, the first of all
  /// while none is held; none for keys that carry nothing of the kind.
  std::optional<std::size_t> entryOf(const Key& key) const;
  KeyMark markOf(const Key& key) const;
  KeyLight lightOf(const Key& key) const;
  /// "K, Ctrl+Alt: Ask AI": the key and all it carries.
  QString spokenName(const Key& key) const;
  /// What else there is to know of a shortcut's key, a sentence each.
  QStringList remarks(std::size_t entry) const;
  /// The place in `keys()` of the key that a shortcut is pressed with; none without a binding or when it is not drawn.
  std::optional<std::size_t> keyOf(std::size_t entry) const;
  /// The nearest key with a shortcut in a direction, all as places in `keys()`.
  std::optional<std::size_t> neighbour(std::size_t key, Direction direction) const;

 Q_SIGNALS:
  /// Keys, shortcuts or their state are different.
  void changed();
  /// Only what is held is different.
  void heldChanged();

 private:
  void refresh();
  void placeKeys();
  QString legendOf(const KeyPlace& place) const;

  ShortcutSources sources_;
  KeyLegends& legends_;
  std::vector<ShortcutEntry> entries_;
  std::vector<Key> keys_;
  std::uint32_t held_ = 0;
};
