#pragma once

#include <QAbstractButton>

struct CommandIcon;

/// A command's icon tile as a button that opens the icon picker.
class TileButton : public QAbstractButton {
  Q_OBJECT

 public:
  explicit TileButton(QWidget* parent = nullptr);

  void setIcon(const CommandIcon& icon);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString monogram_;
  QColor color_;
};
