#include "core/ui/launcher/tool_tile.h"

#include <QAccessibleWidget>
#include <QMouseEvent>
#include <QPainter>

#include <cmath>
#include <numbers>
#include <utility>

#include "core/ui/icon.h"
#include "core/ui/icon_tile.h"
#include "core/ui/key_caps.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kIconSize = 40;
constexpr int kIconTop = 13;
constexpr int kNameTop = 57;
constexpr int kNameHeight = 20;
constexpr int kCapsTop = 81;
constexpr int kMarkInset = 10;
constexpr int kMarkSize = 14;
/// How much the icon grows in a pulse.
constexpr double kPulseGrowth = 0.16;
constexpr int kPulseMilliseconds = 180;
constexpr double kDimmed = 0.45;
constexpr double kDimmedOnHighlight = 0.7;

class AccessibleTile final : public QAccessibleWidget {
 public:
  explicit AccessibleTile(ToolTile* tile) : QAccessibleWidget(tile, QAccessible::Button), tile_(*tile) {}

  // A tile that is only arranged starts nothing: it is an entry among others.
  QAccessible::Role role() const override {
    return tile_.face().isArranging ? QAccessible::ListItem : QAccessible::Button;
  }
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.focusable = state.selectable = true;
    state.focused = state.selected = tile_.face().isSelected;
    state.disabled = !tile_.face().obstacle.isEmpty();
    return state;
  }
  QStringList actionNames() const override {
    return tile_.face().isArranging ? QStringList{pressAction(), kPin} : QStringList{pressAction()};
  }
  void doAction(const QString& action) override {
    if (action == pressAction()) tile_.click();
    if (action == kPin && tile_.face().isArranging) Q_EMIT tile_.pinClicked();
  }

 private:
  static constexpr auto kPin = "Pin"_L1;

  ToolTile& tile_;
};

QAccessibleInterface* accessibleTile(const QString&, QObject* object) {
  auto* tile = qobject_cast<ToolTile*>(object);
  return tile ? new AccessibleTile(tile) : nullptr;
}

}  // namespace

ToolTile::ToolTile(QWidget* parent) : QAbstractButton(parent) {
  static const bool installed = (QAccessible::installFactory(accessibleTile), true);
  Q_UNUSED(installed)
  setFocusPolicy(Qt::NoFocus);
  setMouseTracking(true);
  resize(kSize);
  pulse_.setStartValue(0.0);
  pulse_.setEndValue(1.0);
  pulse_.setDuration(kPulseMilliseconds);
  connect(&pulse_, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
}

void ToolTile::setFace(const ToolTileFace& face, bool animated) {
  if (face == face_) return;
  const ToolTileFace before = std::exchange(face_, face);
  if (face_.isPulsing && !before.isPulsing && animated) pulse_.start();
  if (!face_.isArranging) isLifted_ = false;
  describe();
  update();
  if (!face_.isSelected || before.isSelected) return;
  QAccessibleEvent focus(this, QAccessible::Focus);
  QAccessible::updateAccessibility(&focus);
}

void ToolTile::describe() {
  setAccessibleName(face_.name);
  QStringList lines{face_.summary};
  if (!face_.spelled.isEmpty()) lines.append(face_.spelled);
  if (face_.isPinned) lines.append(u"Pinned to the front of the grid"_s);
  if (!face_.obstacle.isEmpty()) lines.append(face_.obstacle);
  const QString text = lines.join(u'\n');
  setToolTip(text);
  setAccessibleDescription(text);
}

void ToolTile::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  paintGround(painter);
  paintMarks(painter);
  paintBody(painter);
}

// The plate that glides below the tiles only shows the way; the text is legible before it arrives.
void ToolTile::paintGround(QPainter& painter) const {
  const Theme& theme = themeOf(*this);
  const bool isFree = face_.isArranging && !face_.isSelected;
  painter.setPen(isFree ? QPen(theme.hairline, 1) : QPen(Qt::NoPen));
  painter.setBrush(Qt::NoBrush);
  if (isFree && underMouse()) painter.setBrush(theme.hover);
  if (face_.isSelected) painter.setBrush(theme.selection);
  const QRectF area = isFree ? QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5) : QRectF(rect());
  painter.drawRoundedRect(area, kRadius, kRadius);
}

