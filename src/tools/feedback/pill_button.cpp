#include "tools/feedback/pill_button.h"

#include <QPainter>

#include "core/ui/icon.h"
#include "core/ui/theme.h"

namespace {

constexpr int kHeight = 28;
constexpr int kSymbol = 16;
constexpr int kSide = 12;
constexpr int kGap = 6;

}  // namespace

PillButton::PillButton(const QString& symbol, const QString& text, QWidget* parent)
    : QPushButton(text, parent), symbol_(symbol) {
  setCheckable(true);
  setFont(Theme::detailFont());
  // The panel's keys reach it; none of its controls takes the focus from the words.
  setFocusPolicy(Qt::NoFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize PillButton::sizeHint() const {
  return {2 * kSide + kSymbol + kGap + QFontMetrics(font()).horizontalAdvance(text()), kHeight};
}

void PillButton::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor ground = isChecked() ? theme.selection : underMouse() ? theme.hover : theme.raised;
  const QColor ink = isChecked() ? theme.onAccent : theme.text;
  painter.setPen(isChecked() ? QPen(Qt::NoPen) : QPen(theme.edge, 1));
  painter.setBrush(ground);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kHeight / 2.0, kHeight / 2.0);
  paintSymbol(painter, symbol_, QRectF(kSide, (height() - kSymbol) / 2.0, kSymbol, kSymbol), ink);
  painter.setPen(ink);
  painter.setFont(font());
  painter.drawText(rect().adjusted(kSide + kSymbol + kGap, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, text());
}
