#pragma once

#include <QWidget>

class PaletteList;
class PaletteModel;
class QLabel;
class QStackedLayout;
class RowMenu;
class SearchField;

/// What the palette's card shows: the query, the matching commands, and what the keys do. It draws the model and tells
/// which row was clicked.
class CLIPaletteView : public QWidget {
  Q_OBJECT

 public:
  explicit CLIPaletteView(PaletteModel& model, QWidget* parent = nullptr);

  /// Closes the context menu; false when there was none open.
  bool closeMenu();

 Q_SIGNALS:
  void chosen(int row);
  void editRequested(int row);

 protected:
  void hideEvent(QHideEvent* event) override;

 private:
  QWidget* makeResults();
  void connectList();
  void follow();
  void showMenu(const QPoint& position);

  PaletteModel& model_;
  SearchField* search_;
  PaletteList* list_;
  QLabel* empty_;
  QStackedLayout* results_ = nullptr;
  RowMenu* menu_;
};
