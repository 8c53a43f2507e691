#pragma once

#include <QPlainTextEdit>

/// Where the words are typed: several lines, as many as one likes. Pictures are not for it, and said so.
class MessageField final : public QPlainTextEdit {
  Q_OBJECT

 public:
  /// `name` is for screen readers.
  explicit MessageField(const QString& name, QWidget* parent = nullptr);

 Q_SIGNALS:
  /// Something was pasted that is no text.
  void picturePasted();

 protected:
  bool canInsertFromMimeData(const QMimeData* source) const override;
  void insertFromMimeData(const QMimeData* source) override;
  /// Nothing else takes the focus, and a tab is no part of the words.
  bool focusNextPrevChild(bool) override { return true; }
};
