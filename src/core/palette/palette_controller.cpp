#include "core/palette/palette_controller.h"

#include "base/text_search.h"
#include "core/presenters/launcher_opener.h"

PaletteController::PaletteController(LauncherOpener& launcher, QString toolID, PanelFactory makePanel)
    : launcher_(launcher), toolID_(std::move(toolID)), makePanel_(std::move(makePanel)) {}

PalettePresenter& PaletteController::panel() {
  if (!panel_) panel_ = makePanel_();
  return *panel_;
}

void PaletteController::prepare() {
  if (panel_) return;
  rehearse();
  panel().warmUp();
}

void PaletteController::show() {
  returnsToLauncher_ = launcher_.takeStartedFromLauncher();
  showAgain();
}

void PaletteController::showAgain() {
  begin();
  shown_ = true;
  panel().present();
}

void PaletteController::hide() {
  if (!shown_) return;
  shown_ = false;
  panel_->dismiss();
  ended();
}

bool PaletteController::handleKey(const KeyPress& key) {
  if (!shown_) return false;
  if (handleOwnKey(key) || handleCommonKey(key)) return true;
  if (key.command || key.control || !key.isText()) return false;
  list().setQuery(list().query() + key.characters);
  return true;
}

bool PaletteController::handleCommonKey(const KeyPress& key) {
  switch (key.keyCode) {
    case keycode::kReturn:
    case keycode::kKeypadEnter:
      if (list().rowCount() > 0) chooseSelected(key);
      return true;
    case keycode::kDelete:
      if (!list().query().isEmpty()) list().setQuery(withoutLastCharacter(list().query()));
      return true;
    case keycode::kEscape:
      escape();
      return true;
    case keycode::kDown:
      list().moveSelection(+1);
      return true;
    case keycode::kUp:
      list().moveSelection(-1);
      return true;
    default:
      return false;
  }
}

void PaletteController::escape() {
  hide();
  if (returnsToLauncher_) launcher_.showLauncher(toolID_);
}
