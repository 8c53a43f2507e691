#include "tools/frequent_clis/row_menu.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>

#include "core/ui/key_caps.h"
#include "core/ui/theme.h"

namespace {

constexpr int kPadding = 4;

/// One entry: its text, its keys, and the accent under the pointer.
class MenuEntry final : public QPushButton {
 public:
  MenuEntry(const QString& text, const QStringList& keys, QWidget* parent) : QPushButton(text, parent), keys_{keys} {
    setFocusPolicy(Qt::NoFocus);
    setFont(Theme::rowFont());
  }

  QSize sizeHint() const override {
    const int text = fontMetrics().horizontalAdvance(QPushButton::text());
    return {text + static_cast<int>(keys_.size().width()) + 5 * Theme::kGrid, 4 * Theme::kGrid};
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    const Theme& theme = themeOf(*this);
    const bool active = underMouse();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(active ? theme.selection : QColor(Qt::transparent));
    painter.drawRoundedRect(rect(), Theme::kRowRadius - 2, Theme::kRowRadius - 2);
    painter.setPen(active ? theme.onAccent : theme.text);
    const QRect area = rect().adjusted(Theme::kGrid, 0, -Theme::kGrid, 0);
    painter.drawText(area, Qt::AlignVCenter, text());
    keys_.paint(painter, {area.right() + 1 - keys_.size().width(), (height() - KeyCapRow::kHeight) / 2.0}, theme,
                active ? KeyCapGround::selection : KeyCapGround::card);
  }

 private:
  KeyCapRow keys_;
};

}  // namespace

RowMenu::RowMenu(const QString& action, const QStringList& keys, QWidget* parent)
    : QFrame(parent), action_(new MenuEntry(action, keys, this)) {
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(kPadding, kPadding, kPadding, kPadding);
  layout->addWidget(action_);
  setAccessibleName(action);
  hide();
  connect(action_, &QPushButton::clicked, this, [this] {
    hide();
    Q_EMIT triggered();
  });
}

void RowMenu::popup(const QPoint& position) {
  adjustSize();
  const QRect room = parentWidget()->rect().adjusted(Theme::kGrid, Theme::kGrid, -Theme::kGrid, -Theme::kGrid);
  move(std::clamp(position.x(), room.left(), room.right() - width()),
       std::clamp(position.y(), room.top(), room.bottom() - height()));
  raise();
  show();
}

void RowMenu::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(theme.hairline, 1));
  painter.setBrush(theme.raised);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Theme::kRowRadius, Theme::kRowRadius);
}

// A press anywhere else closes the menu and does nothing more, as with every menu.
bool RowMenu::eventFilter(QObject* watched, QEvent* event) {
  const auto* widget = qobject_cast<QWidget*>(watched);
  const bool press = event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
  if (!press || !widget || widget == this || isAncestorOf(widget)) return QFrame::eventFilter(watched, event);
  hide();
  return true;
}

void RowMenu::showEvent(QShowEvent* event) {
  qApp->installEventFilter(this);
  QFrame::showEvent(event);
}

void RowMenu::hideEvent(QHideEvent* event) {
  qApp->removeEventFilter(this);
  QFrame::hideEvent(event);
}
