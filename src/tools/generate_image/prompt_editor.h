#pragma once

#include <QPlainTextEdit>

/// The field that a prompt is written in. Its keys reach it through the panel's; what is pasted or dropped is the
/// panel's business too.
class PromptEditor final : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit PromptEditor(QWidget* parent = nullptr);

  bool hasSelection() const { return textCursor().hasSelection(); }
  /// Takes over a text that was not typed here; the caret goes to its end.
  void follow(const QString& text);

 protected:
  void paintEvent(QPaintEvent* event) override;
};
