#pragma once

#include "app/app_context.h"
#include "core/ui/settings_form.h"

class ToggleSwitch;

/// The header of every tool's page: icon, name, what it does and the enable switch, and below it the shortcut.
class ToolHeaderView : public SettingsSection {
  Q_OBJECT

 public:
  ToolHeaderView(AppContext& context, const Tool& tool, QWidget* parent = nullptr);

 private:
  QWidget* makeTitle();
  QWidget* makeTexts();
  void follow();

  AppContext& context_;
  const Tool& tool_;
  QLabel* offline_;
  ToggleSwitch* enabled_;
  RowRemark* refusal_;
};
