#include "app/settings/tool_header_view.h"

#include <QHBoxLayout>

#include "app/settings/shortcut_controls.h"
#include "core/ui/icon_tile_view.h"
#include "core/ui/theme.h"
#include "core/ui/toggle_switch.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kIconSize = 40;

}  // namespace

ToolHeaderView::ToolHeaderView(AppContext& context, const Tool& tool, QWidget* parent)
    : SettingsSection(parent),
      context_(context),
      tool_(tool),
      offline_(makeDetailLabel(u"Needs internet — offline right now"_s)),
      enabled_(new ToggleSwitch(u"%1 enabled"_s.arg(tool.name()))) {
  addWide(makeTitle());
  refusal_ = addRow(u"Shortcut"_s, {}, makeRecorder(context, tool));
  connect(enabled_, &ToggleSwitch::toggled, this, [this](bool on) {
    if (on != context_.registry.isEnabled(tool_.id())) context_.registry.setEnabled(tool_.id(), on);
  });
  connect(&context.registry, &ToolRegistry::changed, this, &ToolHeaderView::follow);
  connect(&context.hotkeys, &HotkeyCenter::changed, this, &ToolHeaderView::follow);
  connect(&context.network, &NetworkMonitor::changed, this, &ToolHeaderView::follow);
  follow();
}

QWidget* ToolHeaderView::makeTitle() {
  auto* title = new QWidget;
  auto* row = new QHBoxLayout(title);
  row->setContentsMargins({});
  row->setSpacing(2 * Theme::kGrid);
  auto* icon = new IconTileView({.symbol = tool_.icon(), .monogram = {}, .color = {}});
  icon->setFixedSize(kIconSize, kIconSize);
  row->addWidget(icon, 0, Qt::AlignTop);
  row->addWidget(makeTexts(), 1);
  row->addWidget(enabled_, 0, Qt::AlignVCenter);
  return title;
}

QWidget* ToolHeaderView::makeTexts() {
  auto* texts = new QWidget;
  auto* column = new QVBoxLayout(texts);
  column->setContentsMargins({});
  column->setSpacing(2);
  column->addWidget(makeHeading(tool_.name()));
  column->addWidget(makeDetailLabel(tool_.summary()));
  column->addWidget(offline_);
  return texts;
}

void ToolHeaderView::follow() {
  enabled_->setChecked(context_.registry.isEnabled(tool_.id()));
  offline_->setVisible(!context_.registry.isUsable(tool_));
  refusal_->showError(refusalText(context_, tool_.id()));
}
