#include "tools/image_to_prompt/prompt_text.h"

#include <QContextMenuEvent>
#include <QTextBlockFormat>
#include <QTextCursor>
#include <QTextDocument>

#include "core/ui/theme.h"
#include "tools/image_to_prompt/promptify_result_model.h"

namespace {

constexpr qreal kLineSpacing = 3;

/// Alike for measuring and for showing.
void lay(QTextDocument& document, const QString& prompt) {
  QFont font = Theme::rowFont();
  font.setWeight(QFont::Normal);
  document.setDefaultFont(font);
  document.setDocumentMargin(0);
  QTextOption option = document.defaultTextOption();
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  document.setDefaultTextOption(option);
  document.setPlainText(prompt);
  QTextBlockFormat spacing;
  spacing.setLineHeight(kLineSpacing, QTextBlockFormat::LineDistanceHeight);
  QTextCursor all(&document);
  all.select(QTextCursor::Document);
  all.mergeBlockFormat(spacing);
  document.setTextWidth(promptcard::kTextWidth);
}

}  // namespace

PromptText::PromptText(const QString& prompt, QWidget* parent) : QTextEdit(parent) {
  setAccessibleName(QStringLiteral("Prompt"));
  setReadOnly(true);
  setUndoRedoEnabled(false);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  viewport()->setAutoFillBackground(false);
  constexpr int kInset = promptcard::kTextInset;
  setViewportMargins(kInset, kInset, kInset, kInset);
  lay(*document(), prompt);
  // It would scroll to the end otherwise.
  moveCursor(QTextCursor::Start);
}

void PromptText::contextMenuEvent(QContextMenuEvent* event) { Q_EMIT menuWanted(event->globalPos()); }

double PromptText::heightOf(const QString& prompt) {
  QTextDocument document;
  lay(document, prompt);
  return document.size().height();
}
