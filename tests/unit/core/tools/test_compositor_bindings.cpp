#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include "core/settings/app_settings.h"
#include "core/tools/compositor_bindings.h"
#include "support/files.h"

using namespace Qt::StringLiterals;

namespace {

const std::vector<BoundCommand> kCommands = {
    {u"Image to URL"_s, {32, carbon::kControl | carbon::kOption}, u"uplink"_s},
    {u"Settings"_s, {43, carbon::kControl | carbon::kOption}, u"settings"_s},
    {u"Rewrite"_s, {42, carbon::kCommand | carbon::kShift}, u"rewrite"_s},
    {u"Nobody's key"_s, {200, carbon::kControl}, u"nothing"_s},
};

/// A path that every one of the languages has something to say about.
const QString kAwkward = u"/opt/it's a \"$HOME\" #1, 5%\\/vantle"_s;

/// Tildes for double quotes, of which there are many here.
QString quoted(QString text) { return text.replace(u'~', u'"'); }

/// Runs a script with a `gsettings` that keeps what it is told in files, as GNOME's keeps it in its database.
QString listAfter(const QString& script, const QString& folder) {
  const QString tool = folder + u"/gsettings"_s;
  if (!writeFile(tool,
                 "#!/bin/sh\n"
                 "store=$(dirname \"$0\")/$(printf %s \"$2-$3\" | tr '/:' '__')\n"
                 "if [ \"$1\" = get ]; then cat \"$store\"; else printf '%s\\n' \"$4\" >\"$store\"; fi\n"))
    return {};
  QFile::setPermissions(tool, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  QProcess shell;
  auto environment = QProcessEnvironment::systemEnvironment();
  environment.insert(u"PATH"_s, folder + u':' + environment.value(u"PATH"_s));
  shell.setProcessEnvironment(environment);
  shell.start(u"sh"_s, {u"-eu"_s, u"-c"_s, script});
  if (!shell.waitForFinished() || shell.exitCode() != 0) return QString::fromUtf8(shell.readAllStandardError());
  return QString::fromUtf8(readFile(folder + u"/org.gnome.settings-daemon.plugins.media-keys-custom-keybindings"_s));
}

}  // namespace

class TestCompositorBindings : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void theUsersOwnCombinationsAreBound() {
    AppSettings settings;
    settings.disabledTools = {u"uplink"_s};
    settings.hotkeys[u"promptify"_s] = std::nullopt;
    settings.hotkeys[u"feedback"_s] = Hotkey{96, carbon::kCommand};
    const QString list = bindingList(boundCommands(settings), u"vantle"_s);
    QCOMPARE(list.count(u'\n'), 16);
    QVERIFY(!list.contains("uplink"_L1) && !list.contains("promptify"_L1));
    QVERIFY2(list.contains("Super+F5            vantle summon feedback\n"_L1), qPrintable(list));
    QVERIFY2(list.contains("Ctrl+Alt+T          vantle summon settings-tools\n"_L1), qPrintable(list));
  }

  void eachDesktopHasItsOwnNames_data() {
    QTest::addColumn<Compositor>("compositor");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("sway") << Compositor::sway
                          << QStringList{u"bindsym --to-code Ctrl+Mod1+u exec vantle summon uplink"_s,
                                         u"bindsym --to-code Ctrl+Mod1+comma exec vantle summon settings"_s,
                                         u"bindsym --to-code Shift+Mod4+backslash exec vantle summon rewrite"_s};
    QTest::newRow("hyprland") << Compositor::hyprland
                              << QStringList{u"bind = CTRL ALT, u, exec, vantle summon uplink"_s,
                                             u"bind = CTRL ALT, comma, exec, vantle summon settings"_s,
                                             u"bind = SHIFT SUPER, backslash, exec, vantle summon rewrite"_s};
    QTest::newRow("gnome")
        << Compositor::gnome
        << QStringList{
               quoted(u"bind uplink '~Vantle: Image to URL~' '~<Control><Alt>u~' '~vantle summon uplink~'"_s),
               quoted(u"bind settings '~Vantle: Settings~' '~<Control><Alt>comma~' '~vantle summon settings~'"_s),
               quoted(u"bind rewrite '~Vantle: Rewrite~' '~<Shift><Super>backslash~' '~vantle summon rewrite~'"_s)};
    QTest::newRow("kde")
        << Compositor::kde
        << QStringList{u"Actions=uplink;settings;rewrite;"_s, u"Exec=vantle summon uplink"_s,
                       u"X-KDE-Shortcuts=Ctrl+Alt+U"_s,
                       u"# Ctrl+Alt+, cannot be said here: set it in System Settings, Keyboard, Shortcuts, Vantle"_s,
                       quoted(u"X-KDE-Shortcuts=Meta+Shift+\\\\"_s)};
  }
  void eachDesktopHasItsOwnNames() {
    QFETCH(Compositor, compositor);
    QFETCH(QStringList, lines);
    const QString snippet = bindingSnippet(compositor, kCommands, u"vantle"_s);
    const QStringList written = snippet.split(u'\n');
    for (const QString& line : std::as_const(lines)) QVERIFY2(written.contains(line), qPrintable(snippet));
    QVERIFY2(!snippet.contains("nothing"_L1), qPrintable(snippet));
  }

