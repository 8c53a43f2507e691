#pragma once

#include <QObject>
#include <QString>

#include <vector>

#include "base/clock.h"
#include "platform/permissions.h"

/// What the system allows, as windows show it: looked at once a second while one of them is watched, and never
/// otherwise. Main thread only.
class PermissionList : public QObject {
  Q_OBJECT

 public:
  struct Entry {
    Permission permission = Permission::accessibility;
    QString name;
    PermissionState state = PermissionState::unavailable;
    /// Empty when nothing is missing.
    QString remedy;
    /// Whether `lead` has a page to show.
    bool hasPage = false;

    bool operator==(const Entry&) const = default;
  };

  PermissionList(Permissions& permissions, Clock& clock);

  const std::vector<Entry>& entries() const { return entries_; }
  /// What keeps global shortcuts from working as a whole; empty when nothing does.
  const QString& shortcutsRemedy() const { return shortcutsRemedy_; }
  bool isGranted(Permission permission) const;
  /// Whether there is one that the user can still grant.
  bool isAnyMissing() const;

  void refresh();
  /// Looks at once and then once a second; false ends that.
  void setWatched(bool watched);
  /// Puts the program on the system's list, by the system's own prompt, and shows the page with the list.
  void lead(Permission permission);

 Q_SIGNALS:
  void changed();

 private:
  std::vector<Entry> look() const;
  void poll();

  Permissions& permissions_;
  Clock& clock_;
  std::vector<Entry> entries_;
  QString shortcutsRemedy_;
  Job watch_;
};
