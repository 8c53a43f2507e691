#include <QSignalSpy>
#include <QTest>

#include "app/onboarding/onboarding_model.h"
#include "app/onboarding/shortcut_offers.h"
#include "support/world.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// The first run over a whole core, its window visible.
struct Stage {
  explicit Stage(std::function<void(AppSettings&)> stored = [](AppSettings&) {}, bool trusted = true) {
    world.settings.update(stored);
    permissions.trusted = trusted;
    world.bootstrap();
    model.begin();
    model.setVisible(true);
  }

  void walkTo(OnboardingStep step) {
    while (model.step() != step) model.next();
  }
  const AppSettings& stored() const { return world.settings.value(); }

  World world;
  FakePermissions permissions;
  OnboardingModel model{world.settings, permissions, world.clock};
};

}  // namespace

class TestOnboardingModel : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void eachStepIsStoredWhenItIsReached() {
    Stage stage;
    QSignalSpy finished(&stage.model, &OnboardingModel::finished);
    QCOMPARE(stage.model.step(), OnboardingStep::welcome);
    QVERIFY(!stage.model.canGoBack());
    stage.model.next();
    QCOMPARE(stage.model.step(), OnboardingStep::privacy);
    stage.model.back();
    stage.model.next();
    QVERIFY(!stage.stored().privacyAccepted);
    stage.model.next();
    QCOMPARE(stage.model.step(), OnboardingStep::permissions);
    QVERIFY(stage.stored().privacyAccepted && stage.stored().onboardingReachedPermissions);
    stage.model.next();
    QCOMPARE(stage.model.step(), OnboardingStep::tryIt);
    QVERIFY(!stage.stored().onboardingCompleted);
    stage.model.next();
    QCOMPARE(stage.model.step(), OnboardingStep::done);
    QVERIFY(stage.stored().onboardingCompleted && stage.model.isLast() && stage.model.canGoBack());
    QCOMPARE(finished.size(), 0);
    stage.model.next();
    QCOMPARE(finished.size(), 1);
  }

  void resumesAtThePermissions() {
    Stage stage([](AppSettings& settings) { settings.onboardingReachedPermissions = true; });
    QCOMPARE(stage.model.step(), OnboardingStep::permissions);
    QVERIFY(!stage.model.isRepair() && stage.model.canGoBack());
    stage.walkTo(OnboardingStep::done);
  }

  void accessThatWasTakenAwayIsTheOnlyStep() {
    Stage stage([](AppSettings& settings) { settings.onboardingCompleted = true; }, false);
    const AppSettings before = stage.stored();
    QSignalSpy finished(&stage.model, &OnboardingModel::finished);
    QCOMPARE(stage.model.step(), OnboardingStep::permissions);
    QVERIFY(stage.model.isRepair() && stage.model.isLast() && !stage.model.canGoBack());
    stage.permissions.trusted = true;
    stage.world.clock.advance(1s);
    QCOMPARE(finished.size(), 1);
    QCOMPARE(stage.stored(), before);
  }

  void asksAgainFromTheStartWhenAllIsWell() {
    Stage stage(
        [](AppSettings& settings) { settings.onboardingCompleted = settings.onboardingReachedPermissions = true; });
    QCOMPARE(stage.model.step(), OnboardingStep::welcome);
  }

  void goesOnByItselfOnceEverythingIsGranted() {
    Stage stage([](AppSettings&) {}, false);
    stage.permissions.screenRecording = PermissionState::notGranted;
    stage.walkTo(OnboardingStep::permissions);
    stage.permissions.trusted = true;
    stage.world.clock.advance(3s);
    QCOMPARE(stage.model.step(), OnboardingStep::permissions);
    stage.permissions.screenRecording = PermissionState::granted;
    stage.world.clock.advance(999ms);
    QCOMPARE(stage.model.step(), OnboardingStep::permissions);
    stage.world.clock.advance(1ms);
    QCOMPARE(stage.model.step(), OnboardingStep::tryIt);

    stage.model.back();
    stage.world.clock.advance(10s);
    QCOMPARE(stage.model.step(), OnboardingStep::permissions);
  }

  void staysWhereEverythingWasGrantedBefore() {
    Stage stage([](AppSettings&) {}, false);
    stage.walkTo(OnboardingStep::permissions);
    stage.model.back();
    stage.permissions.trusted = true;
    stage.model.next();
    stage.world.clock.advance(10s);
    QCOMPARE(stage.model.step(), OnboardingStep::permissions);
  }

  /// What nobody can grant in this session is nothing to wait for.
  void theUnavailableIsNotWaitedFor() {
    Stage stage([](AppSettings&) {}, false);
    stage.permissions.screenRecording = PermissionState::unavailable;
    stage.walkTo(OnboardingStep::permissions);
    stage.permissions.trusted = true;
    stage.world.clock.advance(1s);
    QCOMPARE(stage.model.step(), OnboardingStep::tryIt);
  }

  void looksOnlyWhileTheStepIsVisible() {
    Stage stage;
    const auto readsWithin = [&](std::chrono::milliseconds time) {
      const int before = stage.permissions.reads;
      stage.world.clock.advance(time);
      return stage.permissions.reads - before;
    };
    QCOMPARE(readsWithin(1min), 0);
    stage.walkTo(OnboardingStep::permissions);
    QVERIFY(readsWithin(10s) > 0);
    stage.model.setVisible(false);
    QCOMPARE(readsWithin(1min), 0);
    stage.model.setVisible(true);
    QVERIFY(readsWithin(10s) > 0);
    stage.model.next();
    QCOMPARE(readsWithin(1min), 0);
  }

  void leadsToTheRightPage() {
    Stage stage;
    stage.model.permissions().lead(Permission::screenRecording);
    QCOMPARE(stage.permissions.prompts, 1);
    QCOMPARE(stage.permissions.pages, std::vector{Permission::screenRecording});
  }

  void noticesWhatIsTriedOut() {
    Stage stage;
    stage.model.launcherShown();
    stage.world.registry.summon(u"frequent-clis"_s);
    stage.walkTo(OnboardingStep::tryIt);
    QVERIFY(!stage.model.hasSeenLauncher() && !stage.model.hasSeenCommands());
    QSignalSpy changes(&stage.model, &OnboardingModel::trialChanged);
    stage.model.launcherShown();
    stage.model.launcherShown();
    stage.world.registry.summon(u"uplink"_s);
    QVERIFY(stage.model.hasSeenLauncher() && !stage.model.hasSeenCommands());
    stage.world.registry.summon(u"frequent-clis"_s);
    QVERIFY(stage.model.hasSeenCommands());
    QCOMPARE(changes.size(), 2);
  }

  void takenShortcutsGetFreeOnes() {
    World world;
    constexpr Hotkey kUplink{32, 0x1800};
    constexpr Hotkey kFiles{37, 0x1800};
    constexpr Hotkey kLauncher{49, 0x1800};
    world.hotkeyBackend.taken = {kUplink, kFiles, kLauncher, {14, 0x1800}};
    world.bootstrap();
    world.hotkeys.registerAction(kLauncher, [] {});
    QVERIFY(isRefused(world.hotkeys, AppAction::toggleLauncher));
    QVERIFY(!isRefused(world.hotkeys, AppAction::openSettings));

    ShortcutOffers offers(world.hotkeys, world.registry);
    offers.refresh();
    QCOMPARE(offers.openCount(), 3);
    const auto offerOf = [&](const QString& name) {
      return *std::ranges::find(offers.offers(), name, &ShortcutOffers::Offer::name);
    };
    QVERIFY(!offerOf(u"Launcher"_s).free);
    const auto first = offerOf(u"Image to URL"_s).free;
    QVERIFY(first && offerOf(u"File Drop"_s).free && first != offerOf(u"File Drop"_s).free);

    offers.accept(u"uplink"_s);
    QVERIFY(offerOf(u"Image to URL"_s).isAccepted);
    QCOMPARE(world.settings.value().hotkeys.at(u"uplink"_s), first);
    world.hotkeyBackend.press(*first);
    QCOMPARE(world.activations(u"uplink"_s), 1);

    // Another program takes it between the offer and the click.
    const auto second = offerOf(u"File Drop"_s).free;
    world.hotkeyBackend.taken.push_back(*second);
    offers.accept(u"bulk-upload"_s);
    QVERIFY(!offerOf(u"File Drop"_s).isAccepted && offerOf(u"File Drop"_s).free != second);
    QCOMPARE(offers.openCount(), 2);
  }
};

QTEST_GUILESS_MAIN(TestOnboardingModel)
#include "test_onboarding_model.moc"
