#pragma once

#include <QWidget>

class MenuController;
class MenuList;
class MenuModel;
class QLabel;
class QStackedLayout;
class SearchField;

/// The menu's card: the query line and the rows. It paints the model and hands the mouse's wishes to the controller.
class MenuView : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kWidth = 320;

  explicit MenuView(MenuController& controller, QWidget* parent = nullptr);

  /// The card's size for what the model shows now, were there no end to the screen.
  QSize wantedSize() const;

 Q_SIGNALS:
  void wantedSizeChanged();

 private:
  QWidget* makeResults();
  void follow();
  void announceSelection();

  MenuController& controller_;
  MenuModel& model_;
  SearchField* search_;
  MenuList* list_;
  QLabel* empty_;
  QStackedLayout* results_ = nullptr;
  int wantedHeight_ = 0;
};
