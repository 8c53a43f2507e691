#include "app/menu/menu_controller.h"

#include <algorithm>
#include <utility>

#include "base/text_search.h"
#include "core/hotkeys/hotkey_center.h"
#include "core/net/network_monitor.h"
#include "core/tools/tool_registry.h"
#include "platform/sounds.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr std::uint32_t kHome = 115;
constexpr std::uint32_t kEnd = 119;

/// A click on the tray icon is a click beside the menu first. The tray may tell of it as late as the button is let go.
constexpr auto kSameClick = 400ms;

}  // namespace

MenuController::MenuController(Services services, PanelFactory makePanel)
    : services_(services), model_(services.registry, services.hotkeys), makePanel_(std::move(makePanel)) {
  connect(&services_.registry, &ToolRegistry::changed, this, &MenuController::refresh);
  connect(&services_.hotkeys, &HotkeyCenter::changed, this, &MenuController::refresh);
  connect(&services_.network, &NetworkMonitor::changed, this, &MenuController::refresh);
}

MenuController::~MenuController() = default;

void MenuController::refresh() {
  if (shown_) model_.refresh();
}

void MenuController::toggle() {
  if (shown_)
    hide();
  else
    show();
}

void MenuController::iconActivated() {
  const auto resignedAt = std::exchange(resignedAt_, std::nullopt);
  const bool hasJustClosedIt = resignedAt && services_.clock.monotonic() - *resignedAt < kSameClick;
  if (!hasJustClosedIt) toggle();
}

void MenuController::show() {
  shown_ = true;
  model_.reset();
  if (!panel_) panel_ = makePanel_(*this);
  panel_->present();
}

void MenuController::hide() {
  if (!shown_) return;
  shown_ = false;
  panel_->dismiss();
}

void MenuController::resign() {
  if (!shown_) return;
  hide();
  resignedAt_ = services_.clock.monotonic();
}

bool MenuController::handleKey(const KeyPress& press) {
  if (!shown_) return false;
  if (press.command) return handleCommandKey(press);
  if (handleEditKey(press)) return true;
  if (press.control || press.option || !press.isText()) return false;
  model_.setQuery(model_.query() + press.characters);
  return true;
}

bool MenuController::handleCommandKey(const KeyPress& press) {
  if (press.charactersIgnoringModifiers == ","_L1)
    open(MenuEntry::settings);
  else if (press.charactersIgnoringModifiers == "q"_L1)
    open(MenuEntry::quit);
  else
    return false;
  return true;
}

bool MenuController::handleEditKey(const KeyPress& press) {
  switch (press.keyCode) {
    case keycode::kReturn:
    case keycode::kKeypadEnter:
      choose(model_.selection());
      return true;
    case keycode::kDelete:
      if (!model_.query().isEmpty()) model_.setQuery(withoutLastCharacter(model_.query()));
      return true;
    case keycode::kEscape:
      leaveOneStep();
      return true;
    case keycode::kDown:
      model_.moveSelection(+1);
      return true;
    case keycode::kUp:
      model_.moveSelection(-1);
      return true;
    case kHome:
      model_.selectFirst();
      return true;
    case kEnd:
      model_.selectLast();
      return true;
    default:
      return false;
  }
}

void MenuController::leaveOneStep() {
  if (model_.query().isEmpty())
    hide();
  else
    model_.setQuery({});
}

void MenuController::choose(int row) {
  if (!shown_ || row < 0 || row >= model_.rowCount()) return;
  const MenuRow chosen = model_.rows()[static_cast<std::size_t>(row)];
  if (chosen.kind == MenuRow::Kind::separator) return;
  if (!chosen.isUsable) return services_.sounds.beep();
  if (chosen.kind == MenuRow::Kind::entry) return open(chosen.entry);
  hide();
  // One turn of the event loop later the menu is off the screen too, for tools that take a picture of it.
  services_.clock.after(0ms, starting_, [this, id = chosen.toolID] { services_.registry.summon(id); });
}

void MenuController::open(MenuEntry entry) {
  hide();
  const auto info = std::ranges::find(kMenuEntries, entry, &MenuEntryInfo::entry);
  if (info->window)
    services_.windows.openWindow(*info->window);
  else
    Q_EMIT quitChosen();
}
