#pragma once

#include <array>

#include "app/app_context.h"
#include "app/onboarding/onboarding_model.h"
#include "core/ui/titled_window.h"

class OnboardingPage;
class PageDots;
class PrimaryButton;
class QPushButton;
class QStackedWidget;
class StepFade;

/// The first-run window "Welcome": five steps, Back and Continue. Closed at any step, it comes up again where the
/// stored state says.
class OnboardingWindow : public TitledWindow {
  Q_OBJECT

 public:
  explicit OnboardingWindow(AppContext& context);

  void open() override;
  OnboardingModel& model() { return model_; }

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QWidget* makeFooter();
  OnboardingPage& page() const { return *pages_[static_cast<std::size_t>(model_.step())]; }
  QPushButton& defaultButton() const;
  void showStep();
  void followButtons();

  AppContext& context_;
  OnboardingModel model_;
  QStackedWidget* steps_;
  std::array<OnboardingPage*, OnboardingModel::kStepCount> pages_;
  StepFade* fade_;
  QPushButton* back_;
  PageDots* dots_;
  PrimaryButton* next_;
};
