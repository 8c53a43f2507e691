#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <atomic>
#include <memory>
#include <semaphore>

#include "base/clock.h"
#include "cli/binding_output.h"
#include "cli/command.h"
#include "cli/options.h"
#include "cli/service_findings.h"
#include "core/hotkeys/hotkey_center.h"
#include "core/hotkeys/refused_shortcuts.h"
#include "core/net/app_channel.h"
#include "core/tools/compositor_bindings.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kNetworkPatience = 500ms;

bool isDisplayThere(const Platform& platform) {
  return platform.permissions->state(Permission::accessibility) != PermissionState::unavailable;
}

/// Asks the system for each combination and gives it back; for when the application is not running.
std::vector<RefusedShortcut> tryOut(HotkeyBackend& backend, const std::vector<BoundCommand>& wanted) {
  std::vector<RefusedShortcut> refused;
  for (const auto& [owner, hotkey, target] : wanted) {
    const auto taken = backend.registerHotkey(kProbeHotkeyID, hotkey.keyCode, hotkey.carbonModifiers);
    if (taken)
      backend.unregisterHotkey(kProbeHotkeyID);
    else
      refused.push_back({owner, hotkey, taken.error().description()});
  }
  return refused;
}

std::vector<RefusedShortcut> decodeRefused(const QJsonObject& answer) {
  std::vector<RefusedShortcut> refused;
  for (const QJsonValue& entry : answer.value("refused"_L1).toArray()) {
    RefusedShortcut shortcut;
    if (!decode(entry["hotkey"_L1], shortcut.hotkey)) continue;
    shortcut.owner = entry["owner"_L1].toString();
    shortcut.reason = entry["reason"_L1].toString();
    refused.push_back(shortcut);
  }
  return refused;
}

void reportRefused(const std::vector<BoundCommand>& wanted, const std::vector<RefusedShortcut>& refused,
                   const Platform& platform, std::vector<Finding>& findings) {
  std::vector<Hotkey> used;
  for (const BoundCommand& entry : wanted) used.push_back(entry.hotkey);
  const QString hint = platform.systemInfo->shortcutOwnerHint();
  for (const RefusedShortcut& shortcut : refused) {
    QString text = u"%1 %2: %3"_s.arg(shortcut.hotkey.display(), shortcut.owner, shortcut.reason);
    if (!hint.isEmpty()) text += u" (perhaps %1 or your desktop)"_s.arg(hint);
    if (const auto free = freeCombination(*platform.hotkeys, used, kProbeHotkeyID)) {
      text += u"; %1 is free"_s.arg(free->display());
      used.push_back(*free);
    }
    findings.push_back({u"Shortcuts"_s, false, text});
  }
}

/// A permission that is granted but does not reach everything is a finding too.
void reportPermissions(const Permissions& permissions, std::vector<Finding>& findings) {
  for (const auto& [permission, name] : kPermissionNames) {
    const bool granted = permissions.state(permission) == PermissionState::granted;
    const QString remedy = permissions.remedy(permission);
    QStringList texts;
    if (granted) texts.append(u"allowed"_s);
    if (!remedy.isEmpty()) texts.append(remedy);
    findings.push_back({name, remedy.isEmpty(), texts.join(u"; "_s)});
  }
}

Finding networkFinding(NetworkPath& path) {
  struct Report {
    std::binary_semaphore arrived{0};
    std::atomic<bool> satisfied{false};
  };
  const auto report = std::make_shared<Report>();
  path.start([report](bool satisfied) {
    report->satisfied = satisfied;
    report->arrived.release();
  });
  if (!report->arrived.try_acquire_for(kNetworkPatience)) return {u"Network"_s, true, u"not known yet"_s};
  return report->satisfied ? Finding{u"Network"_s, true, u"online"_s}
                           : Finding{u"Network"_s, false, u"offline: the nine tools that need it wait"_s};
}

Finding dataFinding(const Folders& folders) {
  const QFileInfo folder(folders.vantle());
  if (!folder.exists()) return {u"Data"_s, true, folders.vantle() + u" (made at the first change)"_s};
  if (!folder.isDir() || !folder.isWritable())
    return {u"Data"_s, false, folders.vantle() + u" cannot be written; changes will be lost"_s};
  return {u"Data"_s, true, folders.vantle()};
}

