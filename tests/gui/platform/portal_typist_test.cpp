#include <QTemporaryDir>
#include <QTest>

#include <mutex>

#include "platform/carbon_modifiers.h"
#include "platform/portal/portal_typist.h"
#include "support/fake_portal.h"
#include "support/files.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Answer = FakePortal::Answer;
using Result = std::expected<void, KeyEventError>;
using Kind = KeyEventError::Kind;
const QString kSession = u"/org/freedesktop/portal/desktop/session/me/1"_s;

/// A keyboard with small letters, Return and a euro sign, as keymaps name it.
std::optional<std::uint32_t> keysymOf(char32_t character) {
  if (character == U'\n') return 0xff0d;
  if (character == U'€') return 0x20ac;
  return character >= U'a' && character <= U'z' ? std::optional<std::uint32_t>(character) : std::nullopt;
}

}  // namespace

class PortalTypistTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    folder_ = std::make_unique<QTemporaryDir>();
    permission_ = folder_->filePath(u"typing-permission"_s);
    // Before the next one: the name is one program's.
    fake_.reset();
    fake_ = std::make_unique<FakePortal>();
    options_.clear();
    isOurs_ = false;
    fake_->asked = [this](const QDBusMessage& message) {
      const std::scoped_lock lock(mutex_);
      if (!message.member().startsWith(u"Notify"))
        options_[message.member()] = qdbus_cast<QVariantMap>(message.arguments().constLast());
    };
    fake_->setAnswer({.results = {{u"session_handle"_s, kSession}}}, u"CreateSession"_s);
    allow(u"token 1"_s);
    makeTypist();
  }
  void cleanup() { typist_.reset(); }

  void nothingIsAskedBeforeItIsNeeded() {
    QTest::qWait(50);
    QCOMPARE(fake_->calls, 0);
    const Result refused = type({TypeText{u"ał"_s}});
    QVERIFY2(!refused && refused.error().kind == Kind::refused, "a character that is on no key would be lost");
    QVERIFY(refused.error().reason.contains(u"“ł” is not"_s));
    QCOMPARE(fake_->calls, 0);
  }

  void textAndKeysArePressedInOrder() {
    QVERIFY(type({TypeText{u"b€"_s}, Pause{3ms}, TypeText{u"a"_s}, Pause{80ms}, PressKey{36, 0}}));
    QCOMPARE(fake_->keys(), QString(u"+62 -62 +20ac -20ac +61 -61 +ff0d -ff0d"_s).split(u' '));
    QCOMPARE(fake_->calls, 3);
    QCOMPARE(fake_->neutralKeys, 2);
    QCOMPARE(option(u"SelectDevices"_s, u"types"_s), QVariant(1U));
    QCOMPARE(option(u"SelectDevices"_s, u"persist_mode"_s), QVariant(2U));
    QVERIFY(type({PressKey{8, carbon::kCommand | carbon::kShift}}));
    QVERIFY2(type({PressKey{18, carbon::kOption}}), "by its position: the layout has no such letter");
    const QString chords = u"+ffe3 +ffe1 +63 -63 -ffe1 -ffe3 +ffe9 #+2 #-2 -ffe9"_s;
    QCOMPARE(fake_->keys().mid(8), chords.split(u' '));
    QCOMPARE(fake_->calls, 3);
  }

  /// Not even by a program that was started anew: what was allowed is good for one time, and comes with the next.
  void theUserIsAskedOnce() {
    QVERIFY(type({TypeText{u"a"_s}}));
    QCOMPARE(option(u"SelectDevices"_s, u"restore_token"_s), QVariant());
    QCOMPARE(readFile(permission_), "token 1");
    QCOMPARE(QFileInfo(permission_).permissions() & ~QFile::Permissions(0x6600), QFile::Permissions());
    allow(u"token 2"_s);
    makeTypist();
    QTRY_COMPARE(fake_->closed, 1);
    QVERIFY(type({TypeText{u"a"_s}}));
    QCOMPARE(option(u"SelectDevices"_s, u"restore_token"_s), QVariant(u"token 1"_s));
    QCOMPARE(readFile(permission_), "token 2");
    allow({});
    makeTypist();
    QVERIFY(type({TypeText{u"a"_s}}));
    QVERIFY(!QFile::exists(permission_));
  }

  void aQuestionThatIsNotAnsweredAtOnceIsNotWaitedFor() {
    fake_->setAnswer({.kind = Answer::Kind::stayQuiet}, u"Start"_s);
    const Result refused = type({TypeText{u"a"_s}});
    QVERIFY(!refused && refused.error().kind == Kind::refused);
    QVERIFY(refused.error().reason.contains(u"allow it, then try again"_s));
    QVERIFY(!type({TypeText{u"a"_s}}));
    QCOMPARE(fake_->calls, 3);
    fake_->respondNow({.results = {{u"devices"_s, 1U}}});
    fake_->settle();
    QVERIFY(type({TypeText{u"a"_s}}));
    QCOMPARE(fake_->keys(), (QStringList{u"+61"_s, u"-61"_s}));
  }

  void noMeansNo_data() {
    QTest::addColumn<QString>("question");
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<bool>("isRemembered");
    QTest::newRow("the user says no") << u"Start"_s << Answer{.code = 1} << true;
    QTest::newRow("another device") << u"Start"_s << Answer{.results = {{u"devices"_s, 2U}}} << true;
    QTest::newRow("nonsense") << u"Start"_s << Answer{.results = {{u"devices"_s, u"all"_s}}} << true;
    QTest::newRow("no session") << u"CreateSession"_s << Answer{} << false;
    QTest::newRow("no keyboards") << u"SelectDevices"_s << Answer{.kind = Answer::Kind::refuseTheCall} << false;
    QTest::newRow("a failure") << u"Start"_s << Answer{.code = 2} << false;
    QTest::newRow("it ends") << u"Start"_s << Answer{.kind = Answer::Kind::vanish} << false;
  }
  void noMeansNo() {
    QFETCH(QString, question);
    QFETCH(Answer, answer);
    QFETCH(bool, isRemembered);
    fake_->setAnswer(answer, question);
    const Result refused = type({TypeText{u"a"_s}});
    QVERIFY(!refused && refused.error().kind == Kind::refused && refused.error().rest.isEmpty());
    QVERIFY(fake_->keys().isEmpty());
    const int calls = fake_->calls;
    fake_->restart();
    fake_->settle();
    QVERIFY(!type({TypeText{u"a"_s}}));
    QCOMPARE(fake_->calls == calls, isRemembered);
  }

  void withoutAPortalItIsSaid() {
    fake_->version = 0;
    const Result refused = type({TypeText{u"a"_s}});
    QVERIFY(!refused && refused.error().kind == Kind::refused);
    QVERIFY(refused.error().reason.contains(u"XWayland"_s));
    QCOMPARE(fake_->calls, 0);
  }

  void whatWasNotTakenIsHandedBack_data() {
    QTest::addColumn<int>("keys");
    QTest::addColumn<QString>("rest");
    QTest::newRow("between characters") << 4 << u"cd\nefg"_s;
    QTest::newRow("a character without its release") << 5 << u"d\nefg"_s;
    QTest::newRow("between steps") << 10 << u"efg"_s;
  }
  void whatWasNotTakenIsHandedBack() {
    QFETCH(int, keys);
    QFETCH(QString, rest);
    // The first two plug it in.
    fake_->keysLeft = keys + 2;
    const Result broken = type({TypeText{u"abcd\n"_s}, Pause{1ms}, TypeText{u"ef"_s}, TypeText{u"g"_s}});
    QVERIFY(!broken);
    QCOMPARE(broken.error().kind, Kind::incomplete);
    QCOMPARE(broken.error().rest, rest);
    QCOMPARE(fake_->keys().size(), keys);
  }

  void nothingTakenIsARefusal() {
    for (const int keys : {0, 1, 2}) {
      fake_->keysLeft = keys;
      const Result refused = type({TypeText{u"ab"_s}});
      QVERIFY(!refused && refused.error().kind == Kind::refused);
    }
  }

  void aSessionThatHasEndedIsOpenedAgain() {
    QVERIFY(type({TypeText{u"a"_s}}));
    fake_->closeSession(u"/somebody/elses"_s);
    fake_->closeSession(kSession);
    fake_->settle();
    QVERIFY(type({TypeText{u"b"_s}}));
    QCOMPARE(fake_->calls, 6);
    fake_->restart();
    fake_->settle();
    QVERIFY(type({TypeText{u"c"_s}}));
    QCOMPARE(fake_->calls, 9);
    QCOMPARE(fake_->keys().size(), 6);
  }

  void aStopEndsItBetweenTwoSteps() {
    std::stop_source stop;
    fake_->asked = [&stop](const QDBusMessage& message) {
      if (message.arguments().value(2).toInt() == 'c') stop.request_stop();
    };
    const Result stopped =
        type({TypeText{u"ab"_s}, Pause{1ms}, TypeText{u"cd"_s}, TypeText{u"ef"_s}}, stop.get_token());
    QVERIFY(!stopped && stopped.error().rest.isEmpty());
    QCOMPARE(fake_->keys().size(), 8);
    QVERIFY(!type({TypeText{u"a"_s}}, stop.get_token()));
    QCOMPARE(fake_->keys().size(), 8);
  }

  void aPanelOfOursGetsNothing() {
    isOurs_ = true;
    const Result refused = type({TypeText{u"a"_s}});
    QVERIFY(!refused && refused.error().kind == Kind::refused);
    QVERIFY(fake_->keys().isEmpty());
  }

  void aLockedScreenGetsNothing() {
    LockedScreen screen;
    const Result refused = type({TypeText{u"a"_s}});
    QVERIFY(!refused);
    QCOMPARE(refused.error().reason, u"The screen is locked"_s);
    QVERIFY(fake_->keys().isEmpty());
  }

 private:
  struct LockedScreen : QDBusVirtualObject {
    LockedScreen() {
      bus.registerVirtualObject(u"/org/freedesktop/ScreenSaver"_s, this);
      bus.registerService(u"org.freedesktop.ScreenSaver"_s);
    }
    ~LockedScreen() override { QDBusConnection::disconnectFromBus(bus.name()); }
    LockedScreen(const LockedScreen&) = delete;
    LockedScreen& operator=(const LockedScreen&) = delete;
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
      return message.member() == u"GetActive"_s && connection.send(message.createReply(true));
    }
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"screen"_s);
  };

  void allow(const QString& token) {
    QVariantMap results{{u"devices"_s, 1U}};
    if (!token.isEmpty()) results.insert(u"restore_token"_s, token);
    fake_->setAnswer({.results = results}, u"Start"_s);
  }
  void makeTypist() {
    typist_.reset();
    const auto bus = QDBusConnection::sessionBus();
    typist_ = std::make_unique<PortalTypist>(
        bus, std::make_shared<Portal>(bus), permission_,
        PortalTypist::Sources{[] { return Layout(&keysymOf); }, [this] { return isOurs_; }});
  }
  Result type(const KeySequence& sequence, const std::stop_token& stop = {}) {
    std::optional<Result> result;
    typist_->type(sequence, stop, [&result](const Result& told) { result = told; });
    if (!QTest::qWaitFor([&result] { return result.has_value(); }, 10'000))
      return std::unexpected(KeyEventError{u"no answer"_s});
    return *result;
  }
  QVariant option(const QString& question, const QString& name) {
    const std::scoped_lock lock(mutex_);
    return options_[question][name];
  }

  std::unique_ptr<QTemporaryDir> folder_;
  QString permission_;
  std::unique_ptr<FakePortal> fake_;
  std::unique_ptr<PortalTypist> typist_;
  std::mutex mutex_;
  std::map<QString, QVariantMap> options_;
  bool isOurs_ = false;
};

QTEST_GUILESS_MAIN(PortalTypistTest)
#include "portal_typist_test.moc"
