#include "core/ui/card_frame.h"

#include <QBitmap>
#include <QPainter>

#include "core/ui/card_shadow.h"
#include "core/ui/theme.h"

void paintCard(QPainter& painter, const QRectF& card, const Theme& theme, bool translucent) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  if (translucent) CardShadow{theme.shadow, Theme::kCardRadius}.paint(painter, card);
  // A window cut to its card has jagged corners already; filling them whole avoids a second, softer edge inside.
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme.card);
  if (translucent)
    painter.drawRoundedRect(card, Theme::kCardRadius, Theme::kCardRadius);
  else
    painter.drawRect(card);
  const qreal line = 1.0;
  painter.setPen(QPen(theme.hairline, line));
  painter.setBrush(Qt::NoBrush);
  const qreal radius = Theme::kCardRadius - line / 2;
  painter.drawRoundedRect(card.adjusted(line / 2, line / 2, -line / 2, -line / 2), radius, radius);
  painter.restore();
}

QRegion roundedRegion(const QRect& card, int radius) {
  QBitmap shape(card.size());
  shape.clear();
  QPainter painter(&shape);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Qt::color1);
  painter.drawRoundedRect(QRect(QPoint(), card.size()), radius, radius);
  painter.end();
  return QRegion(shape).translated(card.topLeft());
}

CardFrame::CardFrame(int margin, bool translucent, QWidget* parent)
    : QWidget(parent), margin_(margin), translucent_(translucent) {}

void CardFrame::setTranslucent(bool translucent) {
  if (translucent == translucent_) return;
  translucent_ = translucent;
  update();
}

QRect CardFrame::cardRect() const { return rect().adjusted(margin_, margin_, -margin_, -margin_); }

QRegion CardFrame::cardRegion() const { return roundedRegion(cardRect(), Theme::kCardRadius); }

void CardFrame::setContent(QWidget* content) {
  delete content_;
  content_ = content;
  content_->setParent(this);
  content_->setGeometry(cardRect());
  content_->show();
}

void CardFrame::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintCard(painter, cardRect(), themeOf(*this), translucent_);
}

void CardFrame::resizeEvent(QResizeEvent*) {
  if (content_) content_->setGeometry(cardRect());
}
