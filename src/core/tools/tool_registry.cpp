#include "core/tools/tool_registry.h"

#include <algorithm>
#include <array>
#include <limits>

#include "core/hotkeys/hotkey_center.h"
#include "core/net/analytics.h"
#include "core/net/network_monitor.h"
#include "core/presenters/toast_presenter.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr std::array kSortModes = {
    ToolSortModeText{ToolSortMode::manual, "manual"_L1, u"Manual", "hand.draw"_L1},
    ToolSortModeText{ToolSortMode::mostUsed, "mostUsed"_L1, u"Most Used", "flame"_L1},
    ToolSortModeText{ToolSortMode::recent, "recent"_L1, u"Recently Used", "clock"_L1},
    ToolSortModeText{ToolSortMode::alphabetical, "alphabetical"_L1, u"A–Z", "textformat.abc"_L1},
};

constexpr auto kOfflineToastDuration = 4s;

template <class Value>
Value valueOr(const std::map<QString, Value>& map, const QString& key, Value fallback) {
  const auto found = map.find(key);
  return found == map.end() ? fallback : found->second;
}

}  // namespace

std::span<const ToolSortModeText> toolSortModes() { return kSortModes; }

const ToolSortModeText& text(ToolSortMode mode) {
  return *std::ranges::find(kSortModes, mode, &ToolSortModeText::mode);
}

ToolSortMode toolSortMode(const QString& rawValue) {
  const auto found = std::ranges::find(kSortModes, rawValue, &ToolSortModeText::rawValue);
  return found == kSortModes.end() ? ToolSortMode::manual : found->mode;
}

ToolRegistry::ToolRegistry(Services services) : services_(services) {}

ToolRegistry::~ToolRegistry() = default;

void ToolRegistry::bootstrap(std::vector<std::unique_ptr<Tool>> tools) {
  tools_ = std::move(tools);
  const AppSettings& settings = services_.settings.value();
  for (const QString& id : settings.pinnedTools)
    if (tool(id) && !pinned_.contains(id)) pinned_.append(id);
  sortMode_ = toolSortMode(settings.toolSortMode);
  resort();

  std::vector<HotkeyCenter::BindableTool> bindable;
  for (const auto& tool : tools_) bindable.push_back({tool->id(), tool->defaultHotkey()});
  services_.hotkeys.setToolHandler([this](const QString& id) { summon(id); });
  services_.hotkeys.bootstrap(bindable, settings.disabledTools);
}

Tool* ToolRegistry::tool(const QString& id) const {
  const auto found = std::ranges::find_if(tools_, [&](const auto& tool) { return tool->id() == id; });
  return found == tools_.end() ? nullptr : found->get();
}

bool ToolRegistry::isEnabled(const QString& id) const { return !services_.settings.value().disabledTools.contains(id); }

int ToolRegistry::usageCount(const QString& id) const { return valueOr(services_.settings.value().toolUsage, id, 0); }

void ToolRegistry::setSortMode(ToolSortMode mode) {
  sortMode_ = mode;
  services_.settings.update([mode](AppSettings& settings) { settings.toolSortMode = text(mode).rawValue; });
  resort();
}

void ToolRegistry::togglePin(const QString& id) {
  if (!pinned_.removeOne(id)) pinned_.append(id);
  services_.settings.update([this](AppSettings& settings) { settings.pinnedTools = pinned_; });
  resort();
}

void ToolRegistry::setEnabled(const QString& id, bool enabled) {
  services_.settings.update([&](AppSettings& settings) {
    settings.disabledTools.removeAll(id);
    if (!enabled) settings.disabledTools.append(id);
  });
  services_.hotkeys.setEnabled(enabled, id);
  Q_EMIT changed();
}

void ToolRegistry::move(const QString& id, const QString& targetID) {
  if (id != targetID) moveInManualOrder(id, targetID);
}

void ToolRegistry::moveToEnd(const QString& id) { moveInManualOrder(id, {}); }

void ToolRegistry::moveInManualOrder(const QString& id, const QString& targetID) {
  if (!tool(id)) return;
  QStringList order;
  for (const ToolItem& item : items_) order.append(item.id());
  const qsizetype from = order.indexOf(id);
  const qsizetype target = targetID.isEmpty() ? order.size() - 1 : order.indexOf(targetID);
  if (target < 0) return;
  order.move(from, target);
  sortMode_ = ToolSortMode::manual;
  services_.settings.update([&](AppSettings& settings) {
    settings.toolOrder = order;
    settings.toolSortMode = text(ToolSortMode::manual).rawValue;
  });
  resort();
}

