#include "app/settings/tool_header_view.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "app/settings/settings_form.h"
#include "app/settings/shortcut_controls.h"
#include "core/ui/theme.h"
#include "core/ui/toggle_switch.h"

using namespace Qt::StringLiterals;

ToolHeaderView::ToolHeaderView(AppContext& context, const Tool& tool, QWidget* parent)
    : QWidget(parent),
      context_(context),
      tool_(tool),
      state_(makeDetailLabel({})),
      enabled_(new ToggleSwitch(u"%1 enabled"_s.arg(tool.name()))) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(2 * Theme::kGrid);
  row->addWidget(makeTexts(), 1);
  row->addWidget(makeRecorder(context, tool), 0, Qt::AlignVCenter);
  row->addWidget(enabled_, 0, Qt::AlignVCenter);

  connect(enabled_, &ToggleSwitch::toggled, this, [this](bool on) {
    if (on != context_.registry.isEnabled(tool_.id())) context_.registry.setEnabled(tool_.id(), on);
  });
  connect(&context.registry, &ToolRegistry::changed, this, &ToolHeaderView::follow);
  connect(&context.hotkeys, &HotkeyCenter::changed, this, &ToolHeaderView::follow);
  connect(&context.network, &NetworkMonitor::changed, this, &ToolHeaderView::follow);
  follow();
}

QWidget* ToolHeaderView::makeTexts() {
  auto* texts = new QWidget;
  auto* column = new QVBoxLayout(texts);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2);
  column->addWidget(makeHeading(tool_.name()));
  column->addWidget(makeDetailLabel(tool_.summary()));
  column->addWidget(state_);
  return texts;
}

void ToolHeaderView::follow() {
  enabled_->setChecked(context_.registry.isEnabled(tool_.id()));
  const QString refusal = refusalText(context_, tool_.id());
  const QString offline = context_.registry.isUsable(tool_) ? QString() : u"Needs internet — offline right now"_s;
  state_->setText(refusal.isEmpty() ? offline : refusal);
  state_->setVisible(!state_->text().isEmpty());
}
