#pragma once

#include <QWidget>

/// A rounded card with a soft shadow in the transparent margin around it; children go inside `contentRect()`.
class CardFrame : public QWidget {
  Q_OBJECT

 public:
  /// `margin`: transparent pixels on every side. Without translucency the shadow is left out.
  CardFrame(int margin, bool translucent, QWidget* parent = nullptr);

  /// The card in this widget's coordinates.
  QRect cardRect() const;
  /// Fills the card with `content`, which becomes a child.
  void setContent(QWidget* content);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  int margin_;
  bool translucent_;
  QWidget* content_ = nullptr;
};
