#include "tools/asking/question_field.h"

#include <QAbstractTextDocumentLayout>
#include <QKeyEvent>
#include <QMimeData>
#include <QTextBlock>

#include <algorithm>

#include "core/ui/theme.h"

namespace {

constexpr int kMostLines = 5;
/// More than a question can need; a paste of megabytes would make every key slow.
constexpr qsizetype kLongest = 100'000;

/// A block that has not been in sight is laid out only now.
int lineCount(const QTextBlock& block) {
  block.document()->documentLayout()->blockBoundingRect(block);
  return std::max(1, block.layout()->lineCount());
}

}  // namespace

QuestionField::QuestionField(AskModel& model, QWidget* parent) : QPlainTextEdit(parent), model_(model) {
  setFont(Theme::fieldFont());
  setFrameShape(QFrame::NoFrame);
  setTabChangesFocus(true);
  setAcceptDrops(false);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setContextMenuPolicy(Qt::NoContextMenu);
  setCursorWidth(2);
  document()->setDocumentMargin(0);
  viewport()->setAutoFillBackground(false);
  connect(this, &QPlainTextEdit::textChanged, this, [this] {
    fitHeight();
    model_.setQuestion(toPlainText().left(kLongest));
  });
  connect(&model_, &AskModel::changed, this, &QuestionField::follow);
  follow();
  fitHeight();
}

/// Qt draws it anew only when it comes or goes, not when it becomes another one.
void QuestionField::setPlaceholder(const QString& text) {
  if (text == placeholderText()) return;
  setPlaceholderText(text);
  viewport()->update();
  setAccessibleName(text);
}

void QuestionField::follow() {
  if (toPlainText() == model_.question()) return;
  setPlainText(model_.question());
  moveCursor(QTextCursor::End);
}

void QuestionField::keepPlace() {
  place_ = textCursor();
  place_.setKeepPositionOnInsert(true);
}

void QuestionField::insert(const QString& text) {
  place_.setKeepPositionOnInsert(false);
  place_.insertText(text);
  ensureCursorVisible();
}

void QuestionField::keyPressEvent(QKeyEvent* event) {
  const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (isReturn && !event->modifiers().testFlag(Qt::ShiftModifier)) {
    Q_EMIT submitted();
    return;
  }
  if (event->key() == Qt::Key_Up && document()->isEmpty() && !model_.lastQuestion().isEmpty()) {
    model_.setQuestion(model_.lastQuestion());
    return;
  }
  QPlainTextEdit::keyPressEvent(event);
}

void QuestionField::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  fitHeight();
}

void QuestionField::fitHeight() {
  int lines = 0;
  for (QTextBlock block = document()->begin(); block.isValid() && lines < kMostLines; block = block.next())
    lines += lineCount(block);
  const bool isMore = lines > kMostLines || document()->blockCount() > kMostLines;
  setVerticalScrollBarPolicy(isMore ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
  const int height = std::clamp(lines, 1, kMostLines) * fontMetrics().lineSpacing() + 4;
  if (height != this->height()) setFixedHeight(height);
}

bool QuestionField::canInsertFromMimeData(const QMimeData* source) const { return source->hasText(); }
