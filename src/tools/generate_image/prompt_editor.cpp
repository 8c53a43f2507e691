#include "tools/generate_image/prompt_editor.h"

#include <QPainter>

#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kInset = 10;
constexpr qreal kRadius = 8;

}  // namespace

PromptEditor::PromptEditor(QWidget* parent) : QPlainTextEdit(parent) {
  setAccessibleName(u"Prompt"_s);
  setFont(Theme::rowFont());
  setFrameShape(QFrame::NoFrame);
  viewport()->setAutoFillBackground(false);
  document()->setDocumentMargin(kInset);
  // A menu would be a window of its own, above a panel that has the keyboard.
  setContextMenuPolicy(Qt::NoContextMenu);
  setAcceptDrops(false);
}

void PromptEditor::follow(const QString& text) {
  if (toPlainText() == text) return;
  setPlainText(text);
  moveCursor(QTextCursor::End);
}

void PromptEditor::paintEvent(QPaintEvent* event) {
  const Theme& theme = themeOf(*this);
  QPainter painter(viewport());
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme.raised);
  painter.drawRoundedRect(viewport()->rect(), kRadius, kRadius);
  painter.end();
  QPlainTextEdit::paintEvent(event);
}
