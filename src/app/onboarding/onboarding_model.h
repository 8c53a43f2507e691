#pragma once

#include <QObject>

#include "app/permissions/permission_list.h"
#include "core/settings/app_settings.h"

enum class OnboardingStep { welcome, privacy, permissions, tryIt, done };

/// The way through the first run: which step is shown, what may be passed, and what is stored when, so that closing the
/// window at any step loses nothing. Main thread only.
class OnboardingModel : public QObject {
  Q_OBJECT

 public:
  static constexpr int kStepCount = 5;

  OnboardingModel(SettingsStore& settings, Permissions& permissions, Clock& clock);

  /// Starts where the stored state says: at the welcome, or at the permissions.
  void begin();
  OnboardingStep step() const { return step_; }
  /// The first run lies behind and only access that was taken away is to be granted again: there is one step.
  bool isRepair() const { return isRepair_; }
  bool canGoBack() const { return !isRepair_ && step_ != OnboardingStep::welcome; }
  bool isLast() const { return isRepair_ || step_ == OnboardingStep::done; }
  /// Every step may be passed, granted or not: what is missing is asked for again at the next start.
  void next();
  void back();

  /// Permissions are looked at while their step is visible.
  void setVisible(bool visible);
  PermissionList& permissions() { return permissions_; }

  /// The launcher has come up, for the step that waits for it.
  void launcherShown();
  bool hasSeenLauncher() const { return hasSeenLauncher_; }
  /// Frequent CLIs has been opened since that step was reached.
  bool hasSeenCommands() const { return hasSeenCommands_; }

 Q_SIGNALS:
  void stepChanged();
  /// What the user has tried out has changed.
  void trialChanged();
  /// The window has nothing left to show.
  void finished();

 private:
  void enter(OnboardingStep step);
  void leaveForward();
  void remember(bool AppSettings::* flag);
  void followPermissions();
  void followUse();

  SettingsStore& settings_;
  PermissionList permissions_;
  OnboardingStep step_ = OnboardingStep::welcome;
  bool isRepair_ = false;
  bool isVisible_ = false;
  /// Whether something was missing at the last look, so that its being granted can be noticed.
  bool wasMissing_ = false;
  bool hasSeenLauncher_ = false;
  bool hasSeenCommands_ = false;
  int usesBefore_ = 0;
};
