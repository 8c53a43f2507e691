#include <QVBoxLayout>

#include <algorithm>

#include "app/onboarding/onboarding_steps.h"
#include "app/settings/icon_row.h"
#include "core/hotkeys/app_shortcuts.h"
#include "core/ui/key_caps.h"
#include "core/ui/settings_form.h"
#include "core/ui/store_switch.h"

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t kIntroduced = 3;

/// Something worth to be known first.
struct Introduction {
  QString symbol;
  QString title;
  QString detail;
  std::optional<Hotkey> hotkey;
};

struct ToolSentence {
  QLatin1StringView toolID;
  const char16_t* text;
};

constexpr std::array kTools = {
    ToolSentence{QLatin1StringView("frequent-clis"), u"Types a saved command into the terminal you are in."},
    ToolSentence{QLatin1StringView("vibe-history"), u"Finds an agent session of yours and resumes it."},
    ToolSentence{QLatin1StringView("uplink"), u"Turns the image you copied into a link for any chat."},
};

Introduction introduction(AppAction action, const QString& symbol, const QString& detail) {
  const auto shortcut = std::ranges::find(kAppShortcuts, action, &AppShortcut::action);
  return {symbol, shortcut->name, detail, shortcut->hotkey};
}

/// Only what there is.
std::vector<Introduction> introductions(const AppContext& context) {
  std::vector<Introduction> all;
  all.push_back(introduction(AppAction::toggleLauncher, u"square.grid.3x3"_s, u"All tools in one grid, a key away."_s));
  for (const auto& [toolID, text] : kTools) {
    const Tool* tool = context.registry.tool(toolID);
    if (tool && all.size() < kIntroduced)
      all.push_back({tool->icon(), tool->name(), QString::fromUtf16(text), context.registry.shortcut(*tool)});
  }
  if (all.size() < kIntroduced)
    all.push_back(introduction(AppAction::openSettings, u"gearshape"_s, u"Every shortcut can be another one."_s));
  return all;
}

}  // namespace

WelcomeStep::WelcomeStep(AppContext& context)
    : OnboardingPage({}, u"Welcome to Vantle"_s,
                     u"Small tools for people who work with terminal coding agents, each one shortcut away."_s) {
  auto* section = new SettingsSection;
  for (const Introduction& one : introductions(context)) {
    auto* row = new IconRow(one.symbol, one.title, one.detail);
    if (one.hotkey) {
      auto* caps = new KeyCaps(one.hotkey->keyCaps());
      caps->setToolTip(one.hotkey->spelled());
      row->addEnd(caps);
    }
    section->addWide(row);
  }
  column().addWidget(section);
  column().addStretch(1);
}

PrivacyStep::PrivacyStep(AppContext& context)
    : OnboardingPage({u"lock.shield"_s, {}, {}}, u"Private by default"_s,
                     u"What you do stays on %1."_s.arg(context.platform.systemInfo->thisComputer())) {
  auto* promises = new SettingsSection;
  promises->addWide(new IconRow(u"folder"_s, u"Your commands, sessions and settings stay here"_s,
                                u"They are plain files in a folder of your own."_s));
  promises->addWide(new IconRow(u"hand.raised"_s, u"Nothing is sent unless you press for it"_s,
                                u"Tools that use a service send what you gave them, and only then."_s));
  promises->addWide(
      new IconRow(u"checkmark"_s, u"Your credential lives in the keychain"_s, u"Never in a file, never in a log."_s));
  column().addWidget(promises);
  auto* consent = new SettingsSection;
  const QString title = u"Share anonymous usage statistics"_s;
  consent->addRow(title,
                  u"Helps decide which tools to improve. Sends only which tools you open and an anonymous install id — "
                  u"no account, no personal data, no image or text content. Never on when you're offline."_s,
                  makeStoreSwitch(context.preferences, &Preferences::shareUsageStats, title));
  column().addWidget(consent);
  column().addStretch(1);
}
