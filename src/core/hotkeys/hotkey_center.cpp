#include "core/hotkeys/hotkey_center.h"

#include <algorithm>

#include "base/logging.h"
#include "core/hotkeys/refused_shortcuts.h"

using namespace std::chrono_literals;

namespace {

/// What the keyboard window needs to be gone before a tool's panel comes up.
constexpr auto kHandOverDelay = 120ms;

}  // namespace

HotkeyCenter::HotkeyCenter(HotkeyBackend& backend, SettingsStore& settings, Clock& clock)
    : backend_(backend), settings_(settings), clock_(clock) {}

HotkeyCenter::~HotkeyCenter() {
  for (const auto& [id, toolID] : toolForCarbonID_) backend_.unregisterHotkey(id);
  for (const auto& [id, action] : actionForCarbonID_) backend_.unregisterHotkey(id);
}

void HotkeyCenter::bootstrap(const std::vector<BindableTool>& tools, const QStringList& disabledToolIDs) {
  installHandler();
  tools_ = tools;
  disabled_ = {disabledToolIDs.begin(), disabledToolIDs.end()};
  const auto& stored = settings_.value().hotkeys;
  for (const BindableTool& tool : tools_) {
    const auto own = stored.find(tool.id);
    bind(tool.id, own != stored.end() ? own->second : tool.defaultHotkey);
  }
  for (const BindableTool& tool : tools_) registerTool(tool.id);
  Q_EMIT changed();
}

void HotkeyCenter::registerAction(Hotkey hotkey, std::function<void()> action) {
  installHandler();
  // A tool that the user has bound to the same combination gives way.
  const auto tool = conflictingToolID(hotkey, {});
  if (tool) unregisterTool(*tool);
  actions_.push_back({hotkey, std::move(action)});
  registerOwn(actions_.back());
  if (tool) registerTool(*tool);
}

void HotkeyCenter::registerOwn(Action& action) {
  const std::uint32_t id = takeCarbonID();
  const auto taken = backend_.registerHotkey(id, action.hotkey.keyCode, action.hotkey.carbonModifiers);
  action.refusal = taken ? std::nullopt : std::optional(taken.error());
  if (taken) actionForCarbonID_.emplace(id, action.run);
}

std::optional<Hotkey> HotkeyCenter::binding(const QString& toolID) const {
  const auto found = bindings_.find(toolID);
  return found == bindings_.end() ? std::nullopt : std::optional(found->second);
}

std::vector<HotkeyCenter::Refused> HotkeyCenter::refused() const {
  std::vector<Refused> all;
  for (const Action& action : actions_)
    if (action.refusal) all.push_back({QString(), action.hotkey, *action.refusal});
  for (const BindableTool& tool : tools_)
    if (const auto found = refusedTools_.find(tool.id); found != refusedTools_.end()) all.push_back(found->second);
  return all;
}

void HotkeyCenter::setHotkey(std::optional<Hotkey> hotkey, const QString& toolID) {
  unregisterTool(toolID);
  bind(toolID, hotkey);
  settings_.update([&](AppSettings& settings) { settings.hotkeys[toolID] = hotkey; });
  registerTool(toolID);
  retryRefused();
  Q_EMIT changed();
}

void HotkeyCenter::resetHotkey(const QString& toolID) {
  const auto tool = std::ranges::find(tools_, toolID, &BindableTool::id);
  if (tool == tools_.end()) return;
  unregisterTool(toolID);
  bind(toolID, tool->defaultHotkey);
  settings_.update([&](AppSettings& settings) { settings.hotkeys.erase(toolID); });
  registerTool(toolID);
  retryRefused();
  Q_EMIT changed();
}

void HotkeyCenter::resetAll() {
  for (const BindableTool& tool : tools_) {
    unregisterTool(tool.id);
    bind(tool.id, tool.defaultHotkey);
  }
  settings_.update([this](AppSettings& settings) {
    for (const BindableTool& tool : tools_) settings.hotkeys.erase(tool.id);
  });
  for (const BindableTool& tool : tools_) registerTool(tool.id);
  Q_EMIT changed();
}

bool HotkeyCenter::isRebound(const QString& toolID) const { return binding(toolID) != defaultOf(toolID); }

std::optional<Hotkey> HotkeyCenter::defaultOf(const QString& toolID) const {
  const auto tool = std::ranges::find(tools_, toolID, &BindableTool::id);
  return tool == tools_.end() ? std::nullopt : tool->defaultHotkey;
}

