#pragma once

#include <QWidget>

#include "app/app_context.h"

class QLabel;
class ToggleSwitch;

/// The header of every tool's page: icon, name, what it does, the enable switch and the shortcut recorder.
class ToolHeaderView : public QWidget {
  Q_OBJECT

 public:
  ToolHeaderView(AppContext& context, const Tool& tool, QWidget* parent = nullptr);

 private:
  QWidget* makeTexts();
  void follow();

  AppContext& context_;
  const Tool& tool_;
  QLabel* state_;
  ToggleSwitch* enabled_;
};
