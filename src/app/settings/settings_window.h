#pragma once

#include <QWidget>

#include <array>

#include "app/app_context.h"
#include "app/settings/settings_selection.h"

class QStackedWidget;
class SidebarList;

/// The window "Settings": six tabs at the left, their pages made when first shown.
class SettingsWindow : public QWidget {
  Q_OBJECT

 public:
  SettingsWindow(AppContext& context, SettingsSelection& selection);

  /// Shows the window, centred when it was closed, and brings it to the front.
  void open();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void followSelection();
  QWidget* page(SettingsTab tab);

  AppContext& context_;
  SettingsSelection& selection_;
  SidebarList* tabs_;
  QStackedWidget* pages_;
  std::array<QWidget*, 6> made_{};
};
