#include "tools/frequent_clis/command_list_editor.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPropertyAnimation>
#include <QScrollArea>
#include <QStyle>
#include <QTimer>

#include <algorithm>

#include "core/ui/theme.h"
#include "tools/frequent_clis/command_row_editor.h"
#include "tools/frequent_clis/command_store.h"

namespace {

constexpr int kRadius = 10;
/// Room between the card's edge and the rows.
constexpr int kEdge = 2;

}  // namespace

CommandListEditor::CommandListEditor(CommandStore& store, QWidget* parent) : QWidget(parent), store_(store) {
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  connect(&store_, &CommandStore::changed, this, &CommandListEditor::follow);
  follow();
}

void CommandListEditor::follow() {
  std::vector<CommandRowEditor*> rows;
  for (const CLICommand& command : store_.commands()) {
    auto* editor = row(command.id);
    if (editor) editor->setCommand(command);
    rows.push_back(editor ? editor : makeRow(command));
  }
  if (rows == rows_) return;
  std::swap(rows, rows_);
  for (CommandRowEditor* old : rows)
    if (indexOf(old) < 0) discard(old);
  if (selected_ && !row(*selected_)) select(std::nullopt);
  updateGeometry();
  layOutRows();
  QWidget* last = nullptr;
  for (CommandRowEditor* row : rows_) last = row->continueTabOrder(last);
}

void CommandListEditor::discard(CommandRowEditor* row) {
  if (row == carried_) carried_ = nullptr;
  row->hide();
  row->deleteLater();
}

CommandRowEditor* CommandListEditor::row(const QUuid& id) const {
  const auto found = std::ranges::find(rows_, id, [](const auto* row) { return row->command().id; });
  return found == rows_.end() ? nullptr : *found;
}

CommandRowEditor* CommandListEditor::makeRow(const CLICommand& command) {
  auto* row = new CommandRowEditor(command, this);
  row->show();
  connect(row, &CommandRowEditor::edited, this, [this](const CLICommand& edited) { store_.replace(edited); });
  connect(row, &CommandRowEditor::activated, this, [this, row] { select(row->command().id); });
  connect(row, &CommandRowEditor::carried, this, [this, row](const QPoint& offset) { carry(row, offset); });
  connect(row, &CommandRowEditor::dropped, this, [this, row] { drop(row); });
  return row;
}

int CommandListEditor::indexOf(const CommandRowEditor* row) const {
  const auto found = std::ranges::find(rows_, row);
  return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

void CommandListEditor::select(const std::optional<QUuid>& id) {
  if (id == selected_) return;
  selected_ = id;
  for (CommandRowEditor* row : rows_) row->setSelected(row->command().id == selected_);
  Q_EMIT selectionChanged();
}

void CommandListEditor::focusCommand(const QUuid& id) { focusRow(id, Focus::title); }

void CommandListEditor::nameCommand(const QUuid& id) { focusRow(id, Focus::naming); }

void CommandListEditor::focusRow(const QUuid& id, Focus focus) {
  if (!row(id)) return;
  select(id);
  // The window may only be opening, and a new row has no place yet: both are done when the event loop turns.
  QTimer::singleShot(0, this, [this, id, focus] {
    CommandRowEditor* editor = row(id);
    if (!editor) return;
    if (focus == Focus::naming)
      editor->focusForNaming();
    else
      editor->focusField(CommandRowEditor::Field::title);
    scrollTo(*editor);
  });
}

void CommandListEditor::removeSelected() {
  if (!selected_) return;
  const int index = indexOf(row(*selected_));
  store_.remove(*selected_);
  if (rows_.empty()) return;
  const auto next = std::min(static_cast<std::size_t>(index), rows_.size() - 1);
  select(rows_[next]->command().id);
}

int CommandListEditor::rowHeight() const { return rows_.empty() ? 0 : rows_.front()->sizeHint().height(); }

QSize CommandListEditor::sizeHint() const { return {400, rowHeight() * static_cast<int>(rows_.size()) + 2 * kEdge}; }

void CommandListEditor::resizeEvent(QResizeEvent*) { layOutRows(); }

QPoint CommandListEditor::place(std::size_t index) const {
  return {kEdge, kEdge + static_cast<int>(index) * rowHeight()};
}

void CommandListEditor::layOutRows() {
  const QSize size(width() - 2 * kEdge, rowHeight());
  for (std::size_t index = 0; index < rows_.size(); ++index) {
    if (rows_[index] == carried_) continue;
    delete rows_[index]->findChild<QPropertyAnimation*>({}, Qt::FindDirectChildrenOnly);
    rows_[index]->setGeometry(QRect(place(index), size));
  }
  update();
}

// Rows make room for the carried one by sliding, so that the eye can follow them.
void CommandListEditor::slideRows() {
  const int duration = std::min(style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this), 120);
  if (duration == 0) return layOutRows();
  for (std::size_t index = 0; index < rows_.size(); ++index) {
    if (rows_[index] == carried_) continue;
    delete rows_[index]->findChild<QPropertyAnimation*>({}, Qt::FindDirectChildrenOnly);
    if (rows_[index]->pos() == place(index)) continue;
    auto* slide = new QPropertyAnimation(rows_[index], "pos", rows_[index]);
    slide->setDuration(duration);
    slide->setEasingCurve(QEasingCurve::OutCubic);
    slide->setEndValue(place(index));
    slide->start(QAbstractAnimation::DeleteWhenStopped);
  }
}

