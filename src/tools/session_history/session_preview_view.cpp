#include "tools/session_history/session_preview_view.h"

#include <QPainter>

#include "base/visible_text.h"
#include "core/ui/theme.h"
#include "core/ui/wrapped_text.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kLines = 3;
constexpr int kPadding = 2 * Theme::kGrid;
/// Three lines of details and their title.
constexpr int kHeight = 96;

}  // namespace

SessionPreviewView::SessionPreviewView(QWidget* parent) : QWidget(parent) {
  setFixedHeight(kHeight);
  setPreview({});
}

void SessionPreviewView::setPreview(const SessionPreview& preview) {
  preview_ = preview;
  setAccessibleName(u"First prompt: %1. Last prompt: %2"_s.arg(preview.firstPrompt, preview.lastPrompt));
  update();
}

void SessionPreviewView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(QRect(0, 0, width(), 1), themeOf(*this).hairline);
  const int column = (width() - 3 * kPadding) / 2;
  const QRect first(kPadding, kPadding / 2, column, height() - kPadding / 2);
  paintPrompt(painter, first, u"First prompt"_s, preview_.firstPrompt);
  paintPrompt(painter, first.translated(column + kPadding, 0), u"Last prompt"_s, preview_.lastPrompt);
}

void SessionPreviewView::paintPrompt(QPainter& painter, const QRect& area, const QString& title,
                                     const QString& prompt) const {
  if (prompt.isEmpty()) return;
  const Theme& theme = themeOf(*this);
  const QFont font = Theme::detailFont();
  const int line = QFontMetrics(font).height() + 1;
  painter.setFont(font);
  painter.setPen(theme.secondary);
  painter.drawText(QRect(area.left(), area.top(), area.width(), line), Qt::AlignVCenter, title);
  painter.setPen(theme.text);
  QRect place(area.left(), area.top() + line + 2, area.width(), line);
  for (const QString& text : wrappedLines(visibleLine(prompt, kPreviewedPrompt), font, area.width(), kLines)) {
    painter.drawText(place, Qt::AlignVCenter, text);
    place.translate(0, line);
  }
}