  void awkwardPathsAreQuotedInEachLanguage() {
    const auto snippet = [](Compositor compositor) {
      return bindingSnippet(compositor, {kCommands.front()}, kAwkward);
    };
    QCOMPARE(
        snippet(Compositor::sway),
        quoted(
            u"bindsym --to-code Ctrl+Mod1+u exec ~/opt/it's a \\\\~\\\\$$HOME\\\\~ #1, 5%\\\\\\\\/vantle~ summon uplink\n"_s));
    QCOMPARE(snippet(Compositor::hyprland),
             quoted(u"bind = CTRL ALT, u, exec, '/opt/it'\\''s a ~$HOME~ ##1, 5%\\/vantle' summon uplink"_s) + u'\n');
    const QString kde = snippet(Compositor::kde);
    QVERIFY2(kde.contains(quoted(u"Exec=~/opt/it's a \\\\~\\\\$HOME\\\\~ #1, 5%%\\\\\\\\/vantle~ summon uplink"_s)),
             qPrintable(kde));
  }

  void gnomesScriptReplacesItsOwnAndKeepsOthers() {
    const QTemporaryDir folder;
    const QString list = folder.filePath(u"org.gnome.settings-daemon.plugins.media-keys-custom-keybindings"_s);
    const QString base = u"/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings"_s;
    const QString script = bindingSnippet(Compositor::gnome, kCommands, kAwkward);
    const QString ours = u"'%1/vantle-uplink/','%1/vantle-settings/','%1/vantle-rewrite/'"_s.arg(base);
    QVERIFY(writeFile(list, "@as []\n"));
    QCOMPARE(listAfter(script, folder.path()), u"[%1]\n"_s.arg(ours));
    QVERIFY(writeFile(list, u"['%1/custom0/', '%1/vantle-gone/', '%1/vantle-uplink/']\n"_s.arg(base).toUtf8()));
    QCOMPARE(listAfter(script, folder.path()), u"['%1/custom0/',%2]\n"_s.arg(base, ours));
    const QString command = folder.filePath(
        u"org.gnome.settings-daemon.plugins.media-keys.custom-keybinding_%1_vantle-uplink_-command"_s.arg(
            QString(base).replace(u'/', u'_')));
    QCOMPARE(QString::fromUtf8(readFile(command)),
             quoted(u"~'/opt/it'\\\\''s a \\~$HOME\\~ #1, 5%\\\\/vantle' summon uplink~"_s) + u'\n');
  }

  void theDesktopIsFoundAmongItsNames() {
    QCOMPARE(compositorOf(u"ubuntu:GNOME"_s), Compositor::gnome);
    QCOMPARE(compositorOf(u"KDE"_s), Compositor::kde);
    QCOMPARE(compositorOf(u"hyprland"_s), Compositor::hyprland);
    QCOMPARE(compositorOf(u"weston"_s), std::nullopt);
    QCOMPARE(compositorOf({}), std::nullopt);
  }
};

QTEST_GUILESS_MAIN(TestCompositorBindings)
#include "test_compositor_bindings.moc"
