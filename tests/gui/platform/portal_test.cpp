#include <QGuiApplication>
#include <QImage>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include "platform/portal/portal_screen_grabber.h"
#include "support/fake_portal.h"
#include "support/files.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Picture = std::expected<ScreenPicture, ScreenCaptureError>;
using Answer = FakePortal::Answer;

QRect screen() { return QGuiApplication::primaryScreen()->geometry(); }
ScreenArea area(const QRect& rect) { return {screen(), rect, rect}; }

}  // namespace

class PortalTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    folder_ = std::make_unique<QTemporaryDir>();
    file_ = folder_->filePath(u"shot.png"_s);
    // Before the next one: the name is one program's.
    fake_.reset();
    fake_ = std::make_unique<FakePortal>();
    portal_ = std::make_shared<Portal>(QDBusConnection::sessionBus());
    job_ = Job::start();
  }

  void itIsKnownWhatThePortalOffers() {
    QVERIFY(portal_->offers(u"Screenshot"_s));
    fake_->version = 0;
    QVERIFY2(portal_->offers(u"Screenshot"_s), "what was answered holds");
    QVERIFY(!portal_->offers(u"Nothing"_s));
    fake_.reset();
    QTRY_VERIFY(!portal_->offers(u"Screenshot"_s));
    fake_ = std::make_unique<FakePortal>();
    QTRY_VERIFY(portal_->offers(u"Screenshot"_s));
    QVERIFY(!Portal(QDBusConnection(u"no such bus"_s)).offers(u"Screenshot"_s));
  }

  /// As at a log-in, when everything starts at once.
  void aSlowPortalIsNotGivenUp() {
    std::vector<bool> told;
    connect(portal_.get(), &Portal::told, this, [&told](const QString&, bool isOffered) { told.push_back(isOffered); });
    fake_->hesitationMs = 700;
    QVERIFY(!portal_->offers(u"Screenshot"_s));
    QTRY_COMPARE(told, (std::vector{false, true}));
    QVERIFY(portal_->offers(u"Screenshot"_s));
  }

  void whoDoesNotWaitIsTold() {
    std::vector<bool> told;
    connect(portal_.get(), &Portal::told, this, [&told](const QString&, bool isOffered) { told.push_back(isOffered); });
    QVERIFY2(!portal_->offer(u"Screenshot"_s), "not known yet");
    QVERIFY2(!portal_->offer(u"Screenshot"_s), "asked once");
    QTRY_COMPARE(told, std::vector{true});
    QCOMPARE(portal_->offer(u"Screenshot"_s), std::optional(true));
    fake_->version = 0;
    fake_->restart();
    QTRY_COMPARE(told, (std::vector{true, false, false}));
    fake_->version = 1;
    fake_->restart();
    QTRY_COMPARE(told, (std::vector{true, false, false, false, true}));
    QCOMPARE(portal_->offer(u"Screenshot"_s), std::optional(true));
  }

  void aPortalThatCrashesAtItsStartIsLeftAloneForLonger() {
    constexpr auto wait = 30ms;
    Portal portal(QDBusConnection::sessionBus(), wait);
    std::vector<std::chrono::steady_clock::time_point> told;
    connect(&portal, &Portal::told, this, [&told] { told.push_back(std::chrono::steady_clock::now()); });
    portal.offer(u"Screenshot"_s);
    QTRY_COMPARE(told.size(), 1U);
    for (const int factor : {1, 2, 4}) {
      fake_.reset();
      const std::size_t end = told.size();
      QTRY_COMPARE(told.size(), end + 2);
      // Asking has not brought it back; timers may come a twentieth early.
      QVERIFY(told[end + 1] - told[end] >= factor * wait * 9 / 10);
      fake_ = std::make_unique<FakePortal>();
      QTRY_COMPARE(told.size(), end + 3);
    }
  }

  void piecesOfOnePictureAreHandedOut() {
    fake_->asked = [this](const QDBusMessage& message) {
      const auto options = qdbus_cast<QVariantMap>(message.arguments().constLast());
      isInteractive_ = options[u"interactive"_s].toBool();
      leavePicture();
    };
    for (const bool atOwnPath : {false, true}) {
      fake_->setAnswer({.results = {{u"uri"_s, QUrl::fromLocalFile(file_).toString()}}, .atOwnPath = atOwnPath});
      PortalScreenGrabber grabber(portal_);
      std::vector<Picture> pictures;
      for (const QRect& rect : {QRect(10, 20, 30, 40), QRect(0, 0, 5, 5)})
        grabber.grab(area(rect), {}, job_, [&pictures](Picture picture) { pictures.push_back(std::move(picture)); });
      QTRY_COMPARE(pictures.size(), std::size_t{2});
      QVERIFY(pictures[0] && pictures[1]);
      QCOMPARE(pictures[0]->pixels.size(), QSize(30, 40));
      QCOMPARE(pictures[0]->pixels.pixelColor(0, 0), QColor(10, 20, 7));
      QCOMPARE(pictures[1]->pixels.pixelColor(4, 3), QColor(4, 3, 7));
      QVERIFY2(!QFile::exists(file_), "what was left is removed");
    }
    QCOMPARE(fake_->calls, 2);
    QVERIFY(!isInteractive_);
  }

  void aPictureAtAnotherScaleIsBroughtToOurs() {
    fake_->asked = [this](const QDBusMessage&) { leavePicture(2); };
    fake_->setAnswer({.results = {{u"uri"_s, QUrl::fromLocalFile(file_).toString()}}});
    const Picture picture = grab(area({10, 20, 30, 40}));
    QVERIFY(picture);
    QCOMPARE(picture->pixels.size(), QSize(30, 40));
    QCOMPARE(picture->pixels.pixelColor(5, 5), QColor(15, 25, 7));
  }

  void whatGoesWrongIsSaid_data() {
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<QString>("reason");
    QTest::newRow("denied") << Answer{.code = 1} << u"It was not allowed"_s;
    QTest::newRow("failed") << Answer{.code = 2} << u"The desktop portal failed"_s;
    QTest::newRow("nonsense code") << Answer{.code = 77} << u"The desktop portal failed"_s;
    QTest::newRow("not to us") << Answer{.kind = Answer::Kind::refuseTheCall} << u"not to you"_s;
    QTest::newRow("silence") << Answer{.kind = Answer::Kind::stayQuiet} << u"The desktop portal does not answer"_s;
    QTest::newRow("it ends") << Answer{.kind = Answer::Kind::vanish} << u"The desktop portal has ended"_s;
    const QString nothing = u"The desktop has left no new picture"_s;
    const auto leaves = [](const QVariant& uri) { return Answer{.results = {{u"uri"_s, uri}}}; };
    QTest::newRow("no results") << Answer{} << nothing;
    QTest::newRow("a number for a file") << leaves(7) << nothing;
    QTest::newRow("no file there") << leaves(u"file:///no/such/file.png"_s) << nothing;
    QTest::newRow("not a file of this computer") << leaves(u"https://example.com/shot.png"_s) << nothing;
    QTest::newRow("a folder") << leaves(u"file:///tmp"_s) << nothing;
    QTest::newRow("a device") << leaves(u"file:///dev/zero"_s) << nothing;
  }
  void whatGoesWrongIsSaid() {
    QFETCH(Answer, answer);
    QFETCH(QString, reason);
    fake_->setAnswer(answer);
    const bool isSilent = answer.kind == Answer::Kind::stayQuiet;
    const Picture picture = grab(area({0, 0, 5, 5}), isSilent ? 300ms : 10s);
    QVERIFY(!picture);
    QCOMPARE(picture.error().description(), reason);
  }

  void aFileOfTheUsersIsNeitherReadNorRemoved() {
    leavePicture();
    QFile old(file_);
    QVERIFY(old.open(QIODevice::ReadWrite));
    QVERIFY(old.setFileTime(QDateTime::currentDateTime().addSecs(-60), QFileDevice::FileModificationTime));
    old.close();
    fake_->setAnswer({.results = {{u"uri"_s, QUrl::fromLocalFile(file_).toString()}}});
    QVERIFY(!grab(area({0, 0, 5, 5})));
    QVERIFY(QFile::exists(file_));
  }

  void aFileThatIsNoPictureGivesNone() {
    fake_->asked = [this](const QDBusMessage&) { writeFile(file_, "\x89PNG\r\n\x1a\nand no more"); };
    fake_->setAnswer({.results = {{u"uri"_s, QUrl::fromLocalFile(file_).toString()}}});
    QVERIFY(!grab(area({0, 0, 5, 5})));
    QVERIFY(!QFile::exists(file_));
  }

  void anEndedJobTakesTheQuestionBack() {
    fake_->setAnswer({.kind = Answer::Kind::stayQuiet});
    bool isAnswered = false;
    portal_->request({u"Screenshot"_s, u"Screenshot"_s, {QString()}}, job_, [&](const auto&) { isAnswered = true; });
    QTRY_COMPARE(fake_->calls, 1);
    job_.cancel();
    QTRY_COMPARE(fake_->closed, 1);
    QVERIFY(!isAnswered);
  }

 private:
  Picture grab(const ScreenArea& wanted, std::chrono::milliseconds patience = 10s) {
    PortalScreenGrabber grabber(portal_, patience);
    std::optional<Picture> picture;
    grabber.grab(wanted, {}, job_, [&picture](Picture taken) { picture = std::move(taken); });
    if (!QTest::qWaitFor([&picture] { return picture.has_value(); }, 10'000))
      return std::unexpected(ScreenCaptureError{u"no answer"_s});
    return *std::move(picture);
  }

  /// Of the whole screen: each pixel has its own place for a colour.
  void leavePicture(int scale = 1) const {
    QImage whole(screen().size() * scale, QImage::Format_RGB32);
    whole.fill(QColor(0, 0, 7));
    for (int y = 0; y < 100 * scale; ++y)
      for (int x = 0; x < 100 * scale; ++x) whole.setPixelColor(x, y, QColor(x / scale, y / scale, 7));
    whole.save(file_);
  }

  std::unique_ptr<QTemporaryDir> folder_;
  QString file_;
  std::unique_ptr<FakePortal> fake_;
  std::shared_ptr<Portal> portal_;
  Job job_;
  std::atomic<bool> isInteractive_ = true;
};

QTEST_MAIN(PortalTest)
#include "portal_test.moc"