void ToolTile::paintMarks(QPainter& painter) const {
  const Theme& theme = themeOf(*this);
  const QColor quiet = face_.isSelected ? theme.onAccent : theme.secondary;
  QRectF mark(width() - kMarkInset - kMarkSize, kMarkInset, kMarkSize, kMarkSize);
  if (face_.isPinned || face_.isArranging) {
    paintPin(painter, mark);
    mark.translate(-kMarkSize - 4, 0);
  }
  if (!face_.obstacle.isEmpty()) paintSymbol(painter, face_.obstacleSymbol, mark, quiet);
  if (face_.digit == 0) return;
  painter.setFont(Theme::keyCapFont());
  painter.setPen(quiet);
  painter.drawText(QRectF(kMarkInset, kMarkInset, kMarkSize, kMarkSize), Qt::AlignLeft | Qt::AlignVCenter,
                   QString::number(face_.digit));
}

// A tool that is not pinned offers its pin to the pointer, and to the keyboard on the highlighted tile.
void ToolTile::paintPin(QPainter& painter, const QRectF& mark) const {
  const Theme& theme = themeOf(*this);
  if (!face_.isPinned && !underMouse() && !face_.isSelected) return;
  const QColor loud = face_.isSelected ? theme.onAccent : theme.accent;
  const QColor quiet = face_.isSelected ? theme.onAccent : theme.secondary;
  const bool isFull = face_.isPinned || isPinPointedAt_;
  paintSymbol(painter, isFull ? u"pin.fill"_s : u"pin"_s, mark, isFull ? loud : quiet);
}

bool ToolTile::isPinAt(QPointF position) const {
  const int reach = kMarkInset + kMarkSize + kMarkInset / 2;
  return face_.isArranging && QRectF(width() - reach, 0, reach, reach).contains(position);
}

void ToolTile::setPinPointedAt(bool pointedAt) {
  if (std::exchange(isPinPointedAt_, pointedAt) == pointedAt) return;
  setToolTip(pointedAt ? (face_.isPinned ? u"Unpin"_s : u"Pin to the front of the grid"_s) : accessibleDescription());
  update();
}

void ToolTile::paintBody(QPainter& painter) const {
  const Theme& theme = themeOf(*this);
  if (!face_.obstacle.isEmpty()) painter.setOpacity(face_.isSelected ? kDimmedOnHighlight : kDimmed);
  const bool isMoving = pulse_.state() == QAbstractAnimation::Running;
  const double swell = isMoving ? std::sin(pulse_.currentValue().toDouble() * std::numbers::pi) : 0.0;
  const double grown = kIconSize * (1 + kPulseGrowth * swell);
  const QPointF centre(width() / 2.0, kIconTop + kIconSize / 2.0);
  const QRectF icon(centre - QPointF(grown, grown) / 2, QSizeF(grown, grown));
  const auto ground = face_.isSelected ? IconTile::Ground::selection : IconTile::Ground::card;
  IconTile{.symbol = face_.icon, .monogram = {}, .color = {}}.paint(painter, icon, theme, ground);

  painter.setFont(Theme::rowFont());
  painter.setPen(face_.isSelected ? theme.onAccent : theme.text);
  const QRect name(Theme::kGrid, kNameTop, width() - 2 * Theme::kGrid, kNameHeight);
  painter.drawText(name, Qt::AlignCenter, painter.fontMetrics().elidedText(face_.name, Qt::ElideRight, name.width()));

  const KeyCapRow caps{face_.caps};
  caps.paint(painter, {std::round((width() - caps.size().width()) / 2), kCapsTop}, theme,
             face_.isSelected ? KeyCapGround::selection : KeyCapGround::card);
}

void ToolTile::enterEvent(QEnterEvent*) { update(); }

void ToolTile::leaveEvent(QEvent*) {
  setPinPointedAt(false);
  update();
}

void ToolTile::mousePressEvent(QMouseEvent* event) {
  if (!face_.isArranging) return QAbstractButton::mousePressEvent(event);
  if (event->button() != Qt::LeftButton) return;
  isPinPressed_ = isPinAt(event->position());
  if (isPinPressed_) return;
  isLifted_ = true;
  Q_EMIT lifted(event->position().toPoint());
  update();
}

void ToolTile::mouseMoveEvent(QMouseEvent* event) {
  setPinPointedAt(!isLifted_ && isPinAt(event->position()));
  if (event->buttons() == Qt::NoButton) Q_EMIT pointed(event->globalPosition().toPoint());
  if (isLifted_)
    Q_EMIT carried(event->globalPosition().toPoint());
  else
    QAbstractButton::mouseMoveEvent(event);
}

void ToolTile::mouseReleaseEvent(QMouseEvent* event) {
  if (std::exchange(isPinPressed_, false)) {
    if (isPinAt(event->position())) Q_EMIT pinClicked();
    return;
  }
  if (!std::exchange(isLifted_, false)) return QAbstractButton::mouseReleaseEvent(event);
  Q_EMIT dropped();
  update();
}
