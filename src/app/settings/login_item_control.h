#pragma once

#include <QWidget>

#include "platform/login_item.h"

class QPushButton;
class RowRemark;
class SystemInfo;
class ToggleSwitch;

/// Whether the program starts at login: a switch, and a button that leads to where the system wants to be asked. Looks
/// anew whenever its window becomes active, because the user may change it elsewhere.
class LoginItemControl : public QWidget {
  Q_OBJECT

 public:
  LoginItemControl(LoginItem& item, const SystemInfo& system);

  /// Where it says what stands in the way; must live as long.
  void setRemark(RowRemark* remark);

 protected:
  bool event(QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void choose(bool on);
  void follow();

  LoginItem& item_;
  const SystemInfo& system_;
  QPushButton* approve_;
  ToggleSwitch* switch_;
  RowRemark* remark_ = nullptr;
};
