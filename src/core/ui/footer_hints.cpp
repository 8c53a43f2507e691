#include "core/ui/footer_hints.h"

#include <QPainter>

#include <cmath>
#include <utility>

#include "core/ui/key_caps.h"
#include "core/ui/theme.h"

namespace {

constexpr int kSide = 2 * Theme::kGrid;
constexpr int kKeysToText = 6;
constexpr int kBetweenHints = 2 * Theme::kGrid;

}  // namespace

FooterHints::FooterHints(std::vector<KeyHint> hints, QWidget* parent) : QWidget(parent), hints_(std::move(hints)) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  describe();
}

void FooterHints::setHints(std::vector<KeyHint> hints) {
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
  for (const KeyHint& hint : hints_) {
    const KeyCapRow row{hint.keys};
    const double keys = row.size().width();
    const double text = std::ceil(metrics.horizontalAdvance(hint.text));
    // A hint that does not fit whole is no help.
    if (keys + kKeysToText + text > rest.width()) return;
    row.paint(painter, {rest.left(), std::round(rest.center().y() - KeyCapRow::kHeight / 2.0)}, theme);
    rest.setLeft(rest.left() + keys + kKeysToText);
    painter.drawText(rest, Qt::AlignVCenter, hint.text);
    rest.setLeft(rest.left() + text + kBetweenHints);
  }
}
