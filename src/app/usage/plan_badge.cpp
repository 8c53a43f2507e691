#include "app/usage/plan_badge.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

#include "core/ui/theme.h"

namespace {

constexpr int kSide = 8;
constexpr int kAboveAndBelow = 3;
constexpr double kLetterSpacing = 0.5;
constexpr float kTint = 0.22F;
constexpr int kWidest = 160;

}  // namespace

PlanBadge::PlanBadge(QWidget* parent) : QWidget(parent) { setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed); }

QFont PlanBadge::badgeFont() const {
  QFont font = Theme::keyCapFont();
  font.setWeight(QFont::DemiBold);
  font.setLetterSpacing(QFont::AbsoluteSpacing, kLetterSpacing);
  return font;
}

void PlanBadge::setPlan(const QString& plan, bool isPaid) {
  text_ = QFontMetrics(badgeFont()).elidedText(plan.toUpper(), Qt::ElideRight, kWidest);
  isPaid_ = isPaid;
  setAccessibleName(plan);
  setVisible(!plan.isEmpty());
  updateGeometry();
  update();
}

QSize PlanBadge::sizeHint() const {
  const QFontMetricsF metrics(badgeFont());
  return {static_cast<int>(std::ceil(metrics.horizontalAdvance(text_))) + 2 * kSide,
          static_cast<int>(std::ceil(metrics.height())) + 2 * kAboveAndBelow};
}

void PlanBadge::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor ground = isPaid_ ? theme.accent : theme.secondary;
  ground.setAlphaF(kTint);
  painter.setPen(Qt::NoPen);
  painter.setBrush(ground);
  painter.drawRoundedRect(rect(), height() / 2.0, height() / 2.0);
  painter.setFont(badgeFont());
  painter.setPen(theme.text);
  painter.drawText(rect(), Qt::AlignCenter, text_);
}
