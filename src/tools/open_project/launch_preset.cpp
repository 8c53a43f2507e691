#include "tools/open_project/launch_preset.h"

#include <QStandardPaths>
#include <QStringList>

#include <algorithm>
#include <array>

#include "base/shell_quote.h"
#include "platform/system_info.h"

using namespace Qt::StringLiterals;

namespace {

struct PresetRow {
  QLatin1StringView name;
  QLatin1StringView command;
  QLatin1StringView scriptedCommand;
  /// A program on the shell's path, or an application's folder name; empty for what is always there.
  QLatin1StringView needs;
};

constexpr auto kTerminalIcon = "terminal.fill"_L1;

constexpr std::array kMacPresets = {
    PresetRow{"Terminal"_L1, "open -a Terminal %path"_L1, "open -a Terminal %script"_L1, {}},
    PresetRow{"iTerm"_L1, "open -a iTerm %path"_L1, "open -a iTerm %script"_L1, "iTerm.app"_L1},
    PresetRow{"Ghostty"_L1, "open -na Ghostty --args --working-directory %path"_L1,
              "open -na Ghostty --args -e %script"_L1, "Ghostty.app"_L1},
    PresetRow{"WezTerm"_L1, "wezterm start --cwd %path"_L1, "wezterm start --cwd %path -- %script"_L1, "wezterm"_L1},
    PresetRow{"kitty"_L1, "kitty --directory %path"_L1, "kitty --directory %path %script"_L1, "kitty"_L1},
    PresetRow{"VS Code"_L1, "code %path"_L1, {}, "code"_L1},
    PresetRow{"Cursor"_L1, "cursor %path"_L1, {}, "cursor"_L1},
    PresetRow{"Windsurf"_L1, "windsurf %path"_L1, {}, "windsurf"_L1},
    PresetRow{"Xcode"_L1, "xed %path"_L1, {}, "xed"_L1},
    PresetRow{"Finder"_L1, "open %path"_L1, {}, {}},
};

/// The terminal that the desktop calls its own takes the folder it is started in; so does every terminal.
constexpr PresetRow kDesktopTerminal{"Default terminal"_L1, "cd %path && xdg-terminal-exec"_L1,
                                     "cd %path && xdg-terminal-exec %script"_L1, "xdg-terminal-exec"_L1};
constexpr PresetRow kDebianTerminal{"Default terminal"_L1, "cd %path && x-terminal-emulator"_L1,
                                    "cd %path && x-terminal-emulator -e %script"_L1, "x-terminal-emulator"_L1};

constexpr std::array kLinuxPresets = {
    PresetRow{"GNOME Terminal"_L1, "gnome-terminal --working-directory %path"_L1,
              "gnome-terminal --working-directory %path -- %script"_L1, "gnome-terminal"_L1},
    PresetRow{"Konsole"_L1, "konsole --workdir %path"_L1, "konsole --workdir %path -e %script"_L1, "konsole"_L1},
    // Its option takes its value behind an equals sign only.
    PresetRow{"Ghostty"_L1, "ghostty --working-directory=%path"_L1, "ghostty --working-directory=%path -e %script"_L1,
              "ghostty"_L1},
    PresetRow{"WezTerm"_L1, "wezterm start --cwd %path"_L1, "wezterm start --cwd %path -- %script"_L1, "wezterm"_L1},
    PresetRow{"kitty"_L1, "kitty --directory %path"_L1, "kitty --directory %path %script"_L1, "kitty"_L1},
    PresetRow{"VS Code"_L1, "code %path"_L1, {}, "code"_L1},
    PresetRow{"Cursor"_L1, "cursor %path"_L1, {}, "cursor"_L1},
    PresetRow{"Windsurf"_L1, "windsurf %path"_L1, {}, "windsurf"_L1},
    PresetRow{"File manager"_L1, "xdg-open %path"_L1, {}, "xdg-open"_L1},
};

QString probeFor(QLatin1StringView needs) {
  if (needs.isEmpty()) return {};
  if (needs.endsWith(".app"_L1)) return u"test -d /Applications/%1 -o -d ~/Applications/%1"_s.arg(needs);
  return u"command -v %1"_s.arg(needs);
}

LaunchPreset toPreset(const PresetRow& row) {
  const bool isFileManager = row.name == "Finder"_L1 || row.name == "File manager"_L1;
  const QLatin1StringView icon = !row.scriptedCommand.isEmpty() ? kTerminalIcon
                                 : isFileManager                ? "folder"_L1
                                                                : "macwindow.on.rectangle"_L1;
  return {row.name, row.command, row.scriptedCommand, probeFor(row.needs), icon};
}

std::vector<LaunchPreset> toPresets(std::span<const PresetRow> rows) {
  std::vector<LaunchPreset> presets;
  std::ranges::transform(rows, std::back_inserter(presets), toPreset);
  return presets;
}

}  // namespace

std::vector<LaunchPreset> launchPresets(const SystemInfo& system) {
  if (system.systemName() == "macOS"_L1) return toPresets(kMacPresets);
  const bool hasDesktopTerminal = !QStandardPaths::findExecutable(u"xdg-terminal-exec"_s).isEmpty();
  std::vector<LaunchPreset> presets = toPresets(kLinuxPresets);
  presets.insert(presets.begin(), toPreset(hasDesktopTerminal ? kDesktopTerminal : kDebianTerminal));
  return presets;
}

const LaunchPreset* presetOf(std::span<const LaunchPreset> presets, const QString& command) {
  const auto found = std::ranges::find(presets, command.trimmed(), &LaunchPreset::command);
  return found == presets.end() ? nullptr : &*found;
}

const LaunchPreset* presetNamed(std::span<const LaunchPreset> presets, const QString& name) {
  const auto found = std::ranges::find_if(
      presets, [&](const LaunchPreset& preset) { return preset.name.compare(name, Qt::CaseInsensitive) == 0; });
  return found == presets.end() ? nullptr : &*found;
}

QString terminalNames(std::span<const LaunchPreset> presets) {
  QStringList names;
  for (const LaunchPreset& preset : presets)
    if (preset.isTerminal()) names.append(preset.name);
  const QString last = names.takeLast();
  return names.isEmpty() ? last : names.join(u", "_s) + u", or "_s + last;
}

QString expandTemplate(const QString& command, const LaunchPlaces& places) {
  const std::pair<QLatin1StringView, QString> values[] = {
      {"%path"_L1, places.path}, {"%script"_L1, places.script}, {"%arg"_L1, places.path.section(u'/', -1)}};
  QString line;
  for (qsizetype at = 0; at < command.size();) {
    const auto value = std::ranges::find_if(
        values, [&](const auto& candidate) { return QStringView(command).mid(at).startsWith(candidate.first); });
    if (value == std::end(values)) {
      line += command[at++];
    } else {
      line += singleQuoted(value->second);
      at += value->first.size();
    }
  }
  return line;
}
