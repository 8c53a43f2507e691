#include "app/shortcuts/keyboard_geometry.h"

#include <algorithm>
#include <array>
#include <span>

namespace {

/// A key, or a gap where the code is `kGap`.
struct Cell {
  std::uint32_t keyCode;
  double width = 1;
};

constexpr std::uint32_t kGap = 0xFFFF;
/// Between the function keys and the digits, and between the main block and the keys beside it.
constexpr double kBlockGap = 0.25;
constexpr double kSide = 15 + kBlockGap;

constexpr std::array kFunctionRow = {
    Cell{53}, Cell{kGap}, Cell{122}, Cell{120},       Cell{99},  Cell{118}, Cell{kGap, 0.5}, Cell{96},
    Cell{97}, Cell{98},   Cell{100}, Cell{kGap, 0.5}, Cell{101}, Cell{109}, Cell{103},       Cell{111},
};
constexpr std::array kDigitRow = {
    Cell{50},
    Cell{18},
    Cell{19},
    Cell{20},
    Cell{21},
    Cell{23},
    Cell{22},
    Cell{26},
    Cell{28},
    Cell{25},
    Cell{29},
    Cell{27},
    Cell{24},
    Cell{51, 2},
    Cell{kGap, kBlockGap},
    Cell{keycode::kInsert},
    Cell{115},
    Cell{116},
};
constexpr std::array kUpperRow = {
    Cell{48, 1.5}, Cell{12},  Cell{13},  Cell{14},      Cell{15},
    Cell{17},      Cell{16},  Cell{32},  Cell{34},      Cell{31},
    Cell{35},      Cell{33},  Cell{30},  Cell{42, 1.5}, Cell{kGap, kBlockGap},
    Cell{117},     Cell{119}, Cell{121},
};
constexpr std::array kHomeRow = {
    Cell{keycode::kCapsLock, 1.75},
    Cell{0},
    Cell{1},
    Cell{2},
    Cell{3},
    Cell{5},
    Cell{4},
    Cell{38},
    Cell{40},
    Cell{37},
    Cell{41},
    Cell{39},
    Cell{36, 2.25},
};
constexpr std::array kLowerKeys = {
    Cell{6},
    Cell{7},
    Cell{8},
    Cell{9},
    Cell{11},
    Cell{45},
    Cell{46},
    Cell{43},
    Cell{47},
    Cell{44},
    Cell{keycode::kRightShift, 2.75},
    Cell{kGap, 1 + kBlockGap},
    Cell{126},
};
constexpr std::array kAnsiShift = {Cell{keycode::kLeftShift, 2.25}};
constexpr std::array kIsoShift = {Cell{keycode::kLeftShift, 1.25}, Cell{keycode::kIsoKey}};
constexpr std::array kPcBottomRow = {
    Cell{keycode::kControl, 1.25},     Cell{keycode::kCommand, 1.25},
    Cell{keycode::kOption, 1.25},      Cell{49, 6.25},
    Cell{keycode::kRightOption, 1.25}, Cell{keycode::kRightCommand, 1.25},
    Cell{keycode::kMenu, 1.25},        Cell{keycode::kRightControl, 1.25},
};
constexpr std::array kMacBottomRow = {
    Cell{keycode::kFunction, 1.25},
    Cell{keycode::kControl, 1.25},
    Cell{keycode::kOption, 1.25},
    Cell{keycode::kCommand, 1.5},
    Cell{49, 5.75},
    Cell{keycode::kRightCommand, 1.5},
    Cell{keycode::kRightOption, 1.25},
    Cell{keycode::kRightControl, 1.25},
};
constexpr std::array kArrows = {Cell{123}, Cell{125}, Cell{124}};

/// Puts cells side by side from `left` on; answers where the next would stand.
double addRow(std::vector<KeyPlace>& places, std::span<const Cell> cells, QPointF left) {
  for (const Cell& cell : cells) {
    if (cell.keyCode != kGap) places.push_back({cell.keyCode, QRectF(left, QSizeF(cell.width, 1))});
    left.rx() += cell.width;
  }
  return left.x();
}

}  // namespace

std::vector<KeyPlace> keyPlaces(KeyboardKind kind, bool iso) {
  std::vector<KeyPlace> places;
  double top = 0;
  addRow(places, kFunctionRow, {0, top});
  addRow(places, kDigitRow, {0, top += 1 + kBlockGap});
  addRow(places, kUpperRow, {0, ++top});
  addRow(places, kHomeRow, {0, ++top});
  const double afterShift = addRow(places, iso ? std::span<const Cell>(kIsoShift) : kAnsiShift, {0, ++top});
  addRow(places, kLowerKeys, {afterShift, top});
  addRow(places, kind == KeyboardKind::mac ? std::span<const Cell>(kMacBottomRow) : kPcBottomRow, {0, ++top});
  addRow(places, kArrows, {kSide, top});
  return places;
}

std::uint32_t carbonModifierOf(std::uint32_t keyCode) {
  switch (keyCode) {
    case keycode::kControl:
    case keycode::kRightControl:
      return carbon::kControl;
    case keycode::kOption:
    case keycode::kRightOption:
      return carbon::kOption;
    case keycode::kLeftShift:
    case keycode::kRightShift:
      return carbon::kShift;
    case keycode::kCommand:
    case keycode::kRightCommand:
      return carbon::kCommand;
    default:
      return 0;
  }
}
