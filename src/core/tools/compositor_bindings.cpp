#include "core/tools/compositor_bindings.h"

#include <QKeySequence>
#include <QRegularExpression>

#include <algorithm>

#include "core/hotkeys/app_shortcuts.h"
#include "core/settings/app_settings.h"
#include "core/tools/tool.h"
#include "platform/key_codes.h"
#include "platform/keysym_name.h"

using namespace Qt::StringLiterals;

namespace {

/// What a desktop calls the modifiers, in the order in which combinations are written.
struct ModifierNames {
  QLatin1StringView control;
  QLatin1StringView alt;
  QLatin1StringView shift;
  QLatin1StringView super;
};

QStringList modifiers(const Hotkey& hotkey, const ModifierNames& names) {
  QStringList held;
  if (hotkey.carbonModifiers & carbon::kControl) held.append(names.control);
  if (hotkey.carbonModifiers & carbon::kOption) held.append(names.alt);
  if (hotkey.carbonModifiers & carbon::kShift) held.append(names.shift);
  if (hotkey.carbonModifiers & carbon::kCommand) held.append(names.super);
  return held;
}

/// What a shell and every desktop take as it stands.
bool isPlainWord(const QString& word) {
  static const QRegularExpression plain(uR"(\A[A-Za-z0-9_/.+:@-]+\z)"_s);
  return plain.match(word).hasMatch();
}

QString shellQuoted(const QString& word) {
  if (isPlainWord(word)) return word;
  return u'\'' + QString(word).replace(u'\'', u"'\\''"_s) + u'\'';
}

/// What has a meaning in double quotes.
constexpr auto kShellSpecial = R"("`$\)"_L1;

/// In double quotes, with a backslash before what would end them or begin something.
QString doubleQuoted(QString text, QLatin1StringView special) {
  QString quoted;
  for (const QChar character : std::as_const(text)) {
    if (special.contains(character)) quoted += u'\\';
    quoted += character;
  }
  return u'"' + quoted + u'"';
}

QString summonLine(const QString& program, const BoundCommand& command) {
  return shellQuoted(program) + u" summon "_s + command.target;
}

const KeyCode& keyOf(const BoundCommand& command) { return *findKeyCode(command.hotkey.keyCode); }

QString swayLine(const BoundCommand& command, const QString& program) {
  QStringList keys = modifiers(command.hotkey, {"Ctrl"_L1, "Mod1"_L1, "Shift"_L1, "Mod4"_L1});
  keys.append(keysymName(keyOf(command)));
  // It looks for commas between single quotes too, takes a backslash away, and a dollar begins a variable.
  const QString word = isPlainWord(program) ? program : doubleQuoted(program, kShellSpecial);
  const QString line = QString(word + u" summon "_s + command.target).replace(u'\\', u"\\\\"_s).replace(u'$', u"$$"_s);
  // By position, so that the combinations stay where they are under another layout.
  return u"bindsym --to-code %1 exec %2\n"_s.arg(keys.join(u'+'), line);
}

QString hyprlandLine(const BoundCommand& command, const QString& program) {
  const QString held = modifiers(command.hotkey, {"CTRL"_L1, "ALT"_L1, "SHIFT"_L1, "SUPER"_L1}).join(u' ');
  // A single one would begin a comment.
  const QString line = summonLine(program, command).replace(u'#', u"##"_s);
  return u"bind = %1, %2, exec, %3\n"_s.arg(held, keysymName(keyOf(command)), line);
}

/// A text as gsettings reads it, as one word of a shell.
QString settingsText(const QString& text) { return shellQuoted(doubleQuoted(text, R"("\)"_L1)); }

QString gnomeLine(const BoundCommand& command, const QString& program) {
  QString keys;
  for (const QString& name : modifiers(command.hotkey, {"Control"_L1, "Alt"_L1, "Shift"_L1, "Super"_L1}))
    keys += u'<' + name + u'>';
  keys += keysymName(keyOf(command));
  return u"bind %1 %2 %3 %4\n"_s.arg(command.target, settingsText(u"Vantle: "_s + command.name), settingsText(keys),
                                     settingsText(summonLine(program, command)));
}

/// The desktop keeps a list of folders, each with the three values of one combination. Ours are taken out and put in
/// anew, those of others stay.
QString gnomeScript(const std::vector<BoundCommand>& commands, const QString& program) {
  QString script =
      uR"(schema=org.gnome.settings-daemon.plugins.media-keys
base=/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings
list=$(gsettings get $schema custom-keybindings | grep -o "'[^']*'" | grep -v "/vantle-" | tr '\n' ',')
bind() {
  gsettings set $schema.custom-keybinding:$base/vantle-$1/ name "$2"
  gsettings set $schema.custom-keybinding:$base/vantle-$1/ binding "$3"
  gsettings set $schema.custom-keybinding:$base/vantle-$1/ command "$4"
  list="$list'$base/vantle-$1/',"
}
)"_s;
  for (const BoundCommand& command : commands) script += gnomeLine(command, program);
  return script + u"gsettings set $schema custom-keybindings \"[${list%,}]\"\n"_s;
}

QString kdeKeys(const Hotkey& hotkey, const KeyCode& key) {
  Qt::KeyboardModifiers held;
  if (hotkey.carbonModifiers & carbon::kControl) held |= Qt::ControlModifier;
  if (hotkey.carbonModifiers & carbon::kOption) held |= Qt::AltModifier;
  if (hotkey.carbonModifiers & carbon::kShift) held |= Qt::ShiftModifier;
  if (hotkey.carbonModifiers & carbon::kCommand) held |= Qt::MetaModifier;
  if (key.qtKey == Qt::Key_Enter) held |= Qt::KeypadModifier;
  return QKeySequence(QKeyCombination(held, static_cast<Qt::Key>(key.qtKey))).toString(QKeySequence::PortableText);
}

/// A value of a desktop file, where a backslash begins an escape.
QString desktopValue(const QString& text) { return QString(text).replace(u'\\', u"\\\\"_s); }

QString kdeExec(const QString& program, const QString& target) {
  const QString word = isPlainWord(program) ? program : doubleQuoted(program, kShellSpecial);
  return desktopValue(QString(word).replace(u'%', u"%%"_s) + u" summon "_s + target);
}

/// The desktop takes a comma for the end of a combination, wherever it stands.
QString kdeShortcutLine(const BoundCommand& command) {
  const QString keys = kdeKeys(command.hotkey, keyOf(command));
  if (keys.contains(u','))
    return u"# %1 cannot be said here: set it in System Settings, Keyboard, Shortcuts, Vantle\n"_s.arg(keys);
  return u"X-KDE-Shortcuts=%1\n"_s.arg(desktopValue(keys));
}

QString kdeAction(const BoundCommand& command, const QString& program) {
  return u"\n[Desktop Action %1]\nName=%2\nExec=%3\n"_s.arg(command.target, command.name,
                                                            kdeExec(program, command.target)) +
         kdeShortcutLine(command);
}

QString kdeScript(const std::vector<BoundCommand>& commands, const QString& program) {
  QStringList targets;
  QString actions;
  for (const BoundCommand& command : commands) {
    targets.append(command.target + u';');
    actions += kdeAction(command, program);
  }
  return uR"(folder="${XDG_DATA_HOME:-$HOME/.local/share}/kglobalaccel"
mkdir -p "$folder"
cat >"$folder/vantle-shortcuts.desktop" <<'END'
[Desktop Entry]
Type=Application
Name=Vantle
Icon=vantle
)"_s + u"Exec=%1\nActions=%2\n"_s.arg(kdeExec(program, u"launcher"_s), targets.join(QString())) +
         actions + u"END\n"_s;
}

QString lines(const std::vector<BoundCommand>& commands, const QString& program,
              QString (*line)(const BoundCommand&, const QString&)) {
  QString all;
  for (const BoundCommand& command : commands) all += line(command, program);
  return all;
}

QString plainLine(const BoundCommand& command, const QString& program) {
  return command.hotkey.spelled().leftJustified(20) + summonLine(program, command) + u'\n';
}

}  // namespace

const CompositorText& text(Compositor compositor) {
  return *std::ranges::find(kCompositors, compositor, &CompositorText::compositor);
}

std::optional<Compositor> compositorOf(const QString& desktops) {
  for (const QString& desktop : desktops.split(u':'))
    for (const CompositorText& row : kCompositors)
      if (desktop.compare(row.desktop, Qt::CaseInsensitive) == 0) return row.compositor;
  return std::nullopt;
}

std::vector<BoundCommand> boundCommands(const AppSettings& settings) {
  std::vector<BoundCommand> commands;
  for (const ToolInfo& info : toolTable()) {
    if (settings.disabledTools.contains(info.id)) continue;
    const auto own = settings.hotkeys.find(info.id);
    const std::optional<Hotkey> hotkey = own == settings.hotkeys.end() ? info.defaultHotkey : own->second;
    if (hotkey) commands.push_back({info.name, *hotkey, info.id});
  }
  for (const AppShortcut& shortcut : kAppShortcuts)
    commands.push_back({shortcut.name, shortcut.hotkey, shortcut.target});
  return commands;
}

QString bindingSnippet(Compositor compositor, std::vector<BoundCommand> commands, const QString& program) {
  // A key that is on no list of ours has no name there.
  std::erase_if(commands, [](const BoundCommand& command) { return !findKeyCode(command.hotkey.keyCode); });
  switch (compositor) {
    case Compositor::gnome:
      return gnomeScript(commands, program);
    case Compositor::kde:
      return kdeScript(commands, program);
    case Compositor::sway:
      return lines(commands, program, swayLine);
    case Compositor::hyprland:
      break;
  }
  return lines(commands, program, hyprlandLine);
}

QString bindingList(const std::vector<BoundCommand>& commands, const QString& program) {
  return lines(commands, program, plainLine);
}
