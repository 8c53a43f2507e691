#include <QDir>
#include <QFile>
#include <QTest>

#include "support/service_world.h"

using namespace Qt::StringLiterals;

namespace {

/// A fresh environment, or the text of what stands against it.
template <class Environment>
std::expected<Environment, QString> current(ServiceWorld& world) {
  std::optional<std::expected<Environment, QString>> found;
  const Job job = Job::start();
  world.services.environments.current<Environment>(job, [&found](const auto& result) {
    if (result)
      found = *result;
    else
      found = std::unexpected(result.error().description());
  });
  // The keychain and the built-in service answer later.
  for (int turn = 0; turn < 5 && !found; ++turn) QCoreApplication::processEvents();
  return found.value_or(std::unexpected(u"no answer"_s));
}

void write(const ServiceWorld& world, const char* tool, const QByteArray& json) {
  const QString folder = world.folders.file(QString::fromLatin1(tool));
  QDir().mkpath(folder);
  QFile file(folder + u"/config.json"_s);
  QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
  // Written with single quotes here: they are easier to read, and moc 6.4 loses its way in raw strings.
  file.write(QByteArray(json).replace('\'', '"'));
}

QString shown(const TokenEnvironment& environment) {
  return environment.endpoint.toString() + u' ' + QString::fromUtf8(environment.token);
}

}  // namespace

class TestEnvironments : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aHalfOverrideIsNone() {
    ServiceWorld world;
    world.useOwnHosts();
    for (const char* json :
         {"", "{", "[]", "{'endpoint':'https://mine.example'}", "{'token':'t'}", "{'endpoint':'','token':'t'}",
          "{'endpoint':' ','token':'t'}", "{'endpoint':'no address','token':'t'}",
          "{'endpoint':'https://a.example\\n','token':'t'}", "{'endpoint':'https://mine.example','token':null}"}) {
      write(world, "Uplink", json);
      QCOMPARE(shown(*current<UplinkEnvironment>(world)), u"https://links.example/v1/images "_s);
    }
  }

  void generateImageTrimsItsTokenAndHasNoneOfTheServices() {
    ServiceWorld world;
    write(world, "GenerateImage", "{'endpoint':'https://mine.example','token':' t\\n'}");
    QCOMPARE(current<GenerateImageEnvironment>(world)->overrideToken, QByteArray("t"));
    write(world, "GenerateImage", "{'endpoint':'https://mine.example','token':'  '}");
    QVERIFY(!current<GenerateImageEnvironment>(world)->overrideToken);
    QVERIFY(QFile::remove(world.folders.file(u"GenerateImage/config.json"_s)));
    QVERIFY(!current<GenerateImageEnvironment>(world)->overrideToken);
    QCOMPARE(world.builtIn.starts, 1);
  }

  void whatStandsAgainstAServiceIsToldAndAnOverrideNeedsNone() {
    ServiceWorld world;
    world.builtIn.place = std::unexpected(ServiceError{ServiceError::Reason::other, u"it does not start"_s});
    QCOMPARE(current<UplinkEnvironment>(world).error(), u"it does not start"_s);
    write(world, "Uplink", "{'endpoint':'https://mine.example','token':''}");
    QVERIFY(current<UplinkEnvironment>(world));
  }
};

QTEST_GUILESS_MAIN(TestEnvironments)
#include "test_environments.moc"
