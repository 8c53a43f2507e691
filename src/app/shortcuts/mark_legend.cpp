#include "app/shortcuts/mark_legend.h"

#include <QPainter>

#include <array>

#include "app/shortcuts/key_painter.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kSample = 20;
constexpr int kSampleToText = Theme::kGrid / 2;
constexpr int kHeight = 24;
constexpr double kTop = (kHeight - kSample) / 2.0;

struct Sample {
  QString text;
  KeyFace face;
};

std::array<Sample, 3> samples() {
  return {{{u"Tool"_s, {.mark = KeyMark::tool}},
           {u"Vantle itself"_s, {.mark = KeyMark::application}},
           {u"Off or taken"_s, {.mark = KeyMark::tool, .isBlocked = true}}}};
}

}  // namespace

MarkLegend::MarkLegend(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  QStringList texts;
  for (const Sample& sample : samples()) texts.append(sample.text);
  setAccessibleName(u"Marks: %1"_s.arg(texts.join(u", "_s)));
}

QSize MarkLegend::sizeHint() const { return {280, kHeight}; }

void MarkLegend::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  painter.setFont(Theme::detailFont());
  double left = Theme::kGrid - 2;
  for (const Sample& sample : samples()) {
    paintKey(painter, QRectF(left, kTop, kSample, kSample), sample.face, theme);
    left += kSample + kSampleToText;
    painter.setPen(theme.secondary);
    const double width = painter.fontMetrics().horizontalAdvance(sample.text);
    painter.drawText(QRectF(left, 0, width + 1, kHeight), Qt::AlignVCenter | Qt::TextSingleLine, sample.text);
    left += width + 2 * Theme::kGrid;
  }
}
