#include <algorithm>
#include <array>

#include "tools/generate_image/generate_image_panel_controller.h"

using Area = GenerateImageModel::Area;
using Controller = GenerateImagePanelController;

namespace {

/// A letter with Command, by what it types or, on other alphabets, by its place.
struct LetterKey {
  char16_t letter;
  std::uint32_t keyCode;
  bool shift;
  void (Controller::*run)();
};

constexpr std::array kLetterKeys = {
    LetterKey{u's', 1, false, &Controller::addSnip},      LetterKey{u's', 1, true, &Controller::saveShown},
    LetterKey{u'e', 14, false, &Controller::editShown},   LetterKey{u'e', 14, true, &Controller::editSnip},
    LetterKey{u'o', 31, false, &Controller::attachFiles}, LetterKey{u'v', 9, false, &Controller::paste},
    LetterKey{u'v', 9, true, &Controller::pasteText},     LetterKey{u'r', 15, false, &Controller::regenerate},
    LetterKey{u'n', 45, false, &Controller::startNew},    LetterKey{u'1', 18, false, &Controller::nextSize},
    LetterKey{u'2', 19, false, &Controller::nextQuality},
};
constexpr LetterKey kCopy{u'c', 8, false, &Controller::copyShown};

bool isPressed(const LetterKey& row, const KeyPress& key) {
  if (row.shift != key.shift) return false;
  return key.isKey(QChar(row.letter), row.keyCode);
}

bool isReturn(const KeyPress& key) { return key.keyCode == keycode::kReturn || key.keyCode == keycode::kKeypadEnter; }

}  // namespace

bool GenerateImagePanelController::handleKey(const KeyPress& key, bool hasSelection) {
  if (!isShown_) return false;
  if (key.keyCode == keycode::kEscape) {
    escape();
    return true;
  }
  if (key.command) return handleCommand(key, hasSelection);
  if (key.keyCode == keycode::kTab) {
    nextArea();
    return true;
  }
  if (model_.area() == Area::history) return handleHistoryKey(key);
  return model_.area() == Area::references && handleReferenceKey(key);
}

/// The prompt, the images that go with it and the history, round and round; what is empty is passed over.
void GenerateImagePanelController::nextArea() {
  if (model_.area() == Area::prompt && !model_.references().empty())
    model_.moveInReferences(0);
  else if (model_.area() != Area::history && historyList_.rowCount() > 0)
    moveInHistory(0);
  else
    model_.setArea(Area::prompt);
}

bool GenerateImagePanelController::handleCommand(const KeyPress& key, bool hasSelection) {
  if (isReturn(key)) {
    generate();
    return true;
  }
  if (isPressed(kCopy, key)) {
    if (hasSelection || !model_.shown()) return false;
    copyShown();
    return true;
  }
  const auto row = std::ranges::find_if(kLetterKeys, [&](const LetterKey& one) { return isPressed(one, key); });
  if (row == kLetterKeys.end()) return false;
  (this->*row->run)();
  return true;
}

/// What types goes to the prompt, and so does the user.
bool GenerateImagePanelController::handleHistoryKey(const KeyPress& key) {
  switch (key.keyCode) {
    case keycode::kLeft:
    case keycode::kUp:
      moveInHistory(-1);
      return true;
    case keycode::kRight:
    case keycode::kDown:
      moveInHistory(+1);
      return true;
    case keycode::kPageUp:
      moveInHistory(-8);
      return true;
    case keycode::kPageDown:
      moveInHistory(+8);
      return true;
    case keycode::kDelete:
    case keycode::kForwardDelete:
      removeSelected();
      return true;
    case keycode::kReturn:
    case keycode::kKeypadEnter:
      reusePrompt();
      return true;
    default:
      if (key.isText()) model_.setArea(Area::prompt);
      return false;
  }
}

bool GenerateImagePanelController::handleReferenceKey(const KeyPress& key) {
  switch (key.keyCode) {
    case keycode::kLeft:
    case keycode::kUp:
      model_.moveInReferences(-1);
      return true;
    case keycode::kRight:
    case keycode::kDown:
      model_.moveInReferences(+1);
      return true;
    case keycode::kDelete:
    case keycode::kForwardDelete:
      model_.removeReference(model_.selectedReference());
      return true;
    case keycode::kReturn:
    case keycode::kKeypadEnter:
      model_.setArea(Area::prompt);
      return true;
    default:
      if (key.isText()) model_.setArea(Area::prompt);
      return false;
  }
}
