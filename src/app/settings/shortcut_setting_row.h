#pragma once

#include <QWidget>

#include <optional>

#include "app/app_context.h"

class QLabel;
class QPushButton;

/// A tool's shortcut on the shortcuts page: recorder and reset, and below the name what keeps the combination from
/// working, with a free one where somebody else has it.
class ShortcutSettingRow : public QWidget {
  Q_OBJECT

 public:
  ShortcutSettingRow(AppContext& context, const Tool& tool, QWidget* parent = nullptr);

 private:
  QWidget* makeTexts();
  QPushButton* makeReset();
  void follow();

  AppContext& context_;
  const Tool& tool_;
  QLabel* obstacle_;
  QPushButton* offer_;
  QPushButton* reset_;
  QWidget* recorder_;
  std::optional<Hotkey> offered_;
};
