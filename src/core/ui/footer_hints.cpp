#include "core/ui/footer_hints.h"

#include <QPainter>

#include <cmath>
#include <utility>

#include "core/ui/key_caps.h"
#include "core/ui/theme.h"
#include "platform/command_key.h"

namespace {

constexpr int kSide = 2 * Theme::kGrid;
constexpr int kKeysToText = 6;
constexpr int kBetweenHints = 2 * Theme::kGrid;

std::vector<KeyHint> asPressed(std::vector<KeyHint> hints) {
  for (KeyHint& hint : hints) hint.keys = keyCaps(hint.keys);
  return hints;
}

double widthOf(const KeyHint& hint, const QFontMetricsF& metrics) {
  return KeyCapRow{hint.keys}.size().width() + kKeysToText + std::ceil(metrics.horizontalAdvance(hint.text));
}

/// Those that fit whole, for a part of one is no help. How to leave stands last and stays.
std::vector<KeyHint> fitting(std::vector<KeyHint> hints, double room, const QFontMetricsF& metrics) {
  double width = -kBetweenHints;
  for (const KeyHint& hint : hints) width += kBetweenHints + widthOf(hint, metrics);
  while (width > room && !hints.empty()) {
    const auto dropped = hints.end() - (hints.size() > 1 ? 2 : 1);
    width -= kBetweenHints + widthOf(*dropped, metrics);
    hints.erase(dropped);
  }
  return hints;
}

}  // namespace

FooterHints::FooterHints(std::vector<KeyHint> hints, QWidget* parent)
    : QWidget(parent), hints_(asPressed(std::move(hints))) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  describe();
}

void FooterHints::setHints(std::vector<KeyHint> hints) {
  hints = asPressed(std::move(hints));
  if (hints == hints_) return;
  hints_ = std::move(hints);
  describe();
}

void FooterHints::setNotice(const QString& notice) {
  if (notice == notice_) return;
  notice_ = notice;
  describe();
}

void FooterHints::describe() {
  QStringList texts;
  for (const KeyHint& hint : hints_) texts.append(hint.keys.join(QString()) + QLatin1Char(' ') + hint.text);
  setAccessibleName(notice_.isEmpty() ? texts.join(QStringLiteral(", ")) : notice_);
  update();
}

QSize FooterHints::sizeHint() const { return {40 * Theme::kGrid, kHeight}; }

void FooterHints::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  painter.fillRect(0, 0, width(), 1, theme.hairline);
  painter.setFont(Theme::detailFont());
  painter.setPen(theme.secondary);
  const QFontMetricsF metrics(painter.font());
  QRectF rest = QRectF(rect()).adjusted(kSide, 1, -kSide, 0);
  if (!notice_.isEmpty()) {
    painter.drawText(rest, Qt::AlignVCenter, metrics.elidedText(notice_, Qt::ElideRight, rest.width()));
    return;
  }
  for (const KeyHint& hint : fitting(hints_, rest.width(), metrics)) {
    const KeyCapRow row{hint.keys};
    row.paint(painter, {rest.left(), std::round(rest.center().y() - KeyCapRow::kHeight / 2.0)}, theme);
    painter.drawText(rest.adjusted(row.size().width() + kKeysToText, 0, 0, 0), Qt::AlignVCenter, hint.text);
    rest.setLeft(rest.left() + widthOf(hint, metrics) + kBetweenHints);
  }
}
