#include "core/ui/launcher/tool_launcher_controller.h"

#include <algorithm>
#include <utility>

#include "base/text_search.h"
#include "platform/sounds.h"

using namespace std::chrono_literals;

namespace {

constexpr std::uint32_t kS = 1;

ToolSortMode nextMode(ToolSortMode mode) {
  const auto modes = toolSortModes();
  const auto current = std::ranges::find(modes, mode, &ToolSortModeText::mode);
  const auto next = std::next(current);
  return next == modes.end() ? modes.front().mode : next->mode;
}

}  // namespace

ToolLauncherController::ToolLauncherController(Services services, PanelFactory makePanel)
    : ToolGridController(services), makePanel_(std::move(makePanel)) {}

ToolLauncherController::~ToolLauncherController() = default;

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
  model().reset(services().registry.items());
  model().select(selectedToolID);
  prepare();
  model().setShown(true);
  panel_->present();
  Q_EMIT shown();
}

void ToolLauncherController::dismiss(std::optional<ToolItem> then) {
  if (state_ != State::shown) return;
  state_ = State::leaving;
  leaving_ = Job::start();
  model().setShown(false);
  // A tool takes the launcher's place at once: no key that is typed meanwhile may fall between the two.
  const bool animated = !then;
  panel_->leave(animated, leaving_.bind([this, then] {
    state_ = State::hidden;
    // One turn of the event loop later the launcher is off the screen too, for tools that take a picture of it.
    if (then) services().clock.after(0ms, leaving_, [this, item = *then] { start(item); });
  }));
}

void ToolLauncherController::start(const ToolItem& item) {
  lastRunToolID_ = item.id();
  startedFromLauncher_ = true;
  services().registry.summon(item.id());
  startedFromLauncher_ = false;
}

bool ToolLauncherController::takeStartedFromLauncher() { return std::exchange(startedFromLauncher_, false); }

bool ToolLauncherController::handleKey(const KeyPress& press) {
  if (state_ != State::shown) return false;
  if (handleGridKey(press)) return true;
  return press.command ? handleCommandKey(press) : handleEditKey(press) || handleText(press);
}

bool ToolLauncherController::handleCommandKey(const KeyPress& press) {
  switch (press.keyCode) {
    case keycode::kE:
      setArranging(!model().isArranging());
      return true;
    case kS:
      setSortMode(nextMode(registry().sortMode()));
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
    default:
      return false;
  }
}

bool ToolLauncherController::handleText(const KeyPress& press) {
  if (press.control || press.option || !press.isText()) return false;
  if (const auto place = placeOf(press))
    run(*place);
  else
    model().setQuery(model().query() + press.characters);
  return true;
}

void ToolLauncherController::runHighlighted() {
  if (model().isArranging())
    model().setArranging(false);
  else if (model().selectedItem())
    run(model().selectionIndex());
}

void ToolLauncherController::removeLastCharacter() {
  if (model().isArranging() || model().query().isEmpty()) return;
  model().setQuery(withoutLastCharacter(model().query()));
}

void ToolLauncherController::leaveOneStep() {
  if (model().isArranging())
    model().setArranging(false);
  else if (!model().query().isEmpty())
    model().setQuery({});
  else
    dismiss();
}

void ToolLauncherController::run(int index) {
  if (state_ != State::shown) return;
  const bool exists = index >= 0 && index < model().count();
  if (!exists || availability(*model().items()[static_cast<std::size_t>(index)].tool) != ToolAvailability::usable) {
    services().sounds.beep();
    return;
  }
  dismiss(model().items()[static_cast<std::size_t>(index)]);
}

void ToolLauncherController::setArranging(bool arranging) {
  if (state_ == State::shown) model().setArranging(arranging);
}

void ToolLauncherController::setSortMode(ToolSortMode mode) {
  if (mode != services().registry.sortMode()) services().registry.setSortMode(mode);
}
