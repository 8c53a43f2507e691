#include "tools/frequent_clis/cli_palette_controller.h"

#include "core/presenters/settings_opener.h"
#include "tools/frequent_clis/command_store.h"
#include "tools/frequent_clis/frequent_clis_tool.h"
#include "tools/keystrokes/command_typer.h"

using namespace Qt::StringLiterals;

CLIPaletteController::CLIPaletteController(Services services, PanelFactory makePanel)
    : PaletteController(services.launcher, kFrequentCLIsID, std::move(makePanel)), services_(services) {}

void CLIPaletteController::begin() { model_.reset(services_.store.commands()); }

bool CLIPaletteController::handleOwnKey(const KeyPress& key) {
  if (!key.command || key.charactersIgnoringModifiers.toLower() != "e"_L1) return false;
  if (const auto* command = model_.selectedCommand()) edit(*command);
  return true;
}

void CLIPaletteController::chooseSelected(const KeyPress&) {
  if (const auto* command = model_.selectedCommand()) choose(*command);
}

void CLIPaletteController::choose(CLICommand command) {
  hide();
  services_.clock.after(kTypingDelay, typing_, [this, command = std::move(command)] {
    services_.typer.type(command.command, command.pressReturn);
  });
}

void CLIPaletteController::edit(const CLICommand& command) {
  const QUuid id = command.id;
  hide();
  services_.settings.openCommandSettings(id);
}
