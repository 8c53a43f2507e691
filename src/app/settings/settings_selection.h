#pragma once

#include <QObject>
#include <QUuid>

#include <utility>

#include "core/presenters/settings_opener.h"

/// Which tab of the settings window is shown, and what on it; shared by whoever opens the window. Main thread only.
class SettingsSelection : public QObject {
  Q_OBJECT

 public:
  SettingsTab tab() const { return tab_; }
  /// The tool whose page the tools tab shows; empty for the first.
  const QString& toolID() const { return toolID_; }

  /// The command that the Frequent CLIs page is to focus; null for none. Taken once.
  QUuid takeFocusedCommand() { return std::exchange(focusedCommand_, QUuid()); }

  void focusCommand(const QUuid& id) {
    focusedCommand_ = id;
    Q_EMIT commandFocused();
  }
  void setTab(SettingsTab tab) {
    tab_ = tab;
    Q_EMIT changed();
  }
  void setToolID(const QString& toolID) {
    toolID_ = toolID;
    Q_EMIT changed();
  }

 Q_SIGNALS:
  void changed();
  /// A command waits to be focused.
  void commandFocused();

 private:
  SettingsTab tab_ = SettingsTab::general;
  QString toolID_;
  QUuid focusedCommand_;
};
