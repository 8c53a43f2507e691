#include "tools/session_history/vibe_history_settings_view.h"

#include <QVBoxLayout>

#include "core/ui/settings_form.h"
#include "core/ui/store_switch.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

VibeHistorySettingsView::VibeHistorySettingsView(VibeHistoryStore& store, QWidget* parent) : QWidget(parent) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(Theme::kGrid);
  column->addWidget(makeHeading(u"Conversations"_s));
  auto* agents = new SettingsSection;
  agents->addRow(u"Claude Code"_s, u"~/.claude/projects"_s,
                 makeStoreSwitch(store, &VibeHistorySettings::includeClaude, u"Claude Code"_s));
  agents->addRow(u"Codex"_s, u"~/.codex/sessions"_s,
                 makeStoreSwitch(store, &VibeHistorySettings::includeCodex, u"Codex"_s));
  column->addWidget(agents);
  column->addWidget(
      makeDetailLabel(u"%1 most recent conversations, read locally from ~/.claude/projects and ~/.codex/sessions. "
                      u"Selecting one types the resume command into your terminal."_s.arg(kSessionLimit)));
  column->addStretch(1);
}
