#pragma once

#include <QScrollArea>

#include <vector>

class MeterView;
class PlanBadge;
class QLabel;
class QPushButton;
class QStackedWidget;
class SettingsSection;
class UsageWindowController;

/// The usage window's content: the plan, a meter a counter, and the refresh. It paints what the controller knows.
class UsageView : public QWidget {
  Q_OBJECT

 public:
  explicit UsageView(UsageWindowController& controller, QWidget* parent = nullptr);

  /// Where the keyboard starts.
  void focusFirst();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  QWidget* makeHeader();
  QWidget* makeBody();
  QWidget* makeFooter();
  void follow();
  void followMeters();
  void followTheme();

  UsageWindowController& controller_;
  QLabel* gauge_;
  PlanBadge* badge_;
  QLabel* month_;
  QStackedWidget* body_;
  QLabel* message_;
  QScrollArea* scroll_;
  SettingsSection* section_ = nullptr;
  std::vector<MeterView*> meters_;
  QLabel* calendar_;
  QPushButton* refresh_;
};
