#include "app/tray_icon.h"

#include <QEvent>

#include "core/hotkeys/app_shortcuts.h"
#include "core/ui/icon.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kMenuIcon = 16;

QString withShortcut(const QString& text, const QString& shortcut) {
  return shortcut.isEmpty() ? text : text + u'\t' + shortcut;
}

QString shortcutOf(AppAction action) {
  for (const AppShortcut& shortcut : kAppShortcuts)
    if (shortcut.action == action) return shortcut.hotkey.display();
  return {};
}

}  // namespace

TrayIcon::TrayIcon(AppContext& context) : context_(context) {
  followAppearance();
  menu_.installEventFilter(this);
  icon_.setToolTip(u"Vantle"_s);
  icon_.setContextMenu(&menu_);
  connect(&menu_, &QMenu::aboutToShow, this, &TrayIcon::fillMenu);
  connect(&icon_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
    if (reason == QSystemTrayIcon::Trigger) context_.launcher.showLauncher({});
  });
  fillMenu();
}

void TrayIcon::fillMenu() {
  menu_.clear();
  for (const ToolItem& item : context_.registry.items()) addTool(*item.tool);
  menu_.addSeparator();
  QAction* settings = menu_.addAction(withShortcut(u"Settings…"_s, shortcutOf(AppAction::openSettings)));
  connect(settings, &QAction::triggered, this, [this] { context_.settingsOpener.openSettings(); });
  QAction* quit = menu_.addAction(u"Quit Vantle"_s);
  connect(quit, &QAction::triggered, this, &TrayIcon::quitChosen);
}

bool TrayIcon::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::PaletteChange) followAppearance();
  return QObject::eventFilter(watched, event);
}

void TrayIcon::followAppearance() {
  icon_.setIcon(QIcon(themeOf(menu_).dark ? u":/icons/vantle-tray-light.svg"_s : u":/icons/vantle-tray-dark.svg"_s));
}

void TrayIcon::addTool(const Tool& tool) {
  QAction* action = menu_.addAction(withShortcut(tool.name(), context_.registry.shortcutDisplay(tool)));
  action->setIcon(symbolPixmap(tool.icon(), kMenuIcon, themeOf(menu_).text, menu_.devicePixelRatioF()));
  action->setEnabled(context_.registry.isEnabled(tool.id()));
  connect(action, &QAction::triggered, this, [this, id = tool.id()] { context_.registry.summon(id); });
}
