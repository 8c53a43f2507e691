#include "core/ui/launcher/page_dots.h"

#include <QMouseEvent>
#include <QPainter>

#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kPitch = 16;
constexpr int kHeight = 24;
constexpr double kDot = 6;

}  // namespace

PageDots::PageDots(QWidget* parent) : QWidget(parent) { setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed); }

void PageDots::setPages(int current, int count) {
  current_ = current;
  if (count != count_) setFixedSize(count * kPitch, kHeight);
  count_ = count;
  setVisible(count > 1);
  setAccessibleName(u"Page %1 of %2"_s.arg(current + 1).arg(count));
  update();
}

void PageDots::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QColor other = theme.secondary;
  other.setAlphaF(0.4F);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  for (int page = 0; page < count_; ++page) {
    painter.setBrush(page == current_ ? theme.text : other);
    painter.drawEllipse(QRectF((page + 0.5) * kPitch - kDot / 2, (height() - kDot) / 2, kDot, kDot));
  }
}

void PageDots::mousePressEvent(QMouseEvent* event) { Q_EMIT pageChosen(event->position().toPoint().x() / kPitch); }
