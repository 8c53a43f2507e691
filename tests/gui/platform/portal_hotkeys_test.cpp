#include <QTest>

#include "platform/carbon_modifiers.h"
#include "platform/portal/portal_hotkeys.h"
#include "support/fake_platform.h"
#include "support/fake_portal.h"

using namespace Qt::StringLiterals;

namespace {

using Answer = FakePortal::Answer;
const QString kSession = u"/org/freedesktop/portal/desktop/session/me/1"_s;
constexpr std::uint32_t kControlOption = carbon::kControl | carbon::kOption;

HotkeyPurpose purposeOf(std::uint32_t keyCode, std::uint32_t) {
  return keyCode == 32 ? HotkeyPurpose{u"uplink"_s, u"Image to URL"_s} : HotkeyPurpose{u"settings"_s, u"Settings"_s};
}

/// What the portal gives for a wish.
PortalShortcut given(const QString& id, const QString& trigger) { return {id, {{u"trigger_description"_s, trigger}}}; }

}  // namespace

class PortalHotkeysTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    // Before the next one: the name is one program's.
    fake_.reset();
    startPortal();
    wishes_.clear();
    pressed_.clear();
    bound_.clear();
    auto inner = std::make_unique<FakeHotkeys>();
    inner_ = inner.get();
    const auto bus = QDBusConnection::sessionBus();
    hotkeys_ = std::make_unique<PortalHotkeys>(bus, std::make_shared<Portal>(bus), std::move(inner));
    hotkeys_->describeBy(&purposeOf);
    hotkeys_->watchTriggers([this] { bound_.push_back(hotkeys_->areBound()); });
    hotkeys_->install([this](std::uint32_t id) { pressed_.push_back(id); });
  }
  void cleanup() { hotkeys_.reset(); }

  void theWishesAreNamedAndThePressesComeBack() {
    registerBoth();
    QTRY_VERIFY(hotkeys_->areBound());
    QCOMPARE(fake_->calls, 2);
    const PortalShortcuts wishes = this->wishes();
    QCOMPARE(wishes.size(), 2);
    QCOMPARE(wishes[0].id, u"settings"_s);
    QCOMPARE(wishes[0].properties[u"preferred_trigger"_s].toString(), u"CTRL+ALT+comma"_s);
    QCOMPARE(wishes[1].properties[u"preferred_trigger"_s].toString(), u"CTRL+ALT+u"_s);
    QCOMPARE(wishes[1].properties[u"description"_s].toString(), u"Image to URL"_s);
    QCOMPARE(bound_, (std::vector{false, true}));
    QCOMPARE(hotkeys_->systemTrigger(32, kControlOption), u"Super+U"_s);
    QCOMPARE(inner_->registered.size(), std::size_t{2});

    fake_->activate(kSession, u"uplink"_s);
    fake_->activate(u"/somebody/elses"_s, u"uplink"_s);
    fake_->activate(kSession, u"nothing"_s);
    fake_->activate(kSession, u"settings"_s);
    QTRY_COMPARE(pressed_, (std::vector<std::uint32_t>{1, 2}));
  }

  /// As while a combination is recorded: the user is not asked anew.
  void whatComesBackIsNotAskedForAgain() {
    registerBoth();
    QTRY_VERIFY(hotkeys_->areBound());
    hotkeys_->unregisterHotkey(1);
    fake_->activate(kSession, u"uplink"_s);
    fake_->activate(kSession, u"settings"_s);
    QTRY_COMPARE(pressed_, std::vector<std::uint32_t>{2});
    QVERIFY(hotkeys_->registerHotkey(3, 32, kControlOption));
    QTest::qWait(400);
    QCOMPARE(fake_->calls, 2);
    QVERIFY(hotkeys_->registerHotkey(4, 35, carbon::kCommand));
    QTRY_COMPARE(fake_->calls, 4);
    QCOMPARE(fake_->closed, 1);
  }

  void whoSaysNoGetsNothing_data() {
    QTest::addColumn<QString>("question");
    QTest::addColumn<Answer>("answer");
    QTest::newRow("no session") << u"CreateSession"_s << Answer{.code = 1};
    QTest::newRow("a session of nonsense") << u"CreateSession"_s << Answer{.results = {{u"session_handle"_s, 7}}};
    QTest::newRow("the user says no") << u"BindShortcuts"_s << Answer{.code = 1};
    QTest::newRow("nothing given") << u"BindShortcuts"_s << Answer{};
    QTest::newRow("nonsense given") << u"BindShortcuts"_s << Answer{.results = {{u"shortcuts"_s, u"all"_s}}};
    QTest::newRow("it ends") << u"BindShortcuts"_s << Answer{.kind = Answer::Kind::vanish};
  }
  void whoSaysNoGetsNothing() {
    QFETCH(QString, question);
    QFETCH(Answer, answer);
    fake_->setAnswer(answer, question);
    registerBoth();
    QTRY_COMPARE(fake_->calls, question == u"CreateSession"_s ? 1 : 2);
    QTest::qWait(100);
    QVERIFY(!hotkeys_->areBound());
    QCOMPARE(hotkeys_->systemTrigger(32, kControlOption), QString());
  }

  /// A session that is closed at once, each time, would be opened for ever.
  void aClosedSessionIsOpenedAgainAFewTimes() {
    registerBoth();
    std::vector<bool> states = {false};
    for (int opened = 1; opened <= 4; ++opened) {
      states.push_back(true);
      QTRY_COMPARE(bound_, states);
      QCOMPARE(fake_->calls, 2 * opened);
      fake_->closeSession(u"/somebody/elses"_s);
      fake_->closeSession(kSession);
      states.push_back(false);
      fake_->settle();
    }
    QCOMPARE(bound_, states);
    QCOMPARE(hotkeys_->systemTrigger(32, kControlOption), QString());
    QTest::qWait(400);
    QCOMPARE(fake_->calls, 8);
    QCOMPARE(fake_->closed, 0);
  }

  void anotherPortalIsAskedAnew() {
    registerBoth();
    QTRY_VERIFY(hotkeys_->areBound());
    give({given(u"uplink"_s, u"Super+I"_s)});
    fake_->restart();
    QTRY_COMPARE(hotkeys_->systemTrigger(32, kControlOption), u"Super+I"_s);
    QCOMPARE(fake_->calls, 4);
    QVERIFY(bound_.size() > 2);
    fake_->activate(kSession, u"uplink"_s);
    QTRY_COMPARE(pressed_, std::vector<std::uint32_t>{1});
  }

  void aPortalThatComesLaterIsAskedThen() {
    fake_.reset();
    registerBoth();
    QTest::qWait(100);
    QVERIFY(!hotkeys_->areBound());
    startPortal();
    QTRY_VERIFY(hotkeys_->areBound());
  }

  /// Nobody waits for the portal at the start: what the other one refuses is asked for again when it has answered.
  void theOthersNoEndsWithThePortalsYes() {
    inner_->taken = {{32, kControlOption}};
    QVERIFY(!hotkeys_->registerHotkey(1, 32, kControlOption));
    QTRY_COMPARE(bound_, std::vector{false});
    QVERIFY(hotkeys_->registerHotkey(2, 32, kControlOption));
    QTRY_VERIFY(hotkeys_->areBound());
    fake_->activate(kSession, u"uplink"_s);
    QTRY_COMPARE(pressed_, std::vector<std::uint32_t>{2});
  }

  void withoutAPortalTheOthersSayCounts() {
    fake_->version = 0;
    inner_->taken = {{32, kControlOption}};
    const auto taken = hotkeys_->registerHotkey(1, 32, kControlOption);
    QVERIFY(!taken && taken.error().reason == HotkeyRefusal::Reason::taken);
    QVERIFY(hotkeys_->registerHotkey(2, 43, kControlOption));
    QTest::qWait(400);
    QCOMPARE(fake_->calls, 0);
  }

 private:
  void startPortal() {
    fake_ = std::make_unique<FakePortal>();
    fake_->asked = [this](const QDBusMessage& message) {
      if (message.member() == u"BindShortcuts"_s) {
        const std::scoped_lock lock(mutex_);
        wishes_ = qdbus_cast<PortalShortcuts>(message.arguments().value(1));
      }
    };
    fake_->setAnswer({.results = {{u"session_handle"_s, kSession}}}, u"CreateSession"_s);
    give({given(u"uplink"_s, u"Super+U"_s), given(u"settings"_s, u"Ctrl+Alt+,"_s)});
  }
  void registerBoth() {
    QVERIFY(hotkeys_->registerHotkey(1, 32, kControlOption));
    QVERIFY(hotkeys_->registerHotkey(2, 43, kControlOption));
  }
  void give(const PortalShortcuts& shortcuts) {
    fake_->setAnswer({.results = {{u"shortcuts"_s, QVariant::fromValue(shortcuts)}}}, u"BindShortcuts"_s);
  }
  PortalShortcuts wishes() {
    const std::scoped_lock lock(mutex_);
    return wishes_;
  }

  std::unique_ptr<FakePortal> fake_;
  std::mutex mutex_;
  PortalShortcuts wishes_;
  FakeHotkeys* inner_ = nullptr;
  std::unique_ptr<PortalHotkeys> hotkeys_;
  std::vector<std::uint32_t> pressed_;
  /// Whether there were shortcuts, at each change that was told.
  std::vector<bool> bound_;
};

QTEST_GUILESS_MAIN(PortalHotkeysTest)
#include "portal_hotkeys_test.moc"
