#include "app/settings/pages.h"
#include "app/settings/preference_controls.h"
#include "app/settings/settings_form.h"

using namespace Qt::StringLiterals;

QWidget* makePrivacyPage(AppContext& context, SettingsSelection&) {
  auto* page = new SettingsPage;
  SettingsSection* usage = page->addSection(u"Usage statistics"_s);
  usage->addRow(
      u"Share anonymous usage statistics"_s,
      u"Helps decide which tools to improve. Sends only which tools you open and an anonymous install id — no "
      u"account, no personal data, no image or text content. Never on when you're offline."_s,
      makePreferenceSwitch(context.preferences, &Preferences::shareUsageStats, u"Share anonymous usage statistics"_s));
  page->addNote(u"Nothing else leaves %1 until you press a tool's shortcut or button."_s.arg(
      context.platform.systemInfo->thisComputer()));
  return page;
}