void ToolRegistry::applyManualOrder(const QStringList& pinned, const QStringList& unpinned) {
  pinned_ = pinned;
  sortMode_ = ToolSortMode::manual;
  services_.settings.update([&](AppSettings& settings) {
    settings.pinnedTools = pinned;
    settings.toolOrder = unpinned;
    settings.toolSortMode = text(ToolSortMode::manual).rawValue;
  });
  resort();
}

void ToolRegistry::resetArrangement() {
  pinned_.clear();
  sortMode_ = ToolSortMode::manual;
  services_.settings.update([](AppSettings& settings) {
    settings.pinnedTools.clear();
    settings.toolOrder.clear();
    settings.toolSortMode = text(ToolSortMode::manual).rawValue;
  });
  resort();
}

void ToolRegistry::recordUsage(const QString& id) {
  services_.settings.update([&](AppSettings& settings) {
    ++settings.toolUsage[id];
    settings.toolLastUsed[id] = services_.clock.now().count();
  });
  if (sortMode_ == ToolSortMode::mostUsed || sortMode_ == ToolSortMode::recent) resort();
}

bool ToolRegistry::isUsable(const Tool& tool) const { return !tool.requiresNetwork() || services_.network.isOnline(); }

std::optional<Hotkey> ToolRegistry::shortcut(const Tool& tool) const { return services_.hotkeys.binding(tool.id()); }

QString ToolRegistry::shortcutDisplay(const Tool& tool) const {
  const auto hotkey = shortcut(tool);
  return hotkey ? hotkey->display() : QString();
}

void ToolRegistry::summon(const QString& id) {
  Tool* summoned = tool(id);
  if (!summoned) return;
  if (!isUsable(*summoned)) {
    showOfflineToast(*summoned);
    return;
  }
  // The panel takes the keyboard first, then the disk has its turn: the next key may be 20 ms away.
  const StoreBase::HeldSaves untilActive(services_.settings);
  services_.analytics.track(UsageEvent::toolActivated, id);
  recordUsage(id);
  summoned->activate();
}

void ToolRegistry::showOfflineToast(const Tool& tool) {
  ToastContent content;
  content.icon = u"wifi.slash"_s;
  content.title = tool.name() + u" needs the internet"_s;
  content.detail = u"You're offline — it re-enables the moment the connection returns."_s;
  services_.toasts.show(std::move(content), kOfflineToastDuration);
}

void ToolRegistry::resort() {
  std::vector<ToolItem> rest;
  for (const auto& tool : tools_)
    if (!isPinned(tool->id())) rest.push_back({tool.get()});
  std::ranges::sort(rest, {}, [this](const ToolItem& item) { return manualIndex(item.id()); });

  const AppSettings& settings = services_.settings.value();
  if (sortMode_ == ToolSortMode::mostUsed) {
    std::ranges::stable_sort(rest, std::greater(), [&](const ToolItem& item) { return usageCount(item.id()); });
  } else if (sortMode_ == ToolSortMode::recent) {
    std::ranges::stable_sort(rest, std::greater(), [&](const ToolItem& item) {
      return valueOr(settings.toolLastUsed, item.id(), -std::numeric_limits<double>::infinity());
    });
  } else if (sortMode_ == ToolSortMode::alphabetical) {
    std::ranges::stable_sort(rest, [](const ToolItem& left, const ToolItem& right) {
      return QString::localeAwareCompare(left.tool->name().toCaseFolded(), right.tool->name().toCaseFolded()) < 0;
    });
  }

  items_.clear();
  for (const QString& id : pinned_)
    if (Tool* pinned = tool(id)) items_.push_back({pinned});
  items_.insert(items_.end(), rest.begin(), rest.end());
  Q_EMIT changed();
}

int ToolRegistry::manualIndex(const QString& id) const {
  const QStringList& order = services_.settings.value().toolOrder;
  if (const qsizetype stored = order.indexOf(id); stored >= 0) return static_cast<int>(stored);
  const auto position = std::ranges::find_if(tools_, [&](const auto& tool) { return tool->id() == id; });
  return static_cast<int>(order.size() + std::distance(tools_.begin(), position));
}
