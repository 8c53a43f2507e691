#include "tools/frequent_clis/cli_palette_controller.h"

#include "base/text_search.h"
#include "core/presenters/launcher_opener.h"
#include "core/presenters/settings_opener.h"
#include "tools/frequent_clis/command_store.h"
#include "tools/frequent_clis/frequent_clis_tool.h"
#include "tools/keystrokes/keystroke_sender.h"

using namespace Qt::StringLiterals;

CLIPaletteController::CLIPaletteController(Services services, PanelFactory makePanel)
    : services_(services), makePanel_(std::move(makePanel)) {}

CLIPalettePanel& CLIPaletteController::panel() {
  if (!panel_) panel_ = makePanel_(*this);
  return *panel_;
}

void CLIPaletteController::prepare() {
  if (panel_) return;
  model_.reset(services_.store.commands());
  panel().warmUp();
}

void CLIPaletteController::show() {
  returnsToLauncher_ = services_.launcher.takeStartedFromLauncher();
  model_.reset(services_.store.commands());
  shown_ = true;
  panel().present();
}

void CLIPaletteController::hide() {
  if (!shown_) return;
  shown_ = false;
  panel_->dismiss();
}

bool CLIPaletteController::handleKey(const KeyPress& key) {
  if (!shown_) return false;
  if (key.command && key.charactersIgnoringModifiers.toLower() == "e"_L1) {
    if (const auto* command = model_.selectedCommand()) edit(*command);
    return true;
  }
  if (handleCommandKey(key)) return true;
  if (key.command || key.control || !key.isText()) return false;
  model_.setQuery(model_.query() + key.characters);
  return true;
}

bool CLIPaletteController::handleCommandKey(const KeyPress& key) {
  switch (key.keyCode) {
    case keycode::kReturn:
    case keycode::kKeypadEnter:
      if (const auto* command = model_.selectedCommand()) choose(*command);
      return true;
    case keycode::kDelete:
      if (!model_.query().isEmpty()) model_.setQuery(withoutLastCharacter(model_.query()));
      return true;
    case keycode::kEscape:
      escape();
      return true;
    case keycode::kDown:
      model_.moveSelection(+1);
      return true;
    case keycode::kUp:
      model_.moveSelection(-1);
      return true;
    default:
      return false;
  }
}

void CLIPaletteController::choose(CLICommand command) {
  hide();
  services_.clock.after(kTypingDelay, typing_, [this, command = std::move(command)] {
    services_.sender.send(command.command, command.pressReturn);
  });
}

void CLIPaletteController::edit(const CLICommand& command) {
  const QUuid id = command.id;
  hide();
  services_.settings.openCommandSettings(id);
}

void CLIPaletteController::escape() {
  hide();
  if (returnsToLauncher_) services_.launcher.showLauncher(kFrequentCLIsID);
}
