#include "core/ui/launcher/arrange_title.h"

#include <QPainter>

#include "core/ui/search_field.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kSide = 2 * Theme::kGrid;
constexpr int kTop = 10;
constexpr auto kTitle = "Arrange your grid"_L1;

}  // namespace

ArrangeTitle::ArrangeTitle(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setQuery({});
}

void ArrangeTitle::setQuery(const QString& query) {
  detail_ = query.isEmpty() ? u"Drag a tile, or press a digit for its place"_s : u"Tools that match “%1”"_s.arg(query);
  setAccessibleName(kTitle);
  setAccessibleDescription(detail_);
  update();
}

QSize ArrangeTitle::sizeHint() const { return {30 * Theme::kGrid, SearchField::kHeight}; }

void ArrangeTitle::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  QRect area = rect().adjusted(kSide, kTop, 0, -kTop);
  painter.setFont(Theme::rowFont());
  painter.setPen(theme.text);
  painter.drawText(area, Qt::AlignLeft | Qt::AlignTop, kTitle);
  painter.setFont(Theme::detailFont());
  painter.setPen(theme.secondary);
  painter.drawText(area, Qt::AlignLeft | Qt::AlignBottom,
                   painter.fontMetrics().elidedText(detail_, Qt::ElideRight, area.width()));
}
