#include "unit/platform/fake_mac_system.h"

#include <QElapsedTimer>
#include <QMouseEvent>
#include <QTest>
#include <QWindow>

#include "platform/platform.h"
#include "platform/system_symbol.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The Qt side of the macOS backend against a recorded system.
class MacPlatformTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    fake = new FakeSystem;
    platform_ = makePlatform();
  }

  void cleanup() {
    platform_.reset();
    QCOMPARE(fake->handles, 0);
    delete std::exchange(fake, nullptr);
  }

  void pressesArriveOutsideTheSystemsHandler() {
    std::vector<std::uint32_t> pressed;
    platform_->hotkeys->install([&](std::uint32_t id) { pressed.push_back(id); });
    QVERIFY(platform_->hotkeys->registerHotkey(7, 36, 0x1800));
    QVERIFY(platform_->hotkeys->registerHotkey(8, 49, 0x1800));
    platform_->hotkeys->unregisterHotkey(8);
    platform_->hotkeys->unregisterHotkey(99);

    fake->listener->pressed(fake->listener->context, 7);
    QVERIFY(pressed.empty());
    QTRY_COMPARE(pressed, std::vector<std::uint32_t>{7});

    fake->listener->pressed(fake->listener->context, 7);
    platform_.reset();
    QCoreApplication::processEvents();
    QCOMPARE(pressed.size(), 1U);
  }

  void refusalsAreTold() {
    fake->answer = mac::HotkeyResult::taken;
    QCOMPARE(platform_->hotkeys->registerHotkey(1, 36, 0x1800).error().reason, HotkeyRefusal::Reason::taken);
    fake->answer = mac::HotkeyResult::failed;
    QCOMPARE(platform_->hotkeys->registerHotkey(2, 36, 0x1800).error().reason, HotkeyRefusal::Reason::unavailable);
  }

  void stepsAreTypedInOrderAndPaced() {
    QThread* doneOn = nullptr;
    platform_->keyEvents->perform({TypeText{u"über 🙂"_s}, Pause{3ms}, TypeText{u"b"_s}, Pause{20ms}, PressKey{36, 0}},
                                  {});
    platform_->keyEvents->perform({PressKey{9, 0x0100}}, [&](auto result) {
      QVERIFY(result);
      doneOn = QThread::currentThread();
    });
    QTRY_COMPARE(doneOn, QThread::currentThread());
    QCOMPARE(fake->posted(), (QStringList{u"über 🙂"_s, u"b"_s, u"<36 0>"_s, u"<9 256>"_s}));
    for (const auto& post : fake->posts) QVERIFY(post.thread != QThread::currentThread());
    QVERIFY(fake->posts[1].at - fake->posts[0].at >= 3ms);
    QVERIFY(fake->posts[2].at - fake->posts[1].at >= 20ms);
  }

  void failedStepIsSkippedAndReported() {
    fake->failing = u"b"_s;
    std::optional<bool> succeeded;
    platform_->keyEvents->perform({TypeText{u"a"_s}, TypeText{u"b"_s}, TypeText{u"c"_s}},
                                  [&](auto result) { succeeded = result.has_value(); });
    QTRY_VERIFY(succeeded);
    QVERIFY(!*succeeded);
    QCOMPARE(fake->posted(), (QStringList{u"a"_s, u"b"_s, u"c"_s}));
  }

  void secureInputRefusesAllOfIt() {
    fake->isSecureInputOn = true;
    std::optional<KeyEventError> refusal;
    platform_->keyEvents->perform({TypeText{u"sudo"_s}, PressKey{36, 0}},
                                  [&](auto result) { refusal = result.error(); });
    QVERIFY(!refusal);
    QTRY_VERIFY(refusal);
    QCOMPARE(refusal->kind, KeyEventError::Kind::refused);
    QVERIFY(fake->posted().isEmpty());
    fake->isSecureInputOn = false;
    platform_->keyEvents->perform({TypeText{u"ls"_s}}, [&](auto) { refusal.reset(); });
    QTRY_VERIFY(!refusal);
    QCOMPARE(fake->posted(), QStringList{u"ls"_s});
  }

  void chordsArePressedWhereTheLetterIs() {
    fake->layout = {{8, u'j'}, {34, u'c'}};  // Dvorak
    platform_->keyEvents->perform({PressKey{8, 0x0100}, PressKey{36, 0}}, {});
    QTRY_COMPARE(fake->posted(), (QStringList{u"<34 256>"_s, u"<36 0>"_s}));
  }

  void legendsFollowTheLayout() {
    fake->layout = {{12, u'a'}, {36, u'\r'}, {49, u' '}, {123, u'\uF702'}};
    KeyLegends& legends = *platform_->keyLegends;
    QCOMPARE(legends.legend(12), u"a"_s);
    for (const std::uint32_t key : {36U, 49U, 123U, 200U}) QCOMPARE(legends.legend(key), QString());
    int changes = 0;
    legends.watch([&] { ++changes; });
    fake->layoutWatch.first(fake->layoutWatch.second);
    QTRY_COMPARE(changes, 1);
    legends.watch({});
    QVERIFY(!fake->layoutWatch.first);
  }

  void theAppearanceIsTold() {
    std::vector<bool> told;
    platform_->desktopApplication->watchAppearance([&](bool dark) { told.push_back(dark); });
    QTRY_COMPARE(told, std::vector{false});
    platform_->desktopApplication->forceDark(true);
    QTRY_COMPARE(told, (std::vector{false, true}));
  }

  void aStopEndsOneSequenceOnly() {
    std::stop_source stop;
    QString failure;
    KeySequence hour;
    for (int step = 0; step < 360'000; ++step) hour.insert(hour.end(), {TypeText{u"x"_s}, Pause{10ms}});
    platform_->keyEvents->perform(hour, stop.get_token(), [&](auto result) {
      if (!result) failure = result.error().description();
    });
    QTRY_VERIFY(!fake->posted().isEmpty());
    stop.request_stop();
    bool done = false;
    platform_->keyEvents->perform({TypeText{u"c"_s}}, [&](auto result) { done = result.has_value(); });
    QTRY_VERIFY(done);
    QCOMPARE(failure, u"Typing was stopped"_s);
    QCOMPARE(fake->posted().back(), u"c"_s);
  }

  void typingEndsWithTheProgram() {
    bool done = false;
    KeySequence hour;
    for (int second = 0; second < 36000; ++second) hour.insert(hour.end(), {TypeText{u"x"_s}, Pause{100ms}});
    platform_->keyEvents->perform(hour, [&](auto) { done = true; });
    platform_->keyEvents->perform(hour, [&](auto) { done = true; });
    QTRY_VERIFY(!fake->posted().isEmpty());
    QElapsedTimer ending;
    ending.start();
    platform_.reset();
    QVERIFY(ending.elapsed() < 10000);
    QCoreApplication::processEvents();
    QVERIFY(!done);
  }

  void toastIsOrderedFrontOnceShown() {
    QWindow toast;
    platform_->panelWindow->prepare(toast, PanelKind::toast);
    QCoreApplication::processEvents();
    QVERIFY(fake->ordered.empty());
    platform_->panelWindow->prepare(toast, PanelKind::toast);
    toast.show();
    QTRY_COMPARE(fake->ordered, std::vector{mac::Panel::toast});
  }

  void anOverlayIsOrderedFrontAndMadeKeyAsSuch() {
    QWindow overlay;
    platform_->panelWindow->prepare(overlay, PanelKind::overlay);
    overlay.show();
    QTRY_COMPARE(fake->ordered, std::vector{mac::Panel::overlay});
    QVERIFY(platform_->panelWindow->takeKeyboard(overlay));
    QCOMPARE(fake->ordered.back(), mac::Panel::overlay);
  }

  void capturesAreAnsweredOnTheMainThread() {
    ScreenGrabber& grabber = *platform_->screenGrabber;
    QWindow overlay;
    const Job job = Job::start();
    std::optional<std::expected<ScreenPicture, ScreenCaptureError>> answer;
    const auto done = [&answer](auto result) {
      QCOMPARE(QThread::currentThread(), QCoreApplication::instance()->thread());
      answer = std::move(result);
    };
    const ScreenArea area{{-1280, -200, 1280, 720}, {100, 50, 99.5, 50}, {200, 100, 199, 100}};
    grabber.grab(area, {grabber.windowID(overlay), 4'000'000'000}, job, done);
    QVERIFY(!answer);
    QTRY_VERIFY(answer);
    QCOMPARE((*answer)->png, "PNG");
    QCOMPARE(fake->captured.displayX, -1280.0);
    QCOMPARE(fake->captured.displayY, -200.0);
    QCOMPARE(fake->captured.width, 99.5);
    QCOMPARE(fake->captured.pixelWidth, 199U);
    QCOMPARE(fake->excluded, (std::vector<std::uint32_t>{77, 4'000'000'000}));

    fake->png.clear();
    answer.reset();
    grabber.grab(area, {}, job, done);
    QTRY_VERIFY(answer);
    QCOMPARE(answer->error().description(), u"nö"_s);

    Job cancelled = Job::start();
    grabber.grab(area, {}, cancelled, [](const auto&) { QFAIL("nobody waits for it"); });
    cancelled.cancel();
    QCoreApplication::processEvents();
  }

  void keyboardLossIsToldOnce() {
    QWindow palette;
    int losses = 0;
    const auto press = [&](QPointF at) {
      QMouseEvent event(QEvent::MouseButtonPress, at, at, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
      QCoreApplication::sendEvent(&palette, &event);
      QCoreApplication::processEvents();
    };
    platform_->panelWindow->watchKeyboardLoss(palette, QRect(48, 48, 100, 100), [&] {
      ++losses;
      platform_->panelWindow->stopWatching(palette);
    });
    press({60, 60});
    QCOMPARE(losses, 0);
    const auto [resigned, context] = fake->watches.begin()->second;
    resigned(context);
    press({10, 60});
    QCOMPARE(losses, 1);
    QVERIFY(fake->watches.empty());
    press({10, 60});
    QCOMPARE(losses, 1);

    platform_->panelWindow->watchKeyboardLoss(palette, QRect(48, 48, 100, 100), [&] { ++losses; });
    press({10, 60});
    press({10, 60});
    QCOMPARE(losses, 2);
  }

  void watchedWindowMayDie() {
    auto palette = std::make_unique<QWindow>();
    platform_->panelWindow->watchKeyboardLoss(*palette, QRect(), [] { QFAIL("the window is gone"); });
    palette.reset();
    QCoreApplication::processEvents();
  }

  void activationIsReturned() {
    QWindow palette;
    PanelWindow& panels = *platform_->panelWindow;
    QVERIFY(panels.takeKeyboard(palette));
    QVERIFY(panels.takeKeyboard(palette));
    panels.releaseKeyboard(palette);
    panels.releaseKeyboard(palette);
    QCOMPARE(fake->activationsReturned, 1);

    fake->otherIsActive = false;
    panels.takeKeyboard(palette);
    panels.releaseKeyboard(palette);
    QCOMPARE(fake->activationsReturned, 1);
  }

  void eachPermissionHasItsOwnPromptAndPage() {
    Permissions& permissions = *platform_->permissions;
    fake->allowed = {u"Privacy_ScreenCapture"_s};
    QVERIFY(!permissions.isAccessibilityTrusted());
    QVERIFY(permissions.remedy(Permission::accessibility).contains(u"→ Accessibility"_s));
    QCOMPARE(permissions.state(Permission::screenRecording), PermissionState::granted);
    QVERIFY(permissions.remedy(Permission::screenRecording).isEmpty());
    fake->allowed = {u"Privacy_Accessibility"_s};
    QVERIFY(permissions.isAccessibilityTrusted());
    QVERIFY(permissions.remedy(Permission::screenRecording).contains(u"→ Screen Recording"_s));
    for (const auto& [permission, name] : kPermissionNames) {
      permissions.request(permission);
      permissions.openSettingsPage(permission);
    }
    QCOMPARE(fake->asked,
             (QStringList{u"typing"_s, u"Privacy_Accessibility"_s, u"screen"_s, u"Privacy_ScreenCapture"_s}));
  }

  void loginItemThatAwaitsApprovalIsNoFailure() {
    LoginItem& item = *platform_->loginItem;
    QVERIFY(item.setEnabled(true));
    QCOMPARE(item.state(), LoginItem::State::on);
    fake->isLoginItemRefused = true;
    const auto refused = item.setEnabled(false);
    QVERIFY(!refused);
    QCOMPARE(refused.error().reason, u"nö"_s);
    fake->loginItem = mac::LoginItem::awaitsApproval;
    QVERIFY(item.setEnabled(true));
    QVERIFY(!item.setEnabled(false));
  }

  void theFirstKindOnThePasteboardIsRead() {
    fake->held = {{"public.tiff", "II*"}, {"com.microsoft.bmp", "BM"}};
    fake->copiedFiles = {"file:///a.png", "file:///b.png"};
    const auto read = [this](const std::vector<PasteboardFormat>& formats) {
      std::optional<std::optional<PasteboardData>> answer;
      const Job job = Job::start();
      platform_->pasteboard->read(formats, job, [&answer](const auto& data) { answer = data; });
      return QTest::qWaitFor([&] { return answer.has_value(); }) && *answer ? (*answer)->bytes : QByteArray();
    };
    QCOMPARE(read({PasteboardFormat::png, PasteboardFormat::tiff, PasteboardFormat::bmp}), "II*");
    QCOMPARE(read({PasteboardFormat::png, PasteboardFormat::fileURLs}), "file:///a.png\r\nfile:///b.png\r\n");
  }

  void theWholePasteboardComesBack() {
    const std::vector<PasteboardFlavour> before = {{u"public.utf8-plain-text"_s, "größe", 0},
                                                   {u"public.html"_s, QByteArray("<b>\0</b>", 8), 0},
                                                   {u"public.file-url"_s, "file:///b.png", 1}};
    fake->pieces = before;
    // More than is taken from another program, with the rest; nobody looks at its bytes.
    fake->pieces.push_back({u"public.tiff"_s, QByteArray::fromRawData("II*", Pasteboard::kLargestData - 9), 1});
    std::optional<PasteboardContents> kept;
    const Job job = Job::start();
    platform_->pasteboard->keep(job, [&kept](const PasteboardContents& contents) { kept = contents; });
    QTRY_VERIFY(kept);
    const auto count = platform_->pasteboard->changeCount();
    platform_->pasteboard->writeText(u"naïve"_s);
    QVERIFY(platform_->pasteboard->changeCount() != count);
    QVERIFY(fake->pieces == std::vector<PasteboardFlavour>({{u"public.utf8-plain-text"_s, "naïve", 0}}));
    platform_->pasteboard->restore(*kept);
    QVERIFY(fake->pieces == before);
    platform_->pasteboard->restore({});
    QVERIFY(fake->pieces.empty());
  }

  void terminalsAreKnownByTheirBundle() {
    fake->bundles = {{1, "com.apple.Terminal"}, {2, "dev.warp.Warp-Stable"}, {3, "com.apple.TextEdit"}};
    const auto runsLines = [this](int process) { return platform_->selectedText->runsLines(KeyTarget(process)); };
    QVERIFY(runsLines(1) && runsLines(2));
    QVERIFY(!runsLines(3) && !runsLines(4));
    QVERIFY(platform_->selectedText->isCopiedByShortcut(KeyTarget(1)));
  }

  void keysGoToTheApplicationInFront() {
    QCOMPARE(platform_->keyTargets->current(), KeyTarget::none);
    fake->activeProcess = 4711;
    const KeyTarget first = platform_->keyTargets->current();
    QVERIFY(first != KeyTarget::none);
    fake->activeProcess = 4712;
    QVERIFY(platform_->keyTargets->current() != first);
  }

  /// Told from inside the system's handler, in which the watch must not end.
  void escapeIsToldAfterTheSystemsHandler() {
    QVERIFY2(!platform_->keyTargets->watchEscape([] {}), "keys are not told to whoever is not trusted");
    fake->allowed = {u"Privacy_Accessibility"_s};
    int presses = 0;
    std::unique_ptr<EscapeWatch> watch;
    watch = platform_->keyTargets->watchEscape([&] {
      ++presses;
      watch.reset();
    });
    QCOMPARE(fake->watchedKey, 53U);
    fake->keyWatch.first(fake->keyWatch.second);
    fake->keyWatch.first(fake->keyWatch.second);
    QCOMPARE(presses, 0);
    QTRY_COMPARE(presses, 1);
    QVERIFY(!fake->keyWatch.first);
    QCoreApplication::processEvents();
    QCOMPARE(presses, 1);
    fake->isWatchRefused = true;
    QVERIFY(!platform_->keyTargets->watchEscape([] {}));
  }

  void symbolsKeepTheirProportions() {
    const QImage symbol = systemSymbol(u"doc.on.doc"_s, 48);
    QCOMPARE(fake->asked, QStringList{u"48x32"_s});
    QCOMPARE(symbol.pixel(0, 0), qRgba(0, 0, 0, 255));
    QCOMPARE(symbol.pixel(1, 0), 0U);
    QVERIFY(systemSymbol(u"doc.of.doc"_s, 48).isNull());
  }

  void versionText() {
    QCOMPARE(platform_->systemInfo->osVersion(), u"macOS 14.5"_s);
    fake->version = {15, 0, 1};
    QCOMPARE(platform_->systemInfo->osVersion(), u"macOS 15.0.1"_s);
    // The command line's too, which has no display.
    QCOMPARE(makeHeadlessPlatform().systemInfo->systemName(), u"macOS"_s);
  }

 private:
  std::optional<Platform> platform_;
};

QTEST_MAIN(MacPlatformTest)
#include "test_mac_platform.moc"
