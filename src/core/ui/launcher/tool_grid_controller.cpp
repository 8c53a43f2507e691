#include "core/ui/launcher/tool_grid_controller.h"

#include <algorithm>

#include "core/net/network_monitor.h"
#include "platform/sounds.h"

namespace {

constexpr int kRow = ToolLauncherModel::kColumns;

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

}  // namespace

ToolGridController::ToolGridController(Services services) : services_(services), model_(services.clock) {
  connect(&services_.registry, &ToolRegistry::changed, this, &ToolGridController::adoptRegistry);
  connect(&services_.network, &NetworkMonitor::changed, &model_, &ToolLauncherModel::touch);
}

ToolAvailability ToolGridController::availability(const Tool& tool) const {
  if (!services_.registry.isEnabled(tool.id())) return ToolAvailability::disabled;
  return services_.registry.isUsable(tool) ? ToolAvailability::usable : ToolAvailability::offline;
}

bool ToolGridController::handleGridKey(const KeyPress& press) {
  if (!model_.isShown()) return false;
  if (const auto step = stepOf(press)) {
    if (press.command)
      carryTo(model_.selectionIndex() + *step);
    else
      model_.move(*step);
    return true;
  }
  if (press.command) {
    if (press.keyCode != keycode::kP) return false;
    togglePin();
    return true;
  }
  if (press.keyCode == keycode::kPageUp || press.keyCode == keycode::kPageDown) {
    turnPage(press.keyCode == keycode::kPageUp ? -1 : 1);
    return true;
  }
  return model_.isArranging() && carryToPlace(press);
}

bool ToolGridController::carryToPlace(const KeyPress& press) {
  const auto place = placeOf(press);
  if (!place) return false;
  if (*place >= 0 && *place < model_.count())
    carryTo(*place);
  else
    services_.sounds.beep();
  return true;
}

std::optional<int> ToolGridController::placeOf(const KeyPress& press) const {
  const bool isPlain = !press.command && !press.control && !press.option;
  if (!isPlain || press.characters.size() != 1) return std::nullopt;
  const int digit = press.characters.front().digitValue();
  if (digit < 0) return std::nullopt;
  // Digits count from the first tile of the page; there is no place 0.
  return digit == 0 ? -1 : model_.currentPage() * ToolLauncherModel::kPageSize + digit - 1;
}

void ToolGridController::highlight(int index) {
  if (model_.isShown()) model_.select(index);
}

void ToolGridController::turnPage(int by) {
  const int page = model_.currentPage() + by;
  if (page < 0 || page >= model_.pageCount()) return;
  model_.select(std::min(model_.selectionIndex() + by * ToolLauncherModel::kPageSize, model_.count() - 1));
}

void ToolGridController::carryTo(int index) {
  const auto carried = model_.selectedItem();
  if (!model_.isShown() || !carried) return;
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

void ToolGridController::togglePin() {
  const auto selected = model_.selectedItem();
  if (!model_.isShown() || !selected) return;
  services_.registry.togglePin(selected->id());
  model_.pulse(selected->id());
}

void ToolGridController::adoptRegistry() {
  if (!model_.isShown()) return;
  const auto selected = model_.selectedItem();
  model_.refresh(services_.registry.items(), selected ? selected->id() : QString());
}
