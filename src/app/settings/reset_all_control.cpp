#include "app/settings/reset_all_control.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

#include <algorithm>

#include "app/settings/settings_form.h"
#include "core/hotkeys/hotkey_center.h"
#include "core/tools/tool.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

ResetAllControl::ResetAllControl(HotkeyCenter& hotkeys, QWidget* parent)
    : QWidget(parent),
      hotkeys_(hotkeys),
      reset_(new QPushButton(u"Reset All"_s)),
      question_(new QLabel(u"Reset every shortcut?"_s)),
      cancel_(new QPushButton(u"Cancel"_s)),
      confirm_(new QPushButton(u"Reset"_s)) {
  reset_->setAccessibleName(u"Reset all shortcuts"_s);
  cancel_->setAccessibleName(u"Keep all shortcuts"_s);
  confirm_->setAccessibleName(u"Reset every shortcut now"_s);
  question_->setFont(Theme::detailFont());
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(Theme::kGrid);
  row->addStretch(1);
  for (QWidget* part : std::initializer_list<QWidget*>{question_, cancel_, confirm_, reset_}) row->addWidget(part);
  connect(reset_, &QPushButton::clicked, this, [this] { ask(true); });
  connect(cancel_, &QPushButton::clicked, this, [this] { ask(false); });
  connect(confirm_, &QPushButton::clicked, this, [this] {
    ask(false);
    hotkeys_.resetAll();
  });
  connect(&hotkeys_, &HotkeyCenter::changed, this, &ResetAllControl::follow);
  ask(false);
}

void ResetAllControl::ask(bool asking) {
  const bool hadFocus = reset_->hasFocus() || cancel_->hasFocus() || confirm_->hasFocus();
  asking_ = asking;
  follow();
  for (QWidget* part : std::initializer_list<QWidget*>{question_, cancel_, confirm_}) part->setVisible(asking);
  reset_->setVisible(!asking);
  if (hadFocus) (asking ? cancel_ : reset_)->setFocus(Qt::TabFocusReason);
}

void ResetAllControl::follow() {
  const bool isAnyRebound =
      std::ranges::any_of(toolTable(), [this](const ToolInfo& info) { return hotkeys_.isRebound(info.id); });
  reset_->setEnabled(isAnyRebound);
}

void ResetAllControl::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && asking_)
    ask(false);
  else
    QWidget::keyPressEvent(event);
}

void ResetAllControl::hideEvent(QHideEvent*) { ask(false); }
