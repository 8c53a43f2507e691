#include "app/settings/settings_window.h"

#include <QHBoxLayout>
#include <QHideEvent>
#include <QScreen>
#include <QShortcut>
#include <QStackedWidget>

#include "app/settings/pages.h"
#include "app/settings/sidebar_list.h"
#include "core/ui/palette_panel.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

/// All of the launcher's page; smaller screens get as much as they have room for, below a title bar.
constexpr QSize kSize(936, 720);
constexpr int kTitleBar = 40;
constexpr int kTabsWidth = 176;

struct TabEntry {
  SettingsTab tab;
  QLatin1StringView title;
  QLatin1StringView icon;
  QWidget* (*makePage)(AppContext&, SettingsSelection&);
};

constexpr std::array kTabs = {
    TabEntry{SettingsTab::general, "General"_L1, "gearshape"_L1, makeGeneralPage},
    TabEntry{SettingsTab::tools, "Tools"_L1, "square.grid.3x3"_L1, makeToolsPage},
    TabEntry{SettingsTab::shortcuts, "Shortcuts"_L1, "keyboard"_L1, makeShortcutsPage},
    TabEntry{SettingsTab::notifications, "Notifications"_L1, "bell"_L1, makeNotificationsPage},
    TabEntry{SettingsTab::launcher, "Launcher"_L1, "macwindow.on.rectangle"_L1, makeLauncherPage},
    TabEntry{SettingsTab::privacy, "Privacy"_L1, "hand.raised"_L1, makePrivacyPage},
};

SidebarList* makeTabList(QWidget* parent) {
  auto* list = new SidebarList(u"Settings tabs"_s, kTabsWidth, parent);
  for (const TabEntry& entry : kTabs) list->addEntry(entry.title, entry.icon);
  return list;
}

QSize fittingSize() {
  const QScreen* screen = activeScreen();
  return screen ? kSize.boundedTo(screen->availableGeometry().size() - QSize(0, kTitleBar)) : kSize;
}

}  // namespace

SettingsWindow::SettingsWindow(AppContext& context, SettingsSelection& selection)
    : TitledWindow(u"Settings"_s),
      context_(context),
      selection_(selection),
      tabs_(makeTabList(this)),
      pages_(new QStackedWidget(this)) {
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins({});
  layout->setSpacing(0);
  layout->addWidget(tabs_);
  layout->addWidget(pages_, 1);
  connect(tabs_, &QListWidget::currentRowChanged, this,
          [this](int row) { selection_.setTab(kTabs.at(static_cast<std::size_t>(row)).tab); });
  addTabShortcuts();
  connect(&selection_, &SettingsSelection::changed, this, &SettingsWindow::followSelection);
}

void SettingsWindow::addTabShortcuts() {
  for (const TabEntry& entry : kTabs) {
    const int digit = Qt::Key_1 + static_cast<int>(entry.tab);
    auto* shortcut = new QShortcut(QKeySequence(Qt::ControlModifier | static_cast<Qt::Key>(digit)), this);
    connect(shortcut, &QShortcut::activated, this, [this, tab = entry.tab] {
      tabs_->setFocus(Qt::ShortcutFocusReason);
      selection_.setTab(tab);
    });
  }
}

void SettingsWindow::open() {
  const bool isFresh = !isVisible();
  if (isFresh) resize(fittingSize());
  followSelection();
  const bool isAtTool = selection_.tab() == SettingsTab::tools && !selection_.toolID().isEmpty();
  if (isAtTool)
    page(SettingsTab::tools)->setFocus(Qt::OtherFocusReason);
  else if (isFresh)
    tabs_->setFocus(Qt::OtherFocusReason);
  TitledWindow::open();
}

void SettingsWindow::hideEvent(QHideEvent* event) {
  TitledWindow::hideEvent(event);
  // A minimised window comes back as it was.
  if (event->spontaneous()) return;
  for (SettingsPage* page : findChildren<SettingsPage*>()) page->scrollToTop();
  selection_.setToolID({});
}

void SettingsWindow::followSelection() {
  const int row = static_cast<int>(selection_.tab());
  if (tabs_->currentRow() != row) {
    const QSignalBlocker blocker(tabs_);
    tabs_->setCurrentRow(row);
  }
  pages_->setCurrentWidget(page(selection_.tab()));
}

QWidget* SettingsWindow::page(SettingsTab tab) {
  const auto index = static_cast<std::size_t>(tab);
  if (!made_[index]) {
    made_[index] = kTabs[index].makePage(context_, selection_);
    made_[index]->setAccessibleName(kTabs[index].title);
    pages_->addWidget(made_[index]);
  }
  return made_[index];
}
