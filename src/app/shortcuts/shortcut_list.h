#pragma once

#include <QAbstractButton>
#include <QWidget>

#include <vector>

#include "app/shortcuts/keyboard_layout_model.h"

class QVBoxLayout;

/// One shortcut in the list: icon, name, what is wrong with it, key caps.
class ShortcutRow : public QAbstractButton {
  Q_OBJECT

 public:
  static constexpr int kHeight = 32;

  explicit ShortcutRow(QWidget* parent = nullptr);
  void setEntry(const ShortcutEntry& entry);
  QSize sizeHint() const override { return {200, kHeight}; }

 Q_SIGNALS:
  void pointed();
  void left();
  void focused(Qt::FocusReason reason);
  void opened();
  void entered();
  /// Rows down, and columns to the right.
  void stepped(int rows, int columns);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;

 private:
  ShortcutEntry entry_;
};

/// All shortcuts in words, for those who do not look for keys: the tools in two columns, the application's own in a
/// third one with what the marks of the keyboard mean.
class ShortcutList : public QWidget {
  Q_OBJECT

 public:
  explicit ShortcutList(KeyboardLayoutModel& model, QWidget* parent = nullptr);

  ShortcutRow* row(std::size_t entry) const { return rows_[entry]; }

 Q_SIGNALS:
  /// All by the place in the model's entries.
  void pointed(std::size_t entry);
  void left();
  void focused(std::size_t entry, Qt::FocusReason reason);
  void chosen(std::size_t entry);
  void opened(std::size_t entry);
  void entered(std::size_t entry);

 private:
  QVBoxLayout* addColumn(const QString& heading);
  ShortcutRow* makeRow(std::size_t entry);
  void step(std::size_t entry, int rows, int columns);
  void follow();

  KeyboardLayoutModel& model_;
  std::vector<ShortcutRow*> rows_;
  /// The first entry of each column, and one past the last.
  std::vector<std::size_t> columns_;
};
