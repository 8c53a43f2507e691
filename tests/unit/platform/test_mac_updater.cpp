#include <QTemporaryDir>
#include <QTest>

#include "platform/mac/mac_updater.h"
#include "support/files.h"

using namespace Qt::StringLiterals;

namespace {

/// A program in the place of the one that looks at signatures, which notes how it is called.
struct World {
  explicit World(const QByteArray& script) {
    const QString program = folder.filePath(u"codesign"_s);
    if (!writeFile(program, "#!/bin/sh\nprintf '%s\\n' \"$@\" > '" + calls().toUtf8() + "'\n" + script))
      qFatal("cannot write");
    QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  }

  QString calls() const { return folder.filePath(u"calls"_s); }
  std::optional<std::expected<void, QString>> verify(const QString& program, const QString& publisher) {
    std::optional<std::expected<void, QString>> answer;
    MacUpdater(folder.filePath(program)).verify(u"/tmp/Vantle-1.2.0.dmg"_s, publisher, job, [&](const auto& verified) {
      answer = verified;
    });
    if (!QTest::qWaitFor([&] { return answer.has_value(); })) return std::nullopt;
    return answer;
  }

  QTemporaryDir folder;
  Job job = Job::start();
};

}  // namespace

class TestMacUpdater : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void theSignatureMustBeOfThatTeam() {
    World world("exit 0\n");
    const auto answer = world.verify(u"codesign"_s, u"TEAM123456"_s);
    QVERIFY(answer && answer->has_value());
    const auto words = QString::fromUtf8(readFile(world.calls())).split(u'\n', Qt::SkipEmptyParts);
    QCOMPARE(words.mid(0, 3), QStringList({u"--verify"_s, u"--strict"_s, u"-R"_s}));
    QVERIFY(words.value(3).startsWith(u"=anchor apple generic and "_s));
    QVERIFY(words.value(3).endsWith(u"certificate leaf[subject.OU] = \"TEAM123456\""_s));
    QCOMPARE(words.value(4), u"/tmp/Vantle-1.2.0.dmg"_s);
  }

  void anythingElseIsRefused() {
    World world("echo 'the code failed to satisfy' >&2\nexit 3\n");
    QCOMPARE(world.verify(u"codesign"_s, u"TEAM123456"_s)->error(), u"the code failed to satisfy"_s);
    QVERIFY(!world.verify(u"missing"_s, u"TEAM123456"_s)->has_value());
    QFile::remove(world.calls());
    QVERIFY(!world.verify(u"codesign"_s, u"\" or anchor apple"_s)->has_value());
    QVERIFY(!QFile::exists(world.calls()));
  }
};

QTEST_GUILESS_MAIN(TestMacUpdater)
#include "test_mac_updater.moc"
