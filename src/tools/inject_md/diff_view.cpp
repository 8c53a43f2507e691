#include "tools/inject_md/diff_view.h"

#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <array>

#include "base/visible_text.h"
#include "core/ui/accessible_roles.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

using Kind = DiffLine::Kind;

constexpr int kLine = 2 * Theme::kGrid;
/// What the card has left below two rows.
constexpr int kHeight = 23 * Theme::kGrid;
constexpr int kPadding = 2 * Theme::kGrid;
constexpr int kSign = 2 * Theme::kGrid;
/// More than a line has room for.
constexpr int kShown = 160;
/// A screen reader is told the first of them.
constexpr std::size_t kSpoken = 40;
constexpr int kTint = 36;

struct KindText {
  Kind kind;
  QStringView sign;
  QStringView spoken;
};
constexpr std::array kKindTexts = {
    KindText{Kind::same, u"", u""},
    KindText{Kind::removed, u"−", u"removed: "},
    KindText{Kind::added, u"+", u"added: "},
    KindText{Kind::omission, u"⋯", u""},
};

const KindText& text(Kind kind) { return *std::ranges::find(kKindTexts, kind, &KindText::kind); }

QString shownText(const DiffLine& line) {
  QString shown = line.text.left(kShown + 1);
  return visibleLine(shown.replace(u'\t', u"    "_s), kShown);
}

QString spokenText(const std::vector<DiffLine>& lines) {
  QStringList spoken;
  for (std::size_t index = 0; index < std::min(lines.size(), kSpoken); ++index)
    spoken.append(text(lines[index].kind).spoken.toString() + shownText(lines[index]));
  return u"Changes: %1"_s.arg(spoken.join(u"; "_s));
}

}  // namespace

DiffView::DiffView(QWidget* parent) : QAbstractScrollArea(parent) {
  setAccessibleRole(*this, QAccessible::StaticText);
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFixedHeight(kHeight);
  setViewportMargins(0, 1, 0, 0);
  viewport()->setAutoFillBackground(false);
  verticalScrollBar()->setSingleStep(kLine);
  hide();
}

void DiffView::setLines(const std::vector<DiffLine>& lines) {
  setVisible(!lines.empty());
  if (lines == lines_) return;
  lines_ = lines;
  setAccessibleName(spokenText(lines_));
  fitScrollBar();
  verticalScrollBar()->setValue(0);
  viewport()->update();
}

void DiffView::turn(int pages) {
  QScrollBar& bar = *verticalScrollBar();
  // The last line of one page is the first of the next.
  bar.setValue(bar.value() + pages * (bar.pageStep() / kLine - 1) * kLine);
}

int DiffView::contentHeight() const { return static_cast<int>(lines_.size()) * kLine + 2 * Theme::kGrid; }

void DiffView::fitScrollBar() {
  verticalScrollBar()->setPageStep(viewport()->height());
  verticalScrollBar()->setRange(0, std::max(0, contentHeight() - viewport()->height()));
}

bool DiffView::hasPages() const { return contentHeight() > kHeight; }

/// The viewport's events go elsewhere: this is what is around it, where the hairline passes above the scroll bar too.
bool DiffView::event(QEvent* event) {
  if (event->type() != QEvent::Paint) return QAbstractScrollArea::event(event);
  QPainter(this).fillRect(QRect(0, 0, width(), 1), themeOf(*this).hairline);
  return true;
}

void DiffView::resizeEvent(QResizeEvent*) { fitScrollBar(); }

void DiffView::paintEvent(QPaintEvent* event) {
  QPainter painter(viewport());
  painter.setFont(Theme::monospacedFont());
  QRect row(0, Theme::kGrid - verticalScrollBar()->value(), viewport()->width(), kLine);
  for (const DiffLine& line : lines_) {
    if (row.intersects(event->rect())) paintLine(painter, row, line);
    row.translate(0, kLine);
  }
}

void DiffView::paintLine(QPainter& painter, const QRect& row, const DiffLine& line) const {
  const Theme& theme = themeOf(*this);
  const bool isChange = line.kind == Kind::added || line.kind == Kind::removed;
  QColor color = line.kind == Kind::added ? theme.success : theme.failure;
  const QColor signColor = isChange ? color : theme.secondary;
  color.setAlpha(kTint);
  if (isChange) painter.fillRect(row, color);
  const QRect texts = row.adjusted(kPadding + kSign, 0, -kPadding, 0);
  painter.setPen(signColor);
  painter.drawText(QRect(kPadding, row.top(), kSign, row.height()), Qt::AlignVCenter, text(line.kind).sign.toString());
  painter.setPen(isChange ? theme.text : theme.secondary);
  painter.drawText(texts, Qt::AlignVCenter,
                   painter.fontMetrics().elidedText(shownText(line), Qt::ElideRight, texts.width()));
}
