#include "app/onboarding/onboarding_model.h"

#include "app/app_delegate.h"

using namespace Qt::StringLiterals;

namespace {

int usesOfCommands(const AppSettings& settings) {
  const auto found = settings.toolUsage.find(u"frequent-clis"_s);
  return found == settings.toolUsage.end() ? 0 : found->second;
}

}  // namespace

OnboardingModel::OnboardingModel(SettingsStore& settings, Permissions& permissions, Clock& clock)
    : settings_(settings), permissions_(permissions, clock) {
  connect(&permissions_, &PermissionList::changed, this, &OnboardingModel::followPermissions);
  connect(&settings_, &StoreBase::changed, this, &OnboardingModel::followUse);
}

void OnboardingModel::begin() {
  permissions_.refresh();
  const bool isTrusted = permissions_.isGranted(Permission::accessibility);
  const auto where = AppDelegate::firstRun(settings_.value(), isTrusted);
  hasSeenLauncher_ = hasSeenCommands_ = false;
  isRepair_ = settings_.value().onboardingCompleted && where == AppDelegate::FirstRun::permissions;
  enter(where == AppDelegate::FirstRun::permissions ? OnboardingStep::permissions : OnboardingStep::welcome);
}

void OnboardingModel::next() {
  if (isLast()) {
    Q_EMIT finished();
    return;
  }
  leaveForward();
  enter(static_cast<OnboardingStep>(static_cast<int>(step_) + 1));
}

void OnboardingModel::back() {
  if (canGoBack()) enter(static_cast<OnboardingStep>(static_cast<int>(step_) - 1));
}

void OnboardingModel::setVisible(bool visible) {
  isVisible_ = visible;
  permissions_.setWatched(isVisible_ && step_ == OnboardingStep::permissions);
}

void OnboardingModel::launcherShown() {
  if (step_ != OnboardingStep::tryIt || hasSeenLauncher_) return;
  hasSeenLauncher_ = true;
  Q_EMIT trialChanged();
}

void OnboardingModel::enter(OnboardingStep step) {
  step_ = step;
  if (step == OnboardingStep::permissions) {
    // What was granted before somebody came here is no reason to go on.
    wasMissing_ = false;
    permissions_.refresh();
    wasMissing_ = permissions_.isAnyMissing();
    if (!isRepair_) remember(&AppSettings::onboardingReachedPermissions);
  }
  if (step == OnboardingStep::tryIt) usesBefore_ = usesOfCommands(settings_.value());
  if (step == OnboardingStep::done) remember(&AppSettings::onboardingCompleted);
  setVisible(isVisible_);
  Q_EMIT stepChanged();
}

void OnboardingModel::leaveForward() {
  if (step_ == OnboardingStep::privacy) remember(&AppSettings::privacyAccepted);
}

void OnboardingModel::remember(bool AppSettings::* flag) {
  settings_.update([flag](AppSettings& settings) { settings.*flag = true; });
}

void OnboardingModel::followPermissions() {
  const bool isMissing = permissions_.isAnyMissing();
  const bool wasJustGranted = wasMissing_ && !isMissing;
  wasMissing_ = isMissing;
  if (wasJustGranted && isVisible_ && step_ == OnboardingStep::permissions) next();
}

void OnboardingModel::followUse() {
  if (step_ != OnboardingStep::tryIt || hasSeenCommands_) return;
  if (usesOfCommands(settings_.value()) <= usesBefore_) return;
  hasSeenCommands_ = true;
  Q_EMIT trialChanged();
}
