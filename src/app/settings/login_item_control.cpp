#include "app/settings/login_item_control.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPushButton>

#include "core/ui/settings_form.h"
#include "core/ui/theme.h"
#include "core/ui/toggle_switch.h"
#include "platform/system_info.h"

using namespace Qt::StringLiterals;

LoginItemControl::LoginItemControl(LoginItem& item, const SystemInfo& system)
    : item_(item),
      system_(system),
      approve_(new QPushButton(u"Open %1…"_s.arg(system.systemSettings()), this)),
      switch_(new ToggleSwitch(u"Open at login"_s, this)) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(Theme::kGrid);
  row->addWidget(approve_);
  row->addWidget(switch_);
  setFocusProxy(switch_);
  approve_->setAccessibleName(u"Allow opening at login in %1"_s.arg(system.systemSettings()));
  connect(approve_, &QPushButton::clicked, this, [this] { item_.openApproval(); });
  connect(switch_, &ToggleSwitch::clicked, this, &LoginItemControl::choose);
}

void LoginItemControl::setRemark(RowRemark* remark) {
  remark_ = remark;
  follow();
}

bool LoginItemControl::event(QEvent* event) {
  if (event->type() == QEvent::WindowActivate) follow();
  return QWidget::event(event);
}

void LoginItemControl::showEvent(QShowEvent*) { follow(); }

void LoginItemControl::choose(bool on) {
  const auto changed = item_.setEnabled(on);
  follow();
  if (!changed && remark_) remark_->showError(changed.error().description());
}

void LoginItemControl::follow() {
  const LoginItem::State state = item_.state();
  const bool awaitsApproval = state == LoginItem::State::awaitsApproval;
  switch_->setChecked(awaitsApproval || state == LoginItem::State::on);
  switch_->setEnabled(state != LoginItem::State::unavailable);
  approve_->setVisible(awaitsApproval);
  if (!remark_) return;
  QString hint;
  if (awaitsApproval)
    hint = u"Waits for your consent: allow Vantle among the login items in %1."_s.arg(system_.systemSettings());
  if (state == LoginItem::State::unavailable)
    hint = u"%1 cannot open Vantle at login here."_s.arg(system_.systemName());
  remark_->showHint(hint);
}
