#include "app/onboarding_window.h"

#include <QEvent>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "app/settings/preference_controls.h"
#include "app/settings/settings_form.h"
#include "app/settings/shortcut_controls.h"
#include "core/hotkeys/app_shortcuts.h"
#include "core/ui/key_caps.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kSize(560, 640);
constexpr int kLogo = 72;

QLabel* makeTitle(const QString& text) {
  auto* label = new QLabel(text);
  QFont font = Theme::fieldFont();
  font.setPointSizeF(22);
  font.setWeight(QFont::DemiBold);
  label->setFont(font);
  label->setAlignment(Qt::AlignHCenter);
  return label;
}

QLabel* makeText(const QString& text) {
  auto* label = new QLabel(text);
  label->setFont(Theme::rowFont());
  label->setWordWrap(true);
  label->setAlignment(Qt::AlignHCenter);
  return label;
}

void addShortcut(SettingsSection& section, const QString& title, const QString& description, const Hotkey& hotkey) {
  auto* caps = new KeyCaps(hotkey.keyCaps());
  caps->setToolTip(hotkey.spelled());
  section.addRow(title, description, caps);
}

}  // namespace

OnboardingWindow::OnboardingWindow(AppContext& context)
    : TitledWindow(u"Welcome"_s),
      context_(context),
      steps_(new QStackedWidget),
      permission_(makeDetailLabel({})),
      prompt_(new QPushButton(u"Ask for Permission"_s)),
      next_(new QPushButton) {
  setFixedSize(kSize);
  steps_->addWidget(makeWelcomeStep());
  steps_->addWidget(makePermissionsStep());
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(5 * Theme::kGrid, 4 * Theme::kGrid, 5 * Theme::kGrid, 3 * Theme::kGrid);
  column->addWidget(steps_, 1);
  column->addWidget(next_, 0, Qt::AlignRight);
  next_->setDefault(true);
  connect(next_, &QPushButton::clicked, this, &OnboardingWindow::goOn);
  connect(prompt_, &QPushButton::clicked, this, [this] { context_.platform.permissions->promptForAccessibility(); });
}

QWidget* OnboardingWindow::makeWelcomeStep() {
  auto* step = new QWidget;
  auto* column = new QVBoxLayout(step);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2 * Theme::kGrid);
  auto* logo = new QLabel;
  logo->setPixmap(QIcon(u":/icons/vantle.svg"_s).pixmap(QSize(kLogo, kLogo), devicePixelRatioF()));
  logo->setAlignment(Qt::AlignHCenter);
  column->addWidget(logo);
  column->addWidget(makeTitle(u"Welcome to Vantle"_s));
  column->addWidget(
      makeText(u"Small tools for people who work with terminal coding agents, each one shortcut away."_s));
  auto* shortcuts = new SettingsSection;
  if (const auto hotkey = context_.hotkeys.binding(u"frequent-clis"_s))
    addShortcut(*shortcuts, u"Frequent CLIs"_s, u"Types a saved command into the terminal you are in."_s, *hotkey);
  addShortcut(*shortcuts, u"Launcher"_s, u"All tools and their shortcuts in one grid."_s, kAppShortcuts[3].hotkey);
  column->addWidget(shortcuts);
  column->addStretch(1);
  auto* privacy = new SettingsSection;
  privacy->addRow(
      u"Share anonymous usage statistics"_s,
      u"Helps decide which tools to improve. Sends only which tools you open and an anonymous install id — "
      u"no account, no personal data, no image or text content. Never on when you're offline."_s,
      makePreferenceSwitch(context_.preferences, &Preferences::shareUsageStats, u"Share anonymous usage statistics"_s));
  column->addWidget(privacy);
  return step;
}

QWidget* OnboardingWindow::makePermissionsStep() {
  auto* step = new QWidget;
  auto* column = new QVBoxLayout(step);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2 * Theme::kGrid);
  column->addWidget(makeTitle(u"What %1 allows"_s.arg(context_.platform.systemInfo->systemName())));
  auto* section = new SettingsSection;
  section->addRow(u"Typing into other applications"_s, u"Needed to put a saved command into your terminal."_s, prompt_);
  section->addWide(permission_);
  column->addWidget(section);
  auto* shortcuts = new SettingsSection;
  for (const HotkeyCenter::Refused& refused : context_.hotkeys.refused()) {
    const QString owner = refused.toolID.isEmpty() ? u"Vantle"_s : context_.registry.tool(refused.toolID)->name();
    shortcuts->addWide(makeDetailLabel(u"%1 (%2) is %3. Choose another under Settings → Shortcuts."_s.arg(
        refused.hotkey.display(), owner, refused.refusal.description())));
  }
  if (context_.hotkeys.refused().empty()) shortcuts->addWide(makeDetailLabel(u"Every shortcut is free and ready."_s));
  column->addWidget(shortcuts);
  auto* trial = new SettingsSection;
  addShortcut(*trial, u"Try it now"_s, u"Press this anywhere, and Escape to come back."_s, kAppShortcuts[3].hotkey);
  column->addWidget(trial);
  column->addStretch(1);
  return step;
}

void OnboardingWindow::open(Step step) {
  showStep(step);
  open();
}

void OnboardingWindow::goOn() {
  if (steps_->currentIndex() == static_cast<int>(Step::permissions)) {
    context_.settings.update([](AppSettings& settings) { settings.onboardingCompleted = true; });
    close();
    return;
  }
  context_.settings.update([](AppSettings& settings) {
    settings.privacyAccepted = true;
    settings.onboardingReachedPermissions = true;
  });
  showStep(Step::permissions);
}

void OnboardingWindow::showStep(Step step) {
  steps_->setCurrentIndex(static_cast<int>(step));
  next_->setText(step == Step::welcome ? u"Continue"_s : u"Done"_s);
  next_->setFocus();
  followPermissions();
}

void OnboardingWindow::followPermissions() {
  const bool trusted = context_.platform.permissions->isAccessibilityTrusted();
  prompt_->setVisible(!trusted);
  permission_->setText(trusted ? u"✓ Allowed"_s
                               : u"Not allowed yet. Enable Vantle in %1 → Privacy."_s.arg(
                                     context_.platform.systemInfo->systemSettings()));
}

bool OnboardingWindow::event(QEvent* event) {
  // Coming back from the system's own settings is the moment at which the answer may have changed.
  if (event->type() == QEvent::WindowActivate) followPermissions();
  return TitledWindow::event(event);
}
