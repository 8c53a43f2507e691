#include "app/onboarding/shortcut_offers.h"

#include <algorithm>

#include "core/hotkeys/hotkey_center.h"
#include "core/tools/tool_registry.h"

void ShortcutOffers::refresh() {
  offers_.clear();
  std::vector<Hotkey> offered;
  for (const HotkeyCenter::Refused& refused : hotkeys_.refused()) {
    Offer offer{refused.toolID, nameOf(refused.toolID, refused.hotkey), refused.hotkey, std::nullopt};
    if (!refused.toolID.isEmpty()) offer.free = hotkeys_.freeHotkey(offered);
    if (offer.free) offered.push_back(*offer.free);
    offers_.push_back(std::move(offer));
  }
  Q_EMIT changed();
}

void ShortcutOffers::accept(const QString& toolID) {
  const auto offer = std::ranges::find(offers_, toolID, &Offer::toolID);
  if (offer == offers_.end() || !offer->free) return;
  hotkeys_.setHotkey(offer->free, toolID);
  offer->isAccepted = hotkeys_.isRegistered(toolID);
  // Somebody else was faster.
  if (!offer->isAccepted) offer->free = hotkeys_.freeHotkey();
  Q_EMIT changed();
}

int ShortcutOffers::openCount() const {
  return static_cast<int>(std::ranges::count(offers_, false, &Offer::isAccepted));
}

QString ShortcutOffers::nameOf(const QString& toolID, const Hotkey& refused) const {
  if (const Tool* tool = registry_.tool(toolID)) return tool->name();
  const auto own = std::ranges::find(kAppShortcuts, refused, &AppShortcut::hotkey);
  return own == kAppShortcuts.end() ? toolID : QString(own->name);
}

bool isRefused(const HotkeyCenter& hotkeys, AppAction action) {
  const auto shortcut = std::ranges::find(kAppShortcuts, action, &AppShortcut::action);
  return std::ranges::any_of(hotkeys.refused(), [&](const HotkeyCenter::Refused& refused) {
    return refused.toolID.isEmpty() && refused.hotkey == shortcut->hotkey;
  });
}
