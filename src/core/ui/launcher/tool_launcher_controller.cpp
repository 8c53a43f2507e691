#include "core/ui/launcher/tool_launcher_controller.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <utility>

#include "core/net/network_monitor.h"
#include "platform/sounds.h"

using namespace std::chrono_literals;

namespace {

constexpr int kRow = ToolLauncherModel::kColumns;
constexpr std::uint32_t kS = 1;
constexpr std::uint32_t kPageUp = 116;
constexpr std::uint32_t kPageDown = 121;

struct Step {
  std::uint32_t keyCode;
  int by;
};

constexpr std::array kSteps = {Step{keycode::kLeft, -1}, Step{keycode::kRight, 1}, Step{keycode::kUp, -kRow},
                               Step{keycode::kDown, kRow}};

/// How far an arrow key moves through the grid; none for other keys.
std::optional<int> stepOf(const KeyPress& press) {
  const auto step = std::ranges::find(kSteps, press.keyCode, &Step::keyCode);
  return step == kSteps.end() ? std::nullopt : std::optional(step->by);
}

/// 0 to 9; none for what is not one digit.
std::optional<int> digitOf(const KeyPress& press) {
  if (press.characters.size() != 1) return std::nullopt;
  const int digit = press.characters.front().digitValue();
  return digit < 0 ? std::nullopt : std::optional(digit);
}

ToolSortMode nextMode(ToolSortMode mode) {
  const auto modes = toolSortModes();
  const auto current = std::ranges::find(modes, mode, &ToolSortModeText::mode);
  const auto next = std::next(current);
  return next == modes.end() ? modes.front().mode : next->mode;
}

}  // namespace

ToolLauncherController::ToolLauncherController(Services services, PanelFactory makePanel)
    : services_(services), model_(services.clock), makePanel_(std::move(makePanel)) {
  connect(&services_.registry, &ToolRegistry::changed, this, &ToolLauncherController::adoptRegistry);
  connect(&services_.network, &NetworkMonitor::changed, &model_, &ToolLauncherModel::touch);
}

ToolLauncherController::~ToolLauncherController() = default;

ToolAvailability ToolLauncherController::availability(const Tool& tool) const {
  if (!services_.registry.isEnabled(tool.id())) return ToolAvailability::disabled;
  return services_.registry.isUsable(tool) ? ToolAvailability::usable : ToolAvailability::offline;
}

void ToolLauncherController::prepare() {
  if (!panel_) panel_ = makePanel_(*this);
}

void ToolLauncherController::toggle() {
  if (state_ == State::shown)
    dismiss();
  else
    show();
}

void ToolLauncherController::show(const QString& selectedToolID) {
  leaving_.cancel();
  state_ = State::shown;
  model_.reset(services_.registry.items());
  model_.select(selectedToolID);
  prepare();
  model_.setShown(true);
  panel_->present();
}

void ToolLauncherController::dismiss(std::optional<ToolItem> then) {
  if (state_ != State::shown) return;
  state_ = State::leaving;
  leaving_ = Job::start();
  model_.setShown(false);
  // A tool takes the launcher's place at once: no key that is typed meanwhile may fall between the two.
  const bool animated = !then;
  panel_->leave(animated, leaving_.bind([this, then] {
    state_ = State::hidden;
    // One turn of the event loop later the launcher is off the screen too, for tools that take a picture of it.
    if (then) services_.clock.after(0ms, leaving_, [this, item = *then] { start(item); });
  }));
}

void ToolLauncherController::start(const ToolItem& item) {
  lastRunToolID_ = item.id();
  startedFromLauncher_ = true;
  services_.registry.summon(item.id());
  startedFromLauncher_ = false;
}

bool ToolLauncherController::takeStartedFromLauncher() { return std::exchange(startedFromLauncher_, false); }

bool ToolLauncherController::handleKey(const KeyPress& press) {
  if (state_ != State::shown) return false;
  if (press.command) return handleCommandKey(press);
  if (const auto step = stepOf(press)) {
    model_.move(*step);
    return true;
  }
  return handleEditKey(press) || handleText(press);
}

bool ToolLauncherController::handleCommandKey(const KeyPress& press) {
  if (const auto step = stepOf(press)) {
    carryTo(model_.selectionIndex() + *step);
    return true;
  }
  switch (press.keyCode) {
    case keycode::kE:
      setArranging(!model_.isArranging());
      return true;
    case keycode::kP:
      togglePin();
      return true;
    case kS:
      setSortMode(nextMode(services_.registry.sortMode()));
      return true;
    default:
      return false;
  }
}

