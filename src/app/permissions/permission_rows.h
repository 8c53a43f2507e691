#pragma once

#include "app/permissions/permission_list.h"
#include "app/settings/icon_row.h"

class QPushButton;
class TonedLabel;

/// One permission: what it is for, its live state, what to do when it is not granted, and a button that leads there.
class PermissionRow : public IconRow {
  Q_OBJECT

 public:
  PermissionRow(PermissionList& list, Permission permission, const QString& systemSettings);

  /// Null while there is nothing to lead to.
  QPushButton* button() const;

 private:
  void follow();

  PermissionList& list_;
  Permission permission_;
  TonedLabel* state_;
  QPushButton* open_;
};

/// Whether global shortcuts reach the program, as far as that depends on the system as a whole.
class ShortcutsRow : public IconRow {
  Q_OBJECT

 public:
  explicit ShortcutsRow(const PermissionList& list);

  /// How many single ones are held by other programs.
  void setTakenCount(int count);

 private:
  void follow();

  const PermissionList& list_;
  TonedLabel* state_;
  int taken_ = 0;
};
