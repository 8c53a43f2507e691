#include "app/shortcuts/shortcut_list.h"

#include <QFocusEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

#include <algorithm>
#include <cmath>

#include "app/shortcuts/mark_legend.h"
#include "core/hotkeys/key_press.h"
#include "core/ui/icon.h"
#include "core/ui/key_caps.h"
#include "core/ui/key_event.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kIcon = 18;
constexpr int kPadding = Theme::kGrid;
constexpr int kMark = 14;
constexpr double kDimmed = 0.55;

}  // namespace

ShortcutRow::ShortcutRow(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ShortcutRow::setEntry(const ShortcutEntry& entry) {
  entry_ = entry;
  const QString shortcut = entry.hotkey ? entry.hotkey->spelled() : u"no shortcut"_s;
  setAccessibleName(u"%1, %2"_s.arg(entry.name, shortcut));
  setAccessibleDescription((QStringList{entry.summary} + entry.obstacles).join(u'\n'));
  update();
}

void ShortcutRow::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(hasFocus() ? QPen(theme.accent, 2) : QPen(Qt::NoPen));
  painter.setBrush(underMouse() ? theme.hover : QColor(Qt::transparent));
  painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), Theme::kRowRadius - 2, Theme::kRowRadius - 2);

  const KeyCapRow caps{entry_.hotkey ? entry_.hotkey->keyCaps() : QStringList()};
  const double capsLeft = width() - kPadding - caps.size().width();
  caps.paint(painter, {capsLeft, (height() - KeyCapRow::kHeight) / 2.0}, theme);
  QRectF mark(capsLeft - kMark - kPadding, (height() - kMark) / 2.0, kMark, kMark);
  if (!entry_.obstacles.isEmpty()) {
    paintSymbol(painter, entry_.isOffline ? u"wifi.slash"_s : u"exclamationmark.triangle.fill"_s, mark,
                theme.secondary);
    painter.setOpacity(entry_.isBlocked || entry_.isOffline ? kDimmed : 1);
  }
  const QRectF icon(kPadding, (height() - kIcon) / 2.0, kIcon, kIcon);
  paintSymbol(painter, entry_.icon, icon, entry_.isApplication() ? theme.secondary : theme.accent);
  QRectF text(icon.right() + kPadding, 0, mark.left() - icon.right() - 2 * kPadding, height());
  painter.setFont(Theme::detailFont());
  painter.setPen(theme.text);
  painter.drawText(text, Qt::AlignVCenter | Qt::TextSingleLine,
                   painter.fontMetrics().elidedText(entry_.name, Qt::ElideRight, static_cast<int>(text.width())));
}

void ShortcutRow::keyPressEvent(QKeyEvent* event) {
  switch (keyPress(*event).keyCode) {
    case keycode::kReturn:
    case keycode::kKeypadEnter:
      Q_EMIT opened();
      return;
    case keycode::kSpace:
      Q_EMIT entered();
      return;
    case keycode::kUp:
      Q_EMIT stepped(-1, 0);
      return;
    case keycode::kDown:
      Q_EMIT stepped(1, 0);
      return;
    case keycode::kLeft:
      Q_EMIT stepped(0, -1);
      return;
    case keycode::kRight:
      Q_EMIT stepped(0, 1);
      return;
    default:
      event->ignore();
  }
}

void ShortcutRow::enterEvent(QEnterEvent*) { Q_EMIT pointed(); }

void ShortcutRow::leaveEvent(QEvent*) { Q_EMIT left(); }

void ShortcutRow::focusInEvent(QFocusEvent* event) {
  QAbstractButton::focusInEvent(event);
  Q_EMIT focused(event->reason());
}

ShortcutList::ShortcutList(KeyboardLayoutModel& model, QWidget* parent) : QWidget(parent), model_(model) {
  auto* columns = new QHBoxLayout(this);
  columns->setContentsMargins(0, 0, 0, 0);
  columns->setSpacing(3 * Theme::kGrid);
  const auto& entries = model_.entries();
  const auto tools = static_cast<std::size_t>(std::ranges::count(entries, false, &ShortcutEntry::isApplication));
  columns_ = {0, (tools + 1) / 2, tools, entries.size()};
  const std::array headings = {u"Tools"_s, QString(), u"Vantle itself"_s};
  QVBoxLayout* column = nullptr;
  for (std::size_t index = 0; index < headings.size(); ++index) {
    column = addColumn(headings[index]);
    for (std::size_t entry = columns_[index]; entry < columns_[index + 1]; ++entry) column->addWidget(makeRow(entry));
    if (index + 1 < headings.size()) column->addStretch(1);
  }
  column->addStretch(1);
  column->addWidget(new MarkLegend);
  connect(&model_, &KeyboardLayoutModel::changed, this, &ShortcutList::follow);
  follow();
}

QVBoxLayout* ShortcutList::addColumn(const QString& heading) {
  auto* column = new QVBoxLayout;
  column->setSpacing(0);
  QLabel* label = makeHeading(heading);
  label->setContentsMargins(kPadding, 0, 0, Theme::kGrid / 2);
  column->addWidget(label);
  static_cast<QHBoxLayout*>(layout())->addLayout(column, 1);
  return column;
}

ShortcutRow* ShortcutList::makeRow(std::size_t entry) {
  auto* row = new ShortcutRow;
  rows_.push_back(row);
  connect(row, &ShortcutRow::pointed, this, [this, entry] { Q_EMIT pointed(entry); });
  connect(row, &ShortcutRow::left, this, &ShortcutList::left);
  connect(row, &ShortcutRow::clicked, this, [this, entry] { Q_EMIT chosen(entry); });
  connect(row, &ShortcutRow::opened, this, [this, entry] { Q_EMIT opened(entry); });
  connect(row, &ShortcutRow::entered, this, [this, entry] { Q_EMIT entered(entry); });
  connect(row, &ShortcutRow::focused, this, [this, entry](Qt::FocusReason reason) { Q_EMIT focused(entry, reason); });
  connect(row, &ShortcutRow::stepped, this, [this, entry](int rows, int columns) { step(entry, rows, columns); });
  return row;
}

/// Up and down go on in the next column, sideways stays in its row where the column is long enough.
void ShortcutList::step(std::size_t entry, int rows, int columns) {
  const auto count = static_cast<int>(rows_.size());
  const auto next = std::ranges::upper_bound(columns_, entry);
  const auto column = static_cast<int>(std::distance(columns_.begin(), next)) - 1 + columns;
  if (column < 0 || column + 2 > static_cast<int>(columns_.size())) return;
  const auto first = static_cast<int>(columns_[static_cast<std::size_t>(column)]);
  const auto end = static_cast<int>(columns_[static_cast<std::size_t>(column) + 1]);
  int target = static_cast<int>(entry) + rows;
  if (columns != 0) target = std::min(first + static_cast<int>(entry - *std::prev(next)), end - 1);
  if (target >= 0 && target < count) rows_[static_cast<std::size_t>(target)]->setFocus(Qt::TabFocusReason);
}

void ShortcutList::follow() {
  for (std::size_t entry = 0; entry < rows_.size(); ++entry) rows_[entry]->setEntry(model_.entries()[entry]);
}
