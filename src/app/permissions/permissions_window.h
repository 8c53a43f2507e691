#pragma once

#include "app/app_context.h"
#include "app/permissions/permission_list.h"
#include "core/ui/titled_window.h"

class ShortcutsRow;

/// The window "Permissions": what the system allows, as it is now. Looks at it only while visible.
class PermissionsWindow : public TitledWindow {
  Q_OBJECT

 public:
  explicit PermissionsWindow(AppContext& context);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void fit();
  void countTakenShortcuts();

  AppContext& context_;
  PermissionList list_;
  ShortcutsRow* shortcuts_;
};