bool ToolLauncherController::handleEditKey(const KeyPress& press) {
  switch (press.keyCode) {
    case keycode::kReturn:
    case keycode::kKeypadEnter:
      runHighlighted();
      return true;
    case keycode::kDelete:
      removeLastCharacter();
      return true;
    case keycode::kEscape:
      leaveOneStep();
      return true;
    case kPageUp:
    case kPageDown:
      turnPage(press.keyCode == kPageUp ? -1 : 1);
      return true;
    default:
      return false;
  }
}

bool ToolLauncherController::handleText(const KeyPress& press) {
  if (press.control || press.option || !press.isText()) return false;
  const auto digit = digitOf(press);
  if (!digit) {
    model_.setQuery(model_.query() + press.characters);
    return true;
  }
  // Digits count from the first tile of the page; there is no place 0.
  const int index = *digit == 0 ? -1 : model_.currentPage() * ToolLauncherModel::kPageSize + *digit - 1;
  if (!model_.isArranging())
    run(index);
  else if (index >= 0 && index < model_.count())
    carryTo(index);
  else
    services_.sounds.beep();
  return true;
}

void ToolLauncherController::runHighlighted() {
  if (model_.isArranging())
    model_.setArranging(false);
  else if (model_.selectedItem())
    run(model_.selectionIndex());
}

void ToolLauncherController::removeLastCharacter() {
  if (model_.isArranging() || model_.query().isEmpty()) return;
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, model_.query());
  finder.toEnd();
  model_.setQuery(model_.query().left(finder.toPreviousBoundary()));
}

void ToolLauncherController::leaveOneStep() {
  if (model_.isArranging())
    model_.setArranging(false);
  else if (!model_.query().isEmpty())
    model_.setQuery({});
  else
    dismiss();
}

void ToolLauncherController::run(int index) {
  if (state_ != State::shown) return;
  const bool exists = index >= 0 && index < model_.count();
  if (!exists || availability(*model_.items()[static_cast<std::size_t>(index)].tool) != ToolAvailability::usable) {
    services_.sounds.beep();
    return;
  }
  dismiss(model_.items()[static_cast<std::size_t>(index)]);
}

void ToolLauncherController::highlight(int index) {
  if (state_ == State::shown) model_.select(index);
}

void ToolLauncherController::turnPage(int by) {
  const int page = model_.currentPage() + by;
  if (page < 0 || page >= model_.pageCount()) return;
  model_.select(std::min(model_.selectionIndex() + by * ToolLauncherModel::kPageSize, model_.count() - 1));
}

void ToolLauncherController::carryTo(int index) {
  const auto carried = model_.selectedItem();
  if (state_ != State::shown || !carried) return;
  const ToolRegistry& registry = services_.registry;
  const bool isPinned = registry.isPinned(carried->id());
  const auto pins = static_cast<int>(
      std::ranges::count_if(model_.items(), [&](const ToolItem& item) { return registry.isPinned(item.id()); }));
  const int target = isPinned ? std::clamp(index, 0, pins - 1) : std::clamp(index, pins, model_.count() - 1);
  if (target == model_.selectionIndex()) return;

  QStringList pinned;
  QStringList rest;
  for (const ToolItem& item : registry.items()) (registry.isPinned(item.id()) ? pinned : rest).append(item.id());
  // The grid may be filtered: the tool takes the place of the one that stands there, whatever is hidden between them.
  QStringList& group = isPinned ? pinned : rest;
  group.move(group.indexOf(carried->id()), group.indexOf(model_.items()[static_cast<std::size_t>(target)].id()));
  services_.registry.applyManualOrder(pinned, rest);
  model_.pulse(carried->id());
}

void ToolLauncherController::setArranging(bool arranging) {
  if (state_ == State::shown) model_.setArranging(arranging);
}

void ToolLauncherController::setSortMode(ToolSortMode mode) {
  if (mode != services_.registry.sortMode()) services_.registry.setSortMode(mode);
}

void ToolLauncherController::togglePin() {
  const auto selected = model_.selectedItem();
  if (state_ != State::shown || !selected) return;
  services_.registry.togglePin(selected->id());
  model_.pulse(selected->id());
}

void ToolLauncherController::adoptRegistry() {
  if (state_ == State::hidden) return;
  const auto selected = model_.selectedItem();
  model_.refresh(services_.registry.items(), selected ? selected->id() : QString());
}
