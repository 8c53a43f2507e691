#pragma once

#include <QWidget>

#include <optional>

#include "tools/frequent_clis/cli_command.h"

class QLabel;
class QLineEdit;
class TileButton;
class ToggleSwitch;

/// One command on the settings page: grip, icon tile, title, command and the switch for Return. It holds no state of
/// its own: each edit is told as a whole record, and the list sets the record that is then stored.
class CommandRowEditor : public QWidget {
  Q_OBJECT

 public:
  explicit CommandRowEditor(const CLICommand& command, QWidget* parent = nullptr);

  const CLICommand& command() const { return command_; }
  void setCommand(const CLICommand& command);
  void setSelected(bool selected);
  /// While it is carried, the row is drawn above the others.
  void setCarried(bool carried);

  enum class Field { title, command };
  /// The text field with the focus, if one of this row has it.
  std::optional<Field> focusedField() const;
  void focusField(Field field);
  /// Focuses the title with all of it selected, to be typed over.
  void focusForNaming();

  /// Puts the row's controls behind `previous` (null: nothing) in the tab order and returns the last of them.
  QWidget* continueTabOrder(QWidget* previous);

 Q_SIGNALS:
  void edited(const CLICommand& command);
  /// The row was pressed or something in it got the focus.
  void activated();
  /// The row is dragged; where the pointer is, relative to where it took hold of the row.
  void carried(const QPoint& offset);
  void dropped();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void build();
  void connectFields();
  void styleFields();
  void openIconPicker();
  template <class Change>
  void edit(Change change);

  CLICommand command_;
  TileButton* tile_;
  QLineEdit* title_;
  QLineEdit* text_;
  ToggleSwitch* pressReturn_;
  QLabel* caption_;
  bool selected_ = false;
  bool isCarried_ = false;
  /// Where the row was taken hold of, in its own coordinates.
  std::optional<QPoint> grip_;
};
