#pragma once

#include <array>
#include <vector>

#include "app/app_context.h"
#include "app/onboarding/onboarding_model.h"
#include "app/onboarding/onboarding_page.h"
#include "app/onboarding/shortcut_offers.h"
#include "core/hotkeys/app_shortcuts.h"

class IconRow;
class KeyCaps;
class PermissionRow;
class QLineEdit;
class SettingsSection;
class ShortcutsRow;

/// What it is, in one sentence, and what is used first.
class WelcomeStep : public OnboardingPage {
  Q_OBJECT

 public:
  explicit WelcomeStep(AppContext& context);
};

/// The consent to usage statistics, which is off until it is given, and what never leaves the computer.
class PrivacyStep : public OnboardingPage {
  Q_OBJECT

 public:
  explicit PrivacyStep(AppContext& context);
};

/// What the system allows, and other shortcuts for those that it does not give.
class PermissionsStep : public OnboardingPage {
  Q_OBJECT

 public:
  PermissionsStep(AppContext& context, OnboardingModel& model);

  void arrive() override;
  /// The button that leads to the first permission that is missing.
  QPushButton* defaultButton() const override;

 private:
  void followPermissions();
  void followOffers();
  void addOffers();
  QWidget* makeOfferRow(const ShortcutOffers::Offer& offer);

  OnboardingModel& model_;
  ShortcutOffers offers_;
  QString systemName_;
  std::array<PermissionRow*, kPermissionNames.size()> rows_{};
  QVBoxLayout* content_ = nullptr;
  ShortcutsRow* shortcuts_ = nullptr;
  SettingsSection* offerSection_ = nullptr;
};

/// The launcher and the commands, tried out in the window itself.
class TryItStep : public OnboardingPage {
  Q_OBJECT

 public:
  TryItStep(AppContext& context, OnboardingModel& model);

  void arrive() override;
  QWidget* firstFocus() const override;
  QPushButton* defaultButton() const override;

 private:
  void follow();
  bool isLimited() const;
  void followLauncher();
  void followCommands();

  AppContext& context_;
  OnboardingModel& model_;
  IconRow* launcher_;
  KeyCaps* launcherKeys_;
  QPushButton* openLauncher_;
  IconRow* commands_;
  KeyCaps* commandKeys_;
  QLineEdit* terminal_;
};

/// Where to find everything from now on.
class DoneStep : public OnboardingPage {
  Q_OBJECT

 public:
  explicit DoneStep(AppContext& context);

  void arrive() override;

 private:
  /// One of the application's own shortcuts.
  struct ShortcutRow {
    const AppShortcut* shortcut;
    QString text;
    IconRow* row;
    KeyCaps* caps;
  };

  ShortcutRow makeShortcutRow(AppAction action, const QString& symbol, const QString& text);
  void follow(const ShortcutRow& row);

  AppContext& context_;
  std::vector<ShortcutRow> shortcuts_;
  IconRow* tray_;
};
