#include "core/ui/panel_menu.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

#include "core/ui/accessible_roles.h"
#include "core/ui/key_caps.h"
#include "core/ui/theme.h"

namespace {

constexpr int kPadding = Theme::kGrid / 2;

}  // namespace

/// One entry: its text, its keys, and the accent under the pointer or where the arrow keys have gone.
class PanelMenu::Row final : public QPushButton {
 public:
  Row(const QString& text, const QStringList& keys, QWidget* parent) : QPushButton(text, parent), keys_{keys} {
    setFocusPolicy(Qt::NoFocus);
    setFont(Theme::rowFont());
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  }

  bool isCurrent() const { return window()->focusWidget() == this; }

  QSize sizeHint() const override {
    const int text = fontMetrics().horizontalAdvance(QPushButton::text());
    const int keys = keys_.caps.isEmpty() ? 0 : static_cast<int>(keys_.size().width()) + 3 * Theme::kGrid;
    return {text + keys + 2 * Theme::kGrid, 4 * Theme::kGrid};
  }

 protected:
  void enterEvent(QEnterEvent* event) override {
    setFocus(Qt::MouseFocusReason);
    QPushButton::enterEvent(event);
  }

  void paintEvent(QPaintEvent*) override {
    const Theme& theme = themeOf(*this);
    const bool active = isCurrent();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(active ? theme.selection : QColor(Qt::transparent));
    painter.drawRoundedRect(rect(), Theme::kRowRadius - 2, Theme::kRowRadius - 2);
    painter.setPen(active ? theme.onAccent : theme.text);
    const QRect area = rect().adjusted(Theme::kGrid, 0, -Theme::kGrid, 0);
    painter.drawText(area, Qt::AlignVCenter, text());
    if (keys_.caps.isEmpty()) return;
    keys_.paint(painter, {area.right() + 1 - keys_.size().width(), (height() - KeyCapRow::kHeight) / 2.0}, theme,
                active ? KeyCapGround::selection : KeyCapGround::card);
  }

 private:
  KeyCapRow keys_;
};

PanelMenu::PanelMenu(const QString& name, QWidget* parent) : QFrame(parent) {
  setAccessibleRole(*this, QAccessible::PopupMenu);
  setAccessibleName(name);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(kPadding, kPadding, kPadding, kPadding);
  column->setSpacing(0);
  hide();
}

void PanelMenu::popup(const std::vector<Entry>& entries, const QPoint& position) {
  hide();
  // One of them may be what was pressed just now.
  for (Row* row : std::exchange(rows_, {})) {
    layout()->removeWidget(row);
    row->hide();
    row->deleteLater();
  }
  for (const Entry& entry : entries) add(entry);
  adjustSize();
  const QRect room = parentWidget()->rect().adjusted(Theme::kGrid, Theme::kGrid, -Theme::kGrid, -Theme::kGrid);
  move(std::max(room.left(), std::min(position.x(), room.right() - width())),
       std::max(room.top(), std::min(position.y(), room.bottom() - height())));
  raise();
  keyboard_ = window()->focusWidget();
  show();
  rows_.front()->setFocus(Qt::PopupFocusReason);
}

void PanelMenu::add(const Entry& entry) {
  auto* row = new Row(entry.text, entry.keys, this);
  connect(row, &QPushButton::clicked, this, [this, choose = entry.choose] {
    hide();
    choose();
  });
  layout()->addWidget(row);
  row->show();
  rows_.push_back(row);
}

bool PanelMenu::handleKey(const KeyPress& key) {
  if (isHidden()) return false;
  switch (key.keyCode) {
    case keycode::kUp:
      moveBy(-1);
      return true;
    case keycode::kDown:
      moveBy(+1);
      return true;
    case keycode::kReturn:
    case keycode::kKeypadEnter:
    case keycode::kSpace:
      press();
      return true;
    default:
      hide();
      return key.keyCode == keycode::kEscape;
  }
}

void PanelMenu::moveBy(int rows) {
  const auto count = static_cast<int>(rows_.size());
  const auto current = std::ranges::find_if(rows_, &Row::isCurrent);
  const auto index = static_cast<int>(current - rows_.begin());
  rows_[static_cast<std::size_t>((index + rows + count) % count)]->setFocus(Qt::PopupFocusReason);
}

void PanelMenu::press() {
  const auto current = std::ranges::find_if(rows_, &Row::isCurrent);
  if (current != rows_.end()) (*current)->click();
}

void PanelMenu::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(theme.edge, 1));
  painter.setBrush(theme.raised);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Theme::kRowRadius, Theme::kRowRadius);
}

// A press anywhere else closes the menu and does nothing more, as with every menu.
bool PanelMenu::eventFilter(QObject* watched, QEvent* event) {
  const auto* widget = qobject_cast<QWidget*>(watched);
  const bool press = event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
  if (!press || !widget || widget == this || isAncestorOf(widget)) return QFrame::eventFilter(watched, event);
  hide();
  return true;
}

void PanelMenu::showEvent(QShowEvent* event) {
  qApp->installEventFilter(this);
  QFrame::showEvent(event);
}

void PanelMenu::hideEvent(QHideEvent* event) {
  qApp->removeEventFilter(this);
  QFrame::hideEvent(event);
  giveKeyboardBack();
  // Where the panel has gone, the menu does not come back with it.
  hide();
}

void PanelMenu::giveKeyboardBack() {
  const QWidget* current = window()->focusWidget();
  if (QWidget* before = std::exchange(keyboard_, nullptr); before && current && isAncestorOf(current))
    before->setFocus(Qt::PopupFocusReason);
}