std::optional<QString> HotkeyCenter::conflictingToolID(const Hotkey& hotkey, const QString& excludedToolID) const {
  for (const BindableTool& tool : tools_)
    if (tool.id != excludedToolID && binding(tool.id) == hotkey) return tool.id;
  return std::nullopt;
}

std::optional<Hotkey> HotkeyCenter::freeHotkey(std::vector<Hotkey> except) const {
  for (const Action& action : actions_) except.push_back(action.hotkey);
  for (const auto& [toolID, hotkey] : bindings_) except.push_back(hotkey);
  return freeCombination(backend_, except, kProbeHotkeyID);
}

void HotkeyCenter::setEnabled(bool enabled, const QString& toolID) {
  if (enabled) {
    disabled_.erase(toolID);
    registerTool(toolID);
  } else {
    disabled_.insert(toolID);
    unregisterTool(toolID);
    retryRefused();
  }
  Q_EMIT changed();
}

void HotkeyCenter::pauseAll() {
  paused_ = true;
  for (const BindableTool& tool : tools_) unregisterTool(tool.id);
}

void HotkeyCenter::resumeAll() {
  paused_ = false;
  for (const BindableTool& tool : tools_) registerTool(tool.id);
  Q_EMIT changed();
}

void HotkeyCenter::handlePress(std::uint32_t carbonID) {
  if (const auto action = actionForCarbonID_.find(carbonID); action != actionForCarbonID_.end()) {
    // A copy: the action may register others and so move the map's entries.
    const auto run = action->second;
    run();
    return;
  }
  const auto owner = toolForCarbonID_.find(carbonID);
  if (owner == toolForCarbonID_.end() || !summonTool_) return;
  const QString toolID = owner->second;
  handOver([this, toolID] { summonTool_(toolID); });
}

void HotkeyCenter::handOver(std::function<void()> start) {
  if (!shortcutsWindow_ || !shortcutsWindow_->closeIfVisible()) {
    start();
    return;
  }
  handOver_ = Job::start();
  clock_.after(kHandOverDelay, handOver_, std::move(start));
}

void HotkeyCenter::installHandler() {
  if (std::exchange(handlerInstalled_, true)) return;
  backend_.install([this](std::uint32_t id) { handlePress(id); });
  backend_.watchTriggers([this] {
    retryRefused();
    Q_EMIT changed();
  });
}

std::uint32_t HotkeyCenter::takeCarbonID() {
  if (nextCarbonID_ == 0) qFatal("Every hot-key id of this run has been used");
  return nextCarbonID_++;
}

void HotkeyCenter::registerTool(const QString& toolID) {
  const auto hotkey = binding(toolID);
  if (paused_ || !hotkey || disabled_.contains(toolID) || registrations_.contains(toolID)) return;
  const std::uint32_t id = takeCarbonID();
  if (const auto taken = take(id, *hotkey); !taken) {
    qCDebug(lcHotkeys).noquote() << toolID << hotkey->display() << taken.error().description();
    refusedTools_.insert_or_assign(toolID, Refused{toolID, *hotkey, taken.error()});
    return;
  }
  registrations_.emplace(toolID, id);
  toolForCarbonID_.emplace(id, toolID);
}

std::expected<void, HotkeyRefusal> HotkeyCenter::take(std::uint32_t id, const Hotkey& hotkey) {
  if (std::ranges::find(actions_, hotkey, &Action::hotkey) != actions_.end())
    return std::unexpected(HotkeyRefusal{HotkeyRefusal::Reason::taken});
  return backend_.registerHotkey(id, hotkey.keyCode, hotkey.carbonModifiers);
}

/// A combination that another tool had may have become free, or the system hands out more than it did.
void HotkeyCenter::retryRefused() {
  for (Action& action : actions_)
    if (action.refusal) registerOwn(action);
  const auto refused = refusedTools_;
  for (const auto& [toolID, refusal] : refused) {
    refusedTools_.erase(toolID);
    registerTool(toolID);
  }
}

void HotkeyCenter::unregisterTool(const QString& toolID) {
  refusedTools_.erase(toolID);
  const auto registration = registrations_.find(toolID);
  if (registration == registrations_.end()) return;
  backend_.unregisterHotkey(registration->second);
  toolForCarbonID_.erase(registration->second);
  registrations_.erase(registration);
}

void HotkeyCenter::bind(const QString& toolID, std::optional<Hotkey> hotkey) {
  if (hotkey)
    bindings_.insert_or_assign(toolID, *hotkey);
  else
    bindings_.erase(toolID);
}
