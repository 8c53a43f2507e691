#pragma once

#include "app/app_context.h"
#include "core/ui/titled_window.h"

class QLabel;
class QPushButton;
class QStackedWidget;

/// The first-run window "Welcome": what this is and the consent, then what the system allows and a first try.
class OnboardingWindow : public TitledWindow {
  Q_OBJECT

 public:
  enum class Step { welcome, permissions };

  explicit OnboardingWindow(AppContext& context);

  using TitledWindow::open;
  void open(Step step);

 protected:
  bool event(QEvent* event) override;

 private:
  QWidget* makeWelcomeStep();
  QWidget* makePermissionsStep();
  void goOn();
  void showStep(Step step);
  void followPermissions();

  AppContext& context_;
  QStackedWidget* steps_;
  QLabel* permission_;
  QPushButton* prompt_;
  QPushButton* next_;
};
