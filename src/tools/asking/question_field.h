#pragma once

#include <QPlainTextEdit>
#include <QTextDocumentFragment>

#include "tools/asking/ask_model.h"

/// Where a question is typed, one line high at first and growing with what is typed. Return asks, with Shift it breaks
/// the line; Up in the empty field brings the last question back.
class QuestionField : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit QuestionField(AskModel& model, QWidget* parent = nullptr);

  void setPlaceholder(const QString& text);
  /// What is marked in it; empty: nothing.
  QString selectedText() const { return textCursor().selection().toPlainText(); }
  /// Keeps the cursor's place for a text that comes later.
  void keepPlace();
  /// Puts text at the place kept last.
  void insert(const QString& text);

 Q_SIGNALS:
  void submitted();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  /// Pictures and files are the panel's.
  bool canInsertFromMimeData(const QMimeData* source) const override;

 private:
  void follow();
  void fitHeight();

  AskModel& model_;
  QTextCursor place_;
};
