#pragma once

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

#include "app/app_context.h"

/// The permanent user interface: an icon with the tools and their shortcuts, Settings and Quit.
class TrayIcon : public QObject {
  Q_OBJECT

 public:
  explicit TrayIcon(AppContext& context);

  void show() { icon_.show(); }

 Q_SIGNALS:
  void quitChosen();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void followAppearance();
  void fillMenu();
  void addTool(const Tool& tool);

  AppContext& context_;
  QMenu menu_;
  QSystemTrayIcon icon_;
};
