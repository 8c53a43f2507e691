#pragma once

#include <QObject>

#include "core/presenters/settings_opener.h"

/// Which tab of the settings window is shown, and what on it; shared by whoever opens the window. Main thread only.
class SettingsSelection : public QObject {
  Q_OBJECT

 public:
  SettingsTab tab() const { return tab_; }
  /// The tool whose page the tools tab shows; empty for the first.
  const QString& toolID() const { return toolID_; }

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

 private:
  SettingsTab tab_ = SettingsTab::general;
  QString toolID_;
};
