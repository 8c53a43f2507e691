#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>

#include "platform/x11/borrowed_keys.h"
#include "platform/x11/map_reads.h"
#include "platform/x11/xtest_keyboard.h"

/// Lends keys to characters that the layout lacks, at the pace of the program that is typed into.
///
/// A bank of keys is refilled, and all are given back, only when that program has read the map since the last change:
/// it has then looked at everything typed before. A program that hangs is waited for, within bounds.
class CharacterLender {
 public:
  using Clock = std::chrono::steady_clock;

  explicit CharacterLender(XTestKeyboard& keyboard);

  /// Chooses keys on a map that was just read; those lent already stay.
  void prepare(const KeyboardMap& map) { borrowed_.choose(map); }
  std::optional<KeyStroke> find(char32_t character) const { return borrowed_.find(character, bank_); }
  /// How many characters `lend` takes next.
  std::size_t capacity() const { return borrowed_.capacity(nextBank()); }
  /// Makes `characters` typeable instead of those before; waits until they may be typed.
  bool lend(std::span<const char32_t> characters, const std::stop_token& stop);
  /// Everything of a sequence is typed: marks its end for the program, so that it is seen to have got there.
  void finish();

  /// When `giveBackIfRead` is to be called next; empty when nothing is lent.
  std::optional<Clock::time_point> dueTime() const;
  void giveBackIfRead();
  /// For the end of the process: waits a little for the program.
  void giveBackSoon();

  xcb_keycode_t neutralKey() const { return borrowed_.neutralKey(); }
  const std::bitset<256>& lent() const { return borrowed_.lent(); }

 private:
  std::size_t nextBank() const { return borrowed_.isLending() ? (bank_ + 1) % BorrowedKeys::kBanks : 0; }
  void waitUntilRead(const std::stop_token& stop);
  void watchFocused();
  void settle(const std::stop_token& stop);
  void giveBack();
  bool isRead();
  xcb_window_t focusedWindow() const;

  XTestKeyboard& keyboard_;
  BorrowedKeys borrowed_;
  /// The bank that holds what is typed now.
  std::size_t bank_ = 0;
  /// Null where the server does not tell; then there are fixed waits.
  std::unique_ptr<MapReads> reads_;
  int readsAtChange_ = 0;
  /// The program reads a changed map when it hears of it, not when it looks at the next key.
  bool readsAtOnce_ = false;
  /// The program was waited for in vain; it is not any more.
  bool neverReads_ = false;
  bool isMarkRead_ = false;
  Clock::time_point finished_;
  Clock::time_point due_;
};
