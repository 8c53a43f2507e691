#pragma once

#include <QFrame>

class QPushButton;

/// The context menu of a palette's row, drawn inside the panel: a menu window of its own would take over the keyboard
/// that the panel holds.
class RowMenu : public QFrame {
  Q_OBJECT

 public:
  RowMenu(const QString& action, const QStringList& keys, QWidget* parent);

  /// Shows the menu with its corner at `position` in the parent, moved to stay inside.
  void popup(const QPoint& position);

 Q_SIGNALS:
  void triggered();

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  QPushButton* action_;
};
