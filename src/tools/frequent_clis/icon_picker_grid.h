#pragma once

#include <QFrame>

class IconPickerModel;
class PaletteList;
class QLabel;
class QLineEdit;
class QStackedLayout;

/// The popover in which a command's icon is chosen: a search field over a grid of all icons. Deletes itself on closing.
class IconPickerGrid : public QFrame {
  Q_OBJECT

 public:
  /// `current`: the icon that is marked at first.
  IconPickerGrid(const QString& current, QWidget* parent);

  /// Opens below `anchor`, or above where there is more room.
  void popupAt(const QWidget& anchor);

 Q_SIGNALS:
  void picked(const QString& iconID);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* makeResults();
  void filter(const QString& query);
  void pick(const QModelIndex& index);
  bool handleSearchKey(int key);
  bool handleGridKey(int key, const QString& text);

  IconPickerModel* model_;
  QLineEdit* search_;
  PaletteList* grid_;
  QLabel* empty_;
  QStackedLayout* results_ = nullptr;
};
