#include "core/ui/launcher/tool_grid.h"

#include <QCursor>
#include <QPainter>

#include <algorithm>

#include "core/ui/launcher/tool_grid_controller.h"
#include "core/ui/theme.h"
#include "platform/system_info.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int kGap = Theme::kGrid;
constexpr int kSide = 2 * Theme::kGrid;
constexpr int kVertical = Theme::kGrid + 4;
constexpr int kEmptyHeight = 128;
/// A tile carried this close to the side of the grid turns the page after a moment.
constexpr int kEdge = 28;
constexpr auto kEdgePatience = 450ms;

constexpr auto kNoMatch = "No matching tools"_L1;

constexpr int kPage = ToolLauncherModel::kPageSize;
constexpr int kColumns = ToolLauncherModel::kColumns;

QPoint slotPosition(int index) {
  const int slot = index % kPage;
  return {index / kPage * ToolGrid::kWidth + kSide + slot % kColumns * (ToolTile::kSize.width() + kGap),
          kVertical + slot / kColumns * (ToolTile::kSize.height() + kGap)};
}

}  // namespace

/// The highlight, a plate below the tiles. While its tile hangs on the pointer it is the empty place that waits for it.
class ToolGrid::Plate final : public QWidget {
 public:
  using QWidget::QWidget;

  void setEmpty(bool empty) {
    isEmpty_ = empty;
    update();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    const Theme& theme = themeOf(*this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(isEmpty_ ? QPen(theme.accent, 1, Qt::DashLine) : QPen(Qt::NoPen));
    painter.setBrush(isEmpty_ ? theme.hover : theme.selection);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), ToolTile::kRadius, ToolTile::kRadius);
  }

 private:
  bool isEmpty_ = false;
};

namespace {

QString obstacleText(ToolAvailability availability) {
  switch (availability) {
    case ToolAvailability::usable:
      return {};
    case ToolAvailability::offline:
      return u"Needs the internet — offline right now"_s;
    case ToolAvailability::disabled:
      return u"Switched off in Settings"_s;
  }
  return {};
}

}  // namespace

ToolGrid::ToolGrid(ToolGridController& controller, const SystemInfo& system, QWidget* parent)
    : QWidget(parent),
      controller_(controller),
      system_(system),
      strip_(new QWidget(this)),
      plate_(new Plate(strip_)),
      stripGlide_(*strip_),
      plateGlide_(*plate_) {
  plate_->resize(ToolTile::kSize);
  plate_->setAttribute(Qt::WA_TransparentForMouseEvents);
  setFixedWidth(kWidth);
  edgeTimer_.setSingleShot(true);
  edgeTimer_.setInterval(kEdgePatience);
  connect(&edgeTimer_, &QTimer::timeout, this, &ToolGrid::turnAtEdge);
  // The strip slides away under a carried tile, which stays with the pointer.
  connect(&stripGlide_.animation(), &QVariantAnimation::valueChanged, this, &ToolGrid::followPointer);
}

ToolGrid::~ToolGrid() = default;

int ToolGrid::heightFor(int rows) {
  if (rows == 0) return kEmptyHeight;
  return rows * ToolTile::kSize.height() + (rows - 1) * kGap + 2 * kVertical;
}

ToolTile* ToolGrid::tile(const QString& toolID) const {
  const auto found = pieces_.find(toolID);
  return found == pieces_.end() ? nullptr : found->second.tile;
}

void ToolGrid::refresh() {
  const ToolLauncherModel& model = controller_.model();
  QStringList ids;
  for (const ToolItem& item : model.items()) ids.append(item.id());
  // A new order is shown as movement; the answer to a typed letter stands there at once.
  const bool isSameSet = QSet(ids.begin(), ids.end()) == QSet(shownIDs_.begin(), shownIDs_.end());
  const bool animated = isVisible() && model.isShown() && isSameSet && !system_.isMotionReduced();
  shownIDs_ = ids;
  if (!model.isArranging()) drop();

  setFixedHeight(heightFor(model.gridRows()));
  strip_->resize(model.pageCount() * kWidth, height());
  const bool isSamePage = std::exchange(shownPage_, model.currentPage()) == model.currentPage();
  stripGlide_.to({-model.currentPage() * kWidth, 0}, animated);
  plate_->setVisible(isHighlightShown_ && model.count() > 0);
  plateGlide_.to(slotPosition(model.selectionIndex()), animated && isSamePage);
  for (auto& [id, piece] : pieces_) piece.tile->setVisible(ids.contains(id));
  for (int i = 0; i < model.count(); ++i) {
    Piece& placed = piece(ids[i]);
    placed.tile->setFace(face(i), animated);
    if (!drag_ || drag_->toolID != ids[i]) placed.glide->to(slotPosition(i), animated);
  }
  followPointer();
  setAccessibleName(ids.isEmpty() ? QString(kNoMatch) : u"Tools"_s);
  update();
}

void ToolGrid::setHighlightShown(bool shown) {
  if (std::exchange(isHighlightShown_, shown) != shown) refresh();
}

