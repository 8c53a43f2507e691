#pragma once

#include <QWidget>

#include <map>

class QHBoxLayout;
class QLabel;
class QPushButton;
class ReportPanelController;
class SnipThumbnail;

/// The pictures that go with a report, the button for one more, and what they are good for.
class SnipStrip final : public QWidget {
  Q_OBJECT

 public:
  explicit SnipStrip(ReportPanelController& controller, QWidget* parent = nullptr);

  void follow();

 private:
  ReportPanelController& controller_;
  QPushButton* add_;
  QLabel* hint_;
  QHBoxLayout* row_;
  std::map<int, SnipThumbnail*> thumbnails_;
};
