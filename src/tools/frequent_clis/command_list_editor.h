#pragma once

#include <QUuid>
#include <QWidget>

#include <optional>
#include <vector>

class CommandRowEditor;
class CommandStore;
struct CLICommand;

/// The rows of the settings page, as tall as all of them together. Follows the store, holds the selection, and moves
/// rows by dragging or with Option and the arrows.
class CommandListEditor : public QWidget {
  Q_OBJECT

 public:
  explicit CommandListEditor(CommandStore& store, QWidget* parent = nullptr);

  const std::optional<QUuid>& selected() const { return selected_; }
  void select(const std::optional<QUuid>& id);
  /// Selects and focuses a row and scrolls to it, once the list is on the screen; unknown ids change nothing.
  void focusCommand(const QUuid& id);
  /// The same for a new row, with its title ready to be typed over.
  void nameCommand(const QUuid& id);
  /// Removes the selected command and selects the one that takes its place.
  void removeSelected();

  QSize sizeHint() const override;

 Q_SIGNALS:
  void selectionChanged();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  enum class Focus { title, naming };

  void follow();
  CommandRowEditor* row(const QUuid& id) const;
  CommandRowEditor* makeRow(const CLICommand& command);
  void discard(CommandRowEditor* row);
  int indexOf(const CommandRowEditor* row) const;
  int rowHeight() const;
  QPoint place(std::size_t index) const;
  void layOutRows();
  void slideRows();
  void carry(CommandRowEditor* row, const QPoint& offset);
  void drop(CommandRowEditor* row);
  void cancelCarrying();
  void moveSelection(int delta);
  void moveSelectedRow(int delta);
  void focusRow(const QUuid& id, Focus focus);
  void scrollTo(CommandRowEditor& row);

  CommandStore& store_;
  std::vector<CommandRowEditor*> rows_;
  std::optional<QUuid> selected_;
  /// The row that the pointer holds.
  CommandRowEditor* carried_ = nullptr;
};
