#include "app/shortcuts/shortcut_popover.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>

#include <algorithm>
#include <utility>

#include "core/ui/icon.h"
#include "core/ui/icon_tile_view.h"
#include "core/ui/key_caps.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kWidth = 312;
/// Room for shadow and arrow around the card.
constexpr int kMargin = 16;
constexpr int kShadow = 14;
constexpr int kArrow = 8;
constexpr int kPadding = 2 * Theme::kGrid;
constexpr int kRadius = 10;
constexpr int kNoteIcon = 14;

/// A small shadow: that of panels reaches further than this card's margin.
void paintShadow(QPainter& painter, const QRectF& card, QColor color) {
  color.setAlphaF(color.alphaF() / kShadow / 2);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  for (int reach = 1; reach < kShadow; ++reach) {
    const QRectF grown = card.adjusted(-reach, -reach, reach, reach).translated(0, 2);
    painter.drawRoundedRect(grown, kRadius + reach, kRadius + reach);
  }
}

}  // namespace

ShortcutPopover::ShortcutPopover(QWidget* window)
    : QWidget(window),
      tile_(new IconTileView({})),
      name_(makeHeading({})),
      caps_(new KeyCaps({})),
      summary_(makeDetailLabel({})),
      notes_(new QVBoxLayout),
      open_(new QPushButton(u"Open"_s)),
      change_(new QPushButton(u"Change…"_s)) {
  auto* column = new QVBoxLayout(this);
  const int edge = kMargin + kPadding;
  column->setContentsMargins(edge, edge, edge, edge);
  column->setSpacing(Theme::kGrid);
  column->addWidget(makeHead());
  column->addWidget(summary_);
  notes_->setSpacing(Theme::kGrid / 2);
  column->addLayout(notes_);
  column->addWidget(makeButtons());
  for (QPushButton* button : {open_, change_}) button->setAutoDefault(true);
  setFixedWidth(kWidth + 2 * kMargin);
  hide();
  connect(open_, &QPushButton::clicked, this, &ShortcutPopover::opened);
  connect(change_, &QPushButton::clicked, this, &ShortcutPopover::changeWanted);
}

QWidget* ShortcutPopover::makeHead() {
  auto* head = new QWidget;
  auto* row = new QHBoxLayout(head);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(Theme::kGrid);
  row->addWidget(tile_);
  row->addWidget(name_, 1);
  row->addWidget(caps_);
  return head;
}

QWidget* ShortcutPopover::makeButtons() {
  auto* buttons = new QWidget;
  auto* row = new QHBoxLayout(buttons);
  row->setContentsMargins(0, Theme::kGrid / 2, 0, 0);
  row->setSpacing(Theme::kGrid);
  row->addStretch(1);
  row->addWidget(change_);
  row->addWidget(open_);
  return buttons;
}

void ShortcutPopover::setEntry(const ShortcutEntry& entry, const QStringList& remarks) {
  entry_ = entry;
  setAccessibleName(entry.name);
  name_->setText(entry.name);
  caps_->setCaps(entry.hotkey ? entry.hotkey->keyCaps() : QStringList());
  caps_->setToolTip(entry.hotkey ? entry.hotkey->spelled() : QString());
  summary_->setText(entry.summary);
  fillNotes(remarks);
  open_->setAccessibleName(u"Open %1"_s.arg(entry.name));
  change_->setVisible(!entry.isApplication());
  change_->setAccessibleName(u"Change %1…"_s.arg(entry.name));
  const QColor quiet = themeOf(*this).secondary;
  tile_->setTile({.symbol = entry.icon, .monogram = {}, .color = entry.isApplication() ? quiet : QColor()});
}

void ShortcutPopover::fillNotes(const QStringList& remarks) {
  while (const QLayoutItem* item = notes_->takeAt(0)) {
    delete item->widget();
    delete item;
  }
  bool isAboutNetwork = entry_.isOffline;
  for (const QString& obstacle : entry_.obstacles)
    addNote(obstacle, std::exchange(isAboutNetwork, false) ? u"wifi.slash"_s : u"exclamationmark.triangle.fill"_s);
  for (const QString& remark : remarks) addNote(remark, u"keyboard"_s);
}

void ShortcutPopover::addNote(const QString& text, const QString& symbol) {
  auto* note = new QWidget;
  auto* row = new QHBoxLayout(note);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(Theme::kGrid);
  auto* icon = new QLabel;
  icon->setPixmap(symbolPixmap(symbol, kNoteIcon, themeOf(*this).secondary, devicePixelRatioF()));
  QLabel* label = makeDetailLabel(text);
  label->setForegroundRole(QPalette::WindowText);
  row->addWidget(icon, 0, Qt::AlignTop);
  row->addWidget(label, 1);
  notes_->addWidget(note);
  note->show();
}

void ShortcutPopover::showAt(const QRect& anchor) {
  layout()->activate();
  const int height = layout()->totalHeightForWidth(width());
  resize(width(), height);
  const QRect window = parentWidget()->rect();
  isBelow_ = window.bottom() - anchor.bottom() >= height - kMargin || anchor.center().y() < window.center().y();
  const int rightmost = window.width() - width();
  const int x = std::clamp(anchor.center().x() - width() / 2, 0, std::max(0, rightmost));
  const int y = isBelow_ ? anchor.bottom() + 1 - kMargin + kArrow : anchor.top() - height + kMargin - kArrow;
  move(x, y);
  arrow_ = std::clamp(anchor.center().x() - x, kMargin + kRadius + kArrow, width() - kMargin - kRadius - kArrow);
  show();
  raise();
  update();
}

void ShortcutPopover::enter() {
  show();
  (change_->isVisible() ? change_ : open_)->setFocus(Qt::TabFocusReason);
}

bool ShortcutPopover::hasKeyboard() const { return open_->hasFocus() || change_->hasFocus(); }

QRect ShortcutPopover::cardRect() const { return rect().adjusted(kMargin, kMargin, -kMargin, -kMargin); }

void ShortcutPopover::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  const QRectF card = QRectF(cardRect()).adjusted(0.5, 0.5, -0.5, -0.5);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QPainterPath shape;
  shape.addRoundedRect(card, kRadius, kRadius);
  const double base = isBelow_ ? card.top() : card.bottom();
  const double tip = isBelow_ ? base - kArrow : base + kArrow;
  QPainterPath arrow;
  arrow.addPolygon(QPolygonF({{arrow_ - kArrow * 1.0, base}, {arrow_ * 1.0, tip}, {arrow_ + kArrow * 1.0, base}}));
  arrow.closeSubpath();
  paintShadow(painter, card, theme.shadow);
  painter.setPen(QPen(theme.edge, 1));
  painter.setBrush(theme.card);
  painter.drawPath(shape.united(arrow));
}

void ShortcutPopover::enterEvent(QEnterEvent*) { Q_EMIT pointed(); }

void ShortcutPopover::leaveEvent(QEvent*) { Q_EMIT left(); }
