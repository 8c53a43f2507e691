#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

#include "app/onboarding/onboarding_steps.h"
#include "app/settings/icon_row.h"
#include "core/hotkeys/app_shortcuts.h"
#include "core/ui/key_caps.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

const QString kCommandsID = u"frequent-clis"_s;
constexpr int kPromptHeight = 44;

Hotkey launcherHotkey() {
  return std::ranges::find(kAppShortcuts, AppAction::toggleLauncher, &AppShortcut::action)->hotkey;
}

/// What is to be pressed, in the desktop's words where it has another combination for it.
QString spelled(const AppContext& context, const Hotkey& hotkey) {
  const QString trigger = context.hotkeys.systemTrigger(hotkey);
  return trigger.isEmpty() ? hotkey.spelled() : trigger;
}

IconTile numbered(int number) { return {{}, QString::number(number), {}}; }

void tick(IconRow& row, const QString& title, const QString& detail) {
  row.setTile({u"checkmark"_s, {}, {}}, &Theme::success);
  row.setTitle(title);
  row.setDetail(detail);
}

/// Stands in for a terminal, so that what is tried out has somewhere to go.
QLineEdit* makePrompt() {
  auto* field = new QLineEdit;
  field->setFont(Theme::monospacedFont());
  field->setMinimumHeight(kPromptHeight);
  field->setTextMargins(Theme::kGrid, 0, Theme::kGrid, 0);
  field->setPlaceholderText(u"$ your command arrives here"_s);
  field->setAccessibleName(u"Terminal to try it in"_s);
  return field;
}

}  // namespace

TryItStep::TryItStep(AppContext& context, OnboardingModel& model)
    : OnboardingPage({u"keyboard"_s, {}, {}}),
      context_(context),
      model_(model),
      launcher_(new IconRow({}, {}, {})),
      launcherKeys_(new KeyCaps(launcherHotkey().keyCaps())),
      openLauncher_(new QPushButton(u"Open the Launcher"_s)),
      commands_(new IconRow({}, {}, {})),
      commandKeys_(new KeyCaps({})),
      terminal_(makePrompt()) {
  openLauncher_->setAutoDefault(true);
  launcher_->addEnd(launcherKeys_);
  launcher_->addEnd(openLauncher_);
  commands_->addEnd(commandKeys_);
  auto* section = new SettingsSection;
  section->addWide(launcher_);
  section->addWide(commands_);
  section->addWide(terminal_);
  column().addWidget(section);
  column().addStretch(1);
  connect(openLauncher_, &QPushButton::clicked, this, [this] { context_.launcher.showLauncher({}); });
  connect(&model_, &OnboardingModel::trialChanged, this, &TryItStep::follow);
  connect(&context_.hotkeys, &HotkeyCenter::changed, this, [this] {
    // The desktop may have given them all.
    model_.permissions().refresh();
    follow();
  });
  follow();
}

void TryItStep::arrive() {
  terminal_->clear();
  follow();
}

QWidget* TryItStep::firstFocus() const { return terminal_; }

QPushButton* TryItStep::defaultButton() const {
  return openLauncher_->isHidden() || model_.hasSeenLauncher() ? nullptr : openLauncher_;
}

void TryItStep::follow() {
  const bool isAllSeen = model_.hasSeenLauncher() && model_.hasSeenCommands();
  setTexts(u"Try it now"_s,
           isAllSeen ? u"That is all there is to it."_s : u"Two shortcuts, and you know your way around."_s);
  followLauncher();
  followCommands();
}

/// They work in this window, but not where they are needed.
bool TryItStep::isLimited() const { return !model_.permissions().shortcutsRemedy().isEmpty(); }

void TryItStep::followLauncher() {
  const bool isRefused = ::isRefused(context_.hotkeys, AppAction::toggleLauncher) || isLimited();
  launcherKeys_->setVisible(!isRefused && context_.hotkeys.systemTrigger(launcherHotkey()).isEmpty());
  openLauncher_->setVisible(isRefused);
  if (model_.hasSeenLauncher()) {
    tick(*launcher_, u"That is the launcher"_s, u"Every tool has a tile: click it, or press its number."_s);
    return;
  }
  const QString keys = spelled(context_, launcherHotkey());
  launcher_->setTile(numbered(1), &Theme::selection);
  launcher_->setTitle(isRefused ? u"Open the launcher"_s : u"Press %1"_s.arg(keys));
  launcher_->setDetail(isRefused ? u"The system does not give %1 to Vantle. This button does the same."_s.arg(keys)
                                 : u"It opens the launcher, wherever you are."_s);
}

void TryItStep::followCommands() {
  const bool isPressed = context_.hotkeys.isRegistered(kCommandsID) && !isLimited();
  const auto hotkey = isPressed ? context_.hotkeys.binding(kCommandsID) : std::nullopt;
  commandKeys_->setVisible(hotkey && context_.hotkeys.systemTrigger(*hotkey).isEmpty());
  if (hotkey) commandKeys_->setCaps(hotkey->keyCaps());
  if (model_.hasSeenCommands()) {
    tick(*commands_, u"That is Frequent CLIs"_s, u"It types what you pick into the terminal you are in."_s);
    return;
  }
  commands_->setTile(numbered(2), &Theme::selection);
  commands_->setTitle(hotkey ? u"Press %1, then Return"_s.arg(spelled(context_, *hotkey))
                             : u"Pick Frequent CLIs there"_s);
  commands_->setDetail(u"It types a saved command into the line below."_s);
}
