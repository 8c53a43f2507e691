#pragma once

#include <QStringList>

#include "platform/login_item.h"

/// An entry in the user's autostart folder, which desktops read at login. The user's entry wins over one of the same
/// name for the whole system, so that switching off may have to leave a hidden entry behind. Looks at the disk each
/// time it is asked.
class XdgLoginItem final : public LoginItem {
 public:
  /// `program` is the absolute path that is started; the folders contain the autostart folders.
  struct Places {
    QString program;
    QString configHome;
    /// First wins.
    QStringList configDirs;

    /// Of the running program and the user's environment.
    static Places standard();
  };

  explicit XdgLoginItem(Places places);

  State state() const override;
  std::expected<void, LoginItemError> setEnabled(bool enabled) override;

 private:
  bool isOnForWholeSystem() const;
  std::expected<void, LoginItemError> write(const QString& lines) const;
  std::expected<void, LoginItemError> remove() const;

  Places places_;
  QString file_;
};
