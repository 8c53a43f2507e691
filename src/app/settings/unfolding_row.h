#pragma once

#include <QWidget>

/// A row of a settings section that can grow a part below it, such as details or a question.
class UnfoldingRow : public QWidget {
  Q_OBJECT

 public:
  /// `control` stands at the right, `body` below, hidden at first; both become children.
  UnfoldingRow(const QString& title, const QString& description, QWidget* control, QWidget* body);

  /// Shows the body, scrolled into sight, or hides it.
  void unfold(bool open);
  bool isUnfolded() const;

 private:
  QWidget* body_;
};