void CommandListEditor::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(theme.hairline, 1));
  painter.setBrush(theme.card);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
  const int height = rowHeight();
  for (int index = 1; index < static_cast<int>(rows_.size()); ++index)
    painter.fillRect(Theme::kGrid, kEdge + index * height, width() - 2 * Theme::kGrid, 1, theme.hairline);
}

void CommandListEditor::carry(CommandRowEditor* row, const QPoint& offset) {
  carried_ = row;
  const int height = rowHeight();
  const int last = static_cast<int>(rows_.size()) - 1;
  row->move(kEdge, std::clamp(row->y() + offset.y(), kEdge, kEdge + last * height));
  const int from = indexOf(row);
  const int to = std::clamp((row->y() + height / 2) / height, 0, last);
  rows_.erase(rows_.begin() + from);
  rows_.insert(rows_.begin() + to, row);
  if (from != to) slideRows();
  scrollTo(*row);
}

void CommandListEditor::drop(CommandRowEditor* row) {
  carried_ = nullptr;
  layOutRows();
  store_.move(row->command().id, indexOf(row));
}

void CommandListEditor::cancelCarrying() {
  carried_->setCarried(false);
  carried_ = nullptr;
  follow();
  layOutRows();
}

void CommandListEditor::keyPressEvent(QKeyEvent* event) {
  const int step = event->key() == Qt::Key_Down ? 1 : event->key() == Qt::Key_Up ? -1 : 0;
  const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
  if (event->key() == Qt::Key_Escape && carried_)
    cancelCarrying();
  else if (step != 0 && modifiers == Qt::AltModifier)
    moveSelectedRow(step);
  else if (step != 0 && modifiers == Qt::NoModifier)
    moveSelection(step);
  else
    QWidget::keyPressEvent(event);
}

void CommandListEditor::moveSelection(int delta) {
  if (!selected_) return;
  const CommandRowEditor* current = row(*selected_);
  const int next = indexOf(current) + delta;
  if (next < 0 || next >= static_cast<int>(rows_.size())) return;
  CommandRowEditor* target = rows_[static_cast<std::size_t>(next)];
  target->focusField(current->focusedField().value_or(CommandRowEditor::Field::title));
  scrollTo(*target);
}

void CommandListEditor::moveSelectedRow(int delta) {
  if (!selected_) return;
  CommandRowEditor* current = row(*selected_);
  store_.move(*selected_, indexOf(current) + delta);
  scrollTo(*current);
}

void CommandListEditor::scrollTo(CommandRowEditor& row) {
  for (QWidget* parent = parentWidget(); parent; parent = parent->parentWidget())
    if (auto* area = qobject_cast<QScrollArea*>(parent)) {
      area->ensureWidgetVisible(&row, 0, Theme::kGrid);
      return;
    }
}