Finding agentFinding(const QString& name, const QString& relativePath) {
  const QString path = QDir::home().filePath(relativePath);
  return {u"Agents"_s, true, u"%1: %2%3"_s.arg(name, path, QFileInfo(path).isDir() ? QString() : u" (none yet)"_s)};
}

void print(const std::vector<Finding>& findings, QTextStream& out) {
  for (const Finding& finding : findings)
    out << (finding.isFine ? u"ok   "_s : u"!!   "_s) << finding.subject.leftJustified(18) << finding.text << '\n';
}

void printJson(const std::vector<Finding>& findings, QTextStream& out) {
  QJsonArray rows;
  for (const Finding& finding : findings) {
    QJsonObject row{{u"subject"_s, finding.subject}, {u"ok"_s, finding.isFine}, {u"text"_s, finding.text}};
    if (!finding.details.isEmpty()) row.insert(u"bindings"_s, finding.details);
    rows.append(row);
  }
  out << QJsonDocument(rows).toJson(QJsonDocument::Indented);
}

using Running = std::expected<QJsonObject, AppClient::Error>;

/// The running application knows whether the desktop has given it the shortcuts.
QString shortcutsRemedy(const Permissions& permissions, const Running& running) {
  const bool isLimited = !running || running->value("shortcutsLimited"_L1).toBool(true);
  return isLimited ? permissions.shortcutsRemedy() : QString();
}

std::vector<Finding> examine(const Platform& platform, const Folders& folders, const Running& running,
                             const Bindings& bindings) {
  const std::vector<BoundCommand>& wanted = bindings.commands;
  const QString remedy = shortcutsRemedy(*platform.permissions, running);
  std::vector<Finding> findings;
  findings.push_back({u"Application"_s, true, running ? u"running"_s : u"not running"_s});
  if (isDisplayThere(platform)) {
    platform.hotkeys->install([](std::uint32_t) {});
    findings.push_back({u"Display"_s, true, qEnvironmentVariable("DISPLAY", platform.systemInfo->systemName())});
    const auto refused = running ? decodeRefused(*running) : tryOut(*platform.hotkeys, wanted);
    // Where the desktop has them, those of other programs are not reached by ours.
    if (refused.empty() && remedy.isEmpty())
      findings.push_back({u"Shortcuts"_s, true, u"all %1 are ours"_s.arg(wanted.size())});
    reportRefused(wanted, refused, platform, findings);
    reportPermissions(*platform.permissions, findings);
    if (!remedy.isEmpty()) findings.push_back({u"Shortcuts"_s, false, remedy, sessionBindings(bindings)});
  } else {
    findings.push_back({u"Display"_s, false, u"none: shortcuts, panels and typing need one"_s});
  }
  findings.push_back(networkFinding(*platform.networkPath));
  findings.push_back(serviceFinding(folders));
  findings.push_back(keychainFinding(folders, *platform.credentials));
  findings.push_back(dataFinding(folders));
  findings.push_back(agentFinding(u"Claude Code"_s, u".claude/projects"_s));
  findings.push_back(agentFinding(u"Codex"_s, u".codex/sessions"_s));
  return findings;
}

}  // namespace

int runDoctor(const QStringList& arguments, CommandContext& context) {
  const auto options = Options::parse(arguments, {{"json"_L1, {}}, {"bindings"_L1, "desktop"_L1}});
  if (!options) return usageError(commandNamed("doctor"_L1), options.error(), context);
  if (!options->words().isEmpty()) return usageError(commandNamed("doctor"_L1), u"it takes only options"_s, context);
  const bool json = options->has("json"_L1);

  const Platform platform = context.makePlatform();
  const SettingsStore settings(context.folders.file(u"settings.json"_s));
  const Bindings bindings{boundCommands(settings.value()), platform.systemInfo->desktops()};
  if (options->has("bindings"_L1)) return printBindings(bindings, options->value("bindings"_L1), json, context);

  platform.permissions->settle();
  const Running running = AppClient::request({{u"do"_s, u"doctor"_s}});
  const auto findings = examine(platform, context.folders, running, bindings);
  const bool isLeftToDesktop = !shortcutsRemedy(*platform.permissions, running).isEmpty();
  if (json) {
    printJson(findings, context.out);
  } else {
    print(findings, context.out);
    if (isLeftToDesktop) printBindings(bindings, u"session"_s, false, context);
  }
  return std::ranges::all_of(findings, &Finding::isFine) ? exit_code::kSuccess : exit_code::kFailure;
}
