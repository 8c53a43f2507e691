#pragma once

#include <QWidget>

#include "core/ui/launcher/page_wheel.h"

class ArrangeTitle;
class FooterHints;
class PageDots;
class SearchField;
class SortModeControl;
class SystemInfo;
class TextButton;
class ToolGrid;
class ToolLauncherController;

/// The launcher's card: query line or arrange title, grid, key hints. It paints the model and hands the mouse's wishes
/// to the controller.
class ToolLauncherView : public QWidget {
  Q_OBJECT

 public:
  ToolLauncherView(ToolLauncherController& controller, const SystemInfo& system, QWidget* parent = nullptr);

  /// The card's size for what the model shows now.
  QSize wantedSize() const;

 Q_SIGNALS:
  void wantedSizeChanged();

 protected:
  void wheelEvent(QWheelEvent* event) override;

 private:
  QWidget* makeHeader();
  QWidget* makeFooter();
  void refresh();
  void refreshFooter();

  ToolLauncherController& controller_;
  SearchField* query_;
  ArrangeTitle* title_;
  SortModeControl* sortMode_;
  ToolGrid* grid_;
  FooterHints* hints_;
  PageDots* dots_;
  TextButton* arrange_;
  PageWheel wheel_;
  int gridRows_ = -1;
};
