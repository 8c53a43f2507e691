#include "platform/x11/terminal_windows.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <array>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array<std::string_view, 41> kClasses = {
    "aterm",
    "alacritty",
    "blackbox",
    "com.mitchellh.ghostty",
    "com.raggesilver.blackbox",
    "contour",
    "cool-retro-term",
    "deepin-terminal",
    "domterm",
    "emacs",
    "eterm",
    "foot",
    "ghostty",
    "gnome-terminal",
    "gnome-terminal-server",
    "guake",
    "gvim",
    "hyper",
    "io.elementary.terminal",
    "kgx",
    "kitty",
    "konsole",
    "lxterminal",
    "mate-terminal",
    "mlterm",
    "org.gnome.console",
    "org.gnome.ptyxis",
    "org.wezfurlong.wezterm",
    "ptyxis",
    "qterminal",
    "roxterm",
    "rxvt",
    "sakura",
    "st-256color",
    "terminator",
    "terminology",
    "tilda",
    "tilix",
    "urxvt",
    "xfce4-terminal",
    "xterm",
};
/// More are classes that other programs have made up from these: "uxterm", "kitty-scratchpad", "st".
constexpr std::array<std::string_view, 6> kParts = {"terminal", "xterm", "konsole", "rxvt", "kitty", "wezterm"};
constexpr std::string_view kShort = "st";

bool isTerminalName(const QByteArray& name) {
  const QByteArray lower = name.toLower();
  const std::string_view text(lower.constData(), static_cast<std::size_t>(lower.size()));
  return text == kShort || std::ranges::find(kClasses, text) != kClasses.end() ||
         std::ranges::any_of(kParts, [text](std::string_view part) { return text.contains(part); });
}

QString folderOf(int process) { return u"/proc/%1"_s.arg(process); }

/// The controlling end of a terminal; a program that runs in one has the other end.
bool holdsTerminal(int process) {
  const QDir files(folderOf(process) + u"/fd"_s);
  return std::ranges::any_of(files.entryList(QDir::Files | QDir::System), [&files](const QString& file) {
    const QString target = QFile::symLinkTarget(files.filePath(file));
    return target == "/dev/ptmx"_L1 || target == "/dev/pts/ptmx"_L1;
  });
}

QList<int> childrenOf(int process) {
  QList<int> children;
  const QDir threads(folderOf(process) + u"/task"_s);
  for (const QString& thread : threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
    QFile list(threads.filePath(thread + u"/children"_s));
    if (!list.open(QIODevice::ReadOnly)) continue;
    for (const QByteArray& child : list.readAll().split(' '))
      if (const int number = child.toInt(); number > 0) children.append(number);
  }
  return children;
}

}  // namespace

bool isTerminalClass(const QByteArray& wmClass) {
  const auto names = wmClass.split('\0');
  return std::ranges::any_of(names, isTerminalName);
}

bool hasTerminals(int process) {
  constexpr qsizetype kMost = 256;
  const QString program = QFile::symLinkTarget(folderOf(process) + u"/exe"_s);
  QList<int> processes{process};
  for (qsizetype index = 0; index < std::min(processes.size(), kMost); ++index) {
    if (holdsTerminal(processes[index])) return true;
    for (const int child : childrenOf(processes[index]))
      if (!program.isEmpty() && QFile::symLinkTarget(folderOf(child) + u"/exe"_s) == program) processes.append(child);
  }
  return false;
}
