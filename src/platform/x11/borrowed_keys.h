#pragma once

#include <xcb/xcb.h>

#include <array>
#include <bitset>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

#include "platform/x11/keyboard_map.h"

/// Key codes without a use on the current layout, lent to characters that the layout lacks.
///
/// The codes form two banks. While one holds what is being typed the other may be refilled, so that an application that
/// lags behind still finds the characters it has yet to look up. What the codes held before is kept in a property of
/// the root window until it is back in place, so that it survives the process: see `recover`.
class BorrowedKeys {
 public:
  static constexpr std::size_t kBanks = 2;
  /// Below lie the keys that differ from layout to layout. One change of the map covers all codes between the borrowed
  /// ones too, and other keyboards get the same: there must be nothing of theirs among them.
  static constexpr int kFirstCode = 178;

  BorrowedKeys(xcb_connection_t* connection, xcb_window_t root);
  ~BorrowedKeys();
  BorrowedKeys(const BorrowedKeys&) = delete;
  BorrowedKeys& operator=(const BorrowedKeys&) = delete;

  /// Puts back what a process that ended abruptly left behind, unless another one is typing right now.
  void recover();
  /// Looks for codes to borrow; those lent already stay.
  void choose(const KeyboardMap& map);

  /// How many characters a bank takes.
  std::size_t capacity(std::size_t bank) const { return banks_[bank].codes.size() * levels_.size(); }
  /// Fills a bank in one change of the server's map, forgetting what it held.
  bool fill(std::size_t bank, std::span<const char32_t> characters);
  /// Writes a bank as it is: nothing changes, but programs hear of a change.
  void touch(std::size_t bank);
  std::optional<KeyStroke> find(char32_t character, std::size_t bank) const;
  bool isLending() const { return isLending_; }
  /// Gives all codes back; the map is then as it was.
  void giveBack();

  /// A key that types nothing at all, 0 for none.
  xcb_keycode_t neutralKey() const { return neutralKey_; }
  const std::bitset<256>& lent() const { return lent_; }

 private:
  struct Bank {
    std::vector<xcb_keycode_t> codes;
    std::unordered_map<char32_t, KeyStroke> held;
  };
  struct Level {
    std::uint8_t level;
    std::uint8_t modifiers;
  };

  std::vector<xcb_keycode_t> candidates(const KeyboardMap& map) const;
  std::vector<xcb_keycode_t> withoutGrabbed(std::vector<xcb_keycode_t> codes) const;
  void chooseLevels(const KeyboardMap& map);
  void remember(const KeyboardMap& map);
  std::span<const KeySymbols> currentBetween(std::size_t first, std::size_t last) const;
  bool writeCurrent(std::span<const xcb_keycode_t> codes);
  bool write(xcb_keycode_t first, std::span<const KeySymbols> keys);
  bool isStillOurs(xcb_keycode_t first, std::span<const KeySymbols> old) const;
  void forget();

  xcb_connection_t* connection_;
  xcb_window_t root_;
  xcb_window_t owner_ = XCB_NONE;
  /// Name of the property with the old map, and of the selection that a living borrower owns.
  xcb_atom_t name_ = XCB_NONE;
  std::array<Bank, kBanks> banks_;
  std::vector<Level> levels_;
  std::uint8_t type_ = 0;
  /// The map as it was and, in the lent codes, as it is now.
  std::optional<KeyboardMap> original_;
  std::array<KeySymbols, 256> current_;
  std::bitset<256> lent_;
  /// The range of codes within which codes are lent.
  xcb_keycode_t first_ = 0;
  xcb_keycode_t last_ = 0;
  bool isLending_ = false;
  xcb_keycode_t neutralKey_ = 0;
};
