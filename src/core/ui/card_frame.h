#pragma once

#include <QWidget>

class QPainter;
struct Theme;

/// A rounded card with a soft shadow in the transparent margin around it, filled by one content widget.
class CardFrame : public QWidget {
  Q_OBJECT

 public:
  /// `margin`: transparent pixels on every side. Without translucency the shadow is left out.
  CardFrame(int margin, bool translucent, QWidget* parent = nullptr);

  void setTranslucent(bool translucent);

  /// The card in this widget's coordinates.
  QRect cardRect() const;
  /// The card's shape in this widget's coordinates, to cut a window to it. Jagged, but only where a pixel is less than
  /// half covered.
  QRegion cardRegion() const;
  /// Fills the card with `content`, which becomes a child; an earlier one is deleted.
  void setContent(QWidget* content);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  int margin_;
  bool translucent_;
  QWidget* content_ = nullptr;
};

/// Paints a card as every panel and toast has it: shadow (where `translucent`), surface and edge.
void paintCard(QPainter& painter, const QRectF& card, const Theme& theme, bool translucent);
/// The shape of a rounded card.
QRegion roundedRegion(const QRect& card, int radius);
