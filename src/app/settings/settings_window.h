#pragma once

#include <array>

#include "app/app_context.h"
#include "app/settings/settings_selection.h"
#include "core/ui/titled_window.h"

class QStackedWidget;
class SidebarList;

/// The window "Settings": six tabs at the left, their pages made when first shown. It opens on the tab it was closed
/// on, at the top of the page, and remembers nothing else.
class SettingsWindow : public TitledWindow {
  Q_OBJECT

 public:
  SettingsWindow(AppContext& context, SettingsSelection& selection);

  void open() override;

 protected:
  void hideEvent(QHideEvent* event) override;

 private:
  void addTabShortcuts();
  void followSelection();
  QWidget* page(SettingsTab tab);

  AppContext& context_;
  SettingsSelection& selection_;
  SidebarList* tabs_;
  QStackedWidget* pages_;
  std::array<QWidget*, 6> made_{};
};
