#include "app/permissions/permissions_window.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/permissions/permission_rows.h"
#include "core/presenters/settings_opener.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kWidth = 560;

}  // namespace

PermissionsWindow::PermissionsWindow(AppContext& context)
    : TitledWindow(u"Permissions"_s),
      context_(context),
      list_(*context.platform.permissions, context.clock),
      shortcuts_(new ShortcutsRow(list_)) {
  auto* section = new SettingsSection;
  for (const auto& [permission, name] : kPermissionNames)
    section->addWide(new PermissionRow(list_, permission, context.platform.systemInfo->systemSettings()));
  section->addWide(shortcuts_);
  auto* change = new QPushButton(u"Change…"_s);
  change->setAccessibleName(u"Change shortcuts"_s);
  change->setAutoDefault(true);
  shortcuts_->addEnd(change);
  connect(change, &QPushButton::clicked, this,
          [this] { context_.settingsOpener.openSettings(SettingsTab::shortcuts); });
  connect(&context_.hotkeys, &HotkeyCenter::changed, this, &PermissionsWindow::countTakenShortcuts);

  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(3 * Theme::kGrid, 3 * Theme::kGrid, 3 * Theme::kGrid, 3 * Theme::kGrid);
  column->setSpacing(2 * Theme::kGrid);
  column->addWidget(section);
  column->addWidget(makeDetailLabel(u"Vantle uses them only when you press a shortcut or a button."_s));
  connect(&list_, &PermissionList::changed, this, &PermissionsWindow::fit);
  countTakenShortcuts();
  fit();
}

void PermissionsWindow::showEvent(QShowEvent* event) {
  list_.setWatched(true);
  TitledWindow::showEvent(event);
}

void PermissionsWindow::hideEvent(QHideEvent* event) {
  list_.setWatched(false);
  TitledWindow::hideEvent(event);
}

void PermissionsWindow::fit() {
  // The rows have heard of the same change; they may hear of it later than this window.
  QMetaObject::invokeMethod(
      this, [this] { setFixedSize(kWidth, layout()->totalHeightForWidth(kWidth)); }, Qt::QueuedConnection);
}

void PermissionsWindow::countTakenShortcuts() {
  shortcuts_->setTakenCount(static_cast<int>(context_.hotkeys.refused().size()));
}
