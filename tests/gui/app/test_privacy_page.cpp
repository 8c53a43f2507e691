#include <QDesktopServices>
#include <QFileDialog>
#include <QJsonDocument>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include "app/settings/settings_window.h"
#include "support/app_stage.h"
#include "support/controls.h"
#include "support/files.h"

using namespace Qt::StringLiterals;

namespace {

/// An application from a disk image.
struct ImageUpdater final : Updater {
  QString downloadName() const override { return u"macos-arm64"_s; }
};

/// The settings window on its privacy tab.
struct Stage : AppStage {
  SettingsSelection selection;
  SettingsWindow window;

  explicit Stage(const UpdateSource& updates = {}, bool isImage = false)
      : window(from(context, updates, isImage), selection) {
    writeFile(world.folders.file(u"settings.json"_s), "{}");
    selection.setTab(SettingsTab::privacy);
    window.open();
  }

  static AppContext& from(AppContext& context, const UpdateSource& updates, bool isImage) {
    context.updateSource = updates;
    if (isImage) context.platform.updater = std::make_unique<ImageUpdater>();
    return context;
  }
  void press(const QString& name) {
    auto* button = named<QPushButton>(window, name);
    QVERIFY2(button, qPrintable(name));
    button->click();
  }
  bool says(const QString& text) { return isShown(window, text); }
  QByteArray codeShown() {
    for (const QLabel* label : window.findChildren<QLabel*>())
      if (label->isVisible() && label->text().startsWith(u'{')) return label->text().toUtf8();
    return {};
  }
  /// Chooses a folder in the dialog that is up.
  void choose(const QString& folder) {
    auto* dialog = window.findChild<QFileDialog*>();
    QVERIFY(dialog && dialog->isVisible() && !dialog->isModal());
    dialog->setDirectory(folder);
    Q_EMIT dialog->fileSelected(folder);
    dialog->close();
  }
};

/// Takes what would be opened in another program.
class Opened : public QObject {
  Q_OBJECT

 public:
  Opened() { QDesktopServices::setUrlHandler(u"file"_s, this, "open"); }
  ~Opened() override { QDesktopServices::unsetUrlHandler(u"file"_s); }
  QStringList paths;

 public Q_SLOTS:
  void open(const QUrl& url) { paths.append(url.toLocalFile()); }
};

}  // namespace

class TestPrivacyPage : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void showsExactlyWhatIsSent() {
    Stage stage;
    stage.press(u"Show What Is Sent"_s);
    const QJsonObject shown = QJsonDocument::fromJson(stage.codeShown()).object();
    stage.world.preferences.update([](Preferences& preferences) { preferences.shareUsageStats = true; });
    stage.world.analytics.track(UsageEvent::toolActivated, u"frequent-clis"_s);
    QCOMPARE(stage.world.events.at(0), shown);
    stage.press(u"Hide what is sent"_s);
    QVERIFY(stage.codeShown().isEmpty());
  }

  void saysWhoIsAskedForNewVersionsWhereAnybodyIs() {
    const QUrl folder(u"https://updates.example.org/vantle"_s);
    const UpdateSource source{folder, u"TEAM123456"_s};
    QVERIFY(Stage(source, true).says(u"Vantle asks updates.example.org whether there is a newer version"_s));
    const QString asks = u"whether there is a newer version"_s;
    QVERIFY(!Stage(source).says(asks));
    QVERIFY(!Stage({folder, {}}, true).says(asks));
    QVERIFY(!Stage({}, true).says(asks));
  }

  void exportsIntoTheChosenFolder() {
    Stage stage;
    Opened opened;
    const QTemporaryDir chosen;
    stage.press(u"Export…"_s);
    stage.press(u"Export…"_s);
    QCOMPARE(stage.window.findChildren<QFileDialog*>().size(), 1);
    stage.choose(chosen.path());
    QTRY_VERIFY(stage.says(u"1 file is in "_s + chosen.path()));
    const QStringList made = QDir(chosen.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    QCOMPARE(made.size(), 1);
    QVERIFY(QFile::exists(chosen.filePath(made.first() + u"/settings.json"_s)));
    stage.press(u"Show the exported copy"_s);
    stage.press(u"Open Data Folder"_s);
    QCOMPARE(opened.paths, (QStringList{chosen.filePath(made.first()), stage.world.folders.vantle()}));
  }

  void aCancelledExportSaysHowItEnded() {
    Stage stage;
    const QTemporaryDir chosen;
    QVERIFY(writeFile(stage.world.folders.file(u"large"_s), QByteArray(64 * 1024 * 1024, 'x')));
    stage.press(u"Export…"_s);
    stage.choose(chosen.path());
    stage.press(u"Cancel the export"_s);
    QTRY_VERIFY(named<QPushButton>(stage.window, u"Export…"_s));
    const bool isKept = !QDir(chosen.path()).isEmpty();
    QCOMPARE(stage.says(u"The export was cancelled."_s), !isKept);
    QCOMPARE(named<QPushButton>(stage.window, u"Show the exported copy"_s) != nullptr, isKept);
  }

  void saysWhyAnExportFailed() {
    Stage stage;
    stage.press(u"Export…"_s);
    stage.choose(stage.world.folders.vantle());
    QTRY_VERIFY(stage.says(u"An export cannot contain itself"_s));
    QVERIFY(!named<QPushButton>(stage.window, u"Show the exported copy"_s));
  }

  void deletingAsksInPlaceFirst() {
    Stage stage;
    stage.press(u"Delete All Data"_s);
    QVERIFY(stage.says(u"Kept: the transcripts of your agents"_s));
    auto* keep = named<QPushButton>(stage.window, u"Keep My Data"_s);
    QVERIFY(keep);
    QTRY_VERIFY(keep->hasFocus());
    QTest::keyClick(keep, Qt::Key_Escape);
    QVERIFY(stage.window.isVisible());
    QVERIFY(!named<QPushButton>(stage.window, u"Delete Everything"_s));

    stage.press(u"Delete All Data"_s);
    stage.window.close();
    stage.window.open();
    QVERIFY(!named<QPushButton>(stage.window, u"Delete Everything"_s));

    stage.press(u"Delete All Data"_s);
    stage.press(u"Delete Everything"_s);
    QTRY_COMPARE(stage.freshStart.starts, 1);
  }

  void saysWhyNothingWasDeleted() {
    Stage stage;
    QVERIFY(QDir(stage.world.folders.vantle()).removeRecursively());
    QVERIFY(QFile::link(u"/nowhere"_s, stage.world.folders.vantle()));
    stage.press(u"Delete All Data"_s);
    stage.press(u"Delete Everything"_s);
    QTRY_VERIFY(stage.says(u"is a link to another place"_s));
    QVERIFY(named<QPushButton>(stage.window, u"Delete Everything"_s)->isEnabled());
    QCOMPARE(stage.freshStart.starts, 0);
  }
};

QTEST_MAIN(TestPrivacyPage)
#include "test_privacy_page.moc"
