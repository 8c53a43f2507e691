#pragma once

#include <QScrollArea>

/// Text that may be longer than its place. The keyboard stops in it, and shows that, only while there is something to
/// scroll.
class ReadingArea : public QScrollArea {
  Q_OBJECT

 public:
  /// `name` is for screen readers.
  explicit ReadingArea(const QString& name, QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
};