ToolGrid::Piece& ToolGrid::piece(const QString& toolID) {
  if (const auto found = pieces_.find(toolID); found != pieces_.end()) return found->second;
  auto* tile = new ToolTile(strip_);
  wire(*tile, toolID);
  tile->show();
  return pieces_.emplace(toolID, Piece{tile, std::make_unique<Glide>(*tile)}).first->second;
}

void ToolGrid::wire(ToolTile& tile, const QString& toolID) {
  connect(&tile, &ToolTile::pointed, this, [this, toolID](QPoint at) { point(toolID, at); });
  connect(&tile, &ToolTile::lifted, this, [this, toolID](QPoint grip) { lift(toolID, grip); });
  connect(&tile, &ToolTile::carried, this, &ToolGrid::carry);
  connect(&tile, &ToolTile::dropped, this, &ToolGrid::drop);
  connect(&tile, &ToolTile::pinClicked, this, [this, toolID] {
    controller_.highlight(indexOf(toolID));
    controller_.togglePin();
  });
  connect(&tile, &QAbstractButton::clicked, this, [this, toolID] {
    if (controller_.model().isArranging())
      controller_.highlight(indexOf(toolID));
    else
      controller_.run(indexOf(toolID));
  });
}

ToolTileFace ToolGrid::face(int index) const {
  const ToolLauncherModel& model = controller_.model();
  const ToolRegistry& registry = controller_.registry();
  const Tool& tool = *model.items()[static_cast<std::size_t>(index)].tool;
  const auto shortcut = registry.shortcut(tool);
  const ToolAvailability availability = controller_.availability(tool);
  return {.id = tool.id(),
          .name = tool.name(),
          .icon = tool.icon(),
          .summary = tool.summary(),
          .caps = shortcut ? shortcut->keyCaps() : QStringList(),
          .spelled = shortcut ? shortcut->spelled() : QString(),
          .digit = index % kPage + 1,
          .isSelected = isHighlightShown_ && index == model.selectionIndex(),
          .isPinned = registry.isPinned(tool.id()),
          .isArranging = model.isArranging(),
          .isPulsing = model.pulseID() == tool.id(),
          .obstacle = obstacleText(availability),
          .obstacleSymbol = availability == ToolAvailability::offline ? u"wifi.slash"_s : u"power"_s};
}

int ToolGrid::indexOf(const QString& toolID) const { return static_cast<int>(shownIDs_.indexOf(toolID)); }

// A tile that slides under a pointer at rest is not pointed at.
void ToolGrid::point(const QString& toolID, QPoint globalPosition) {
  const bool hasMoved = std::exchange(lastPointer_, globalPosition) != globalPosition;
  if (!hasMoved || controller_.model().isArranging()) return;
  controller_.highlight(indexOf(toolID));
}

void ToolGrid::lift(const QString& toolID, QPoint grip) {
  controller_.highlight(indexOf(toolID));
  Piece& lifted = piece(toolID);
  lifted.glide->stop();
  lifted.tile->raise();
  plate_->setEmpty(true);
  drag_ = Drag{toolID, grip, mapFromGlobal(QCursor::pos())};
}

void ToolGrid::carry(QPoint globalPosition) {
  if (!drag_) return;
  drag_->pointer = mapFromGlobal(globalPosition);
  followPointer();
  const QPoint pointer = drag_->pointer;
  const bool isAtEdge = pointer.x() < kEdge || pointer.x() > width() - kEdge;
  if (!isAtEdge)
    edgeTimer_.stop();
  else if (!edgeTimer_.isActive())
    edgeTimer_.start();

  const ToolLauncherModel& model = controller_.model();
  const int first = model.currentPage() * kPage;
  const int last = std::min(first + kPage, model.count());
  for (int index = first; index < last; ++index)
    if (QRect(slotPosition(index), ToolTile::kSize).translated(strip_->pos()).contains(pointer))
      return controller_.carryTo(index);
}

void ToolGrid::drop() {
  edgeTimer_.stop();
  if (!std::exchange(drag_, std::nullopt)) return;
  plate_->setEmpty(false);
  refresh();
}

void ToolGrid::followPointer() {
  if (!drag_) return;
  piece(drag_->toolID).tile->move(strip_->mapFrom(this, drag_->pointer) - drag_->grip);
}

void ToolGrid::turnAtEdge() {
  if (!drag_) return;
  const ToolLauncherModel& model = controller_.model();
  const bool isForward = drag_->pointer.x() > width() / 2;
  const int page = model.currentPage() + (isForward ? 1 : -1);
  if (page < 0 || page >= model.pageCount()) return;
  controller_.carryTo(isForward ? page * kPage : page * kPage + kPage - 1);
}

void ToolGrid::paintEvent(QPaintEvent*) {
  if (controller_.model().count() > 0) return;
  QPainter painter(this);
  painter.setFont(Theme::rowFont());
  painter.setPen(themeOf(*this).secondary);
  painter.drawText(rect(), Qt::AlignCenter, kNoMatch);
}
