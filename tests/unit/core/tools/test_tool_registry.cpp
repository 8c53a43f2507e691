#include <QFile>
#include <QTest>

#include "support/world.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QStringList registrationOrder() {
  QStringList ids;
  for (const ToolInfo& info : toolTable()) ids.append(info.id);
  return ids;
}

/// Notes what is known and what is on disk at the moment it is activated.
class LookingTool final : public Tool {
 public:
  LookingTool(const World& world, int& uses, bool& saved)
      : Tool(toolInfo("uplink"_L1), {}), world_(world), uses_(uses), saved_(saved) {}
  void activate() override {
    uses_ = world_.registry.usageCount(id());
    saved_ = QFile::exists(world_.folders.file(u"settings.json"_s));
  }

 private:
  const World& world_;
  int& uses_;
  bool& saved_;
};

}  // namespace

class TestToolRegistry : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void storedStateIsTakenOverAndUnknownIdsAreDropped() {
    World world;
    world.settings.update([](AppSettings& settings) {
      settings.pinnedTools = {u"feedback"_s, u"gone"_s, u"uplink"_s, u"feedback"_s};
      settings.toolOrder = {u"gone"_s, u"boilerplates"_s, u"promptify"_s};
      settings.toolSortMode = u"by-colour"_s;
    });
    world.bootstrap();
    QCOMPARE(world.registry.pinnedToolIDs(), (QStringList{u"feedback"_s, u"uplink"_s}));
    QCOMPARE(world.order().mid(0, 5),
             (QStringList{u"feedback"_s, u"uplink"_s, u"boilerplates"_s, u"promptify"_s, u"frequent-clis"_s}));
    QCOMPARE(world.order().size(), 14);
    QCOMPARE(world.registry.sortMode(), ToolSortMode::manual);
  }

  void sortModesOrderTheUnpinnedStably() {
    ToolWorld world;
    world.registry.summon(u"open-project"_s);
    world.clock.advance(1s);
    world.registry.summon(u"feedback"_s);
    world.registry.summon(u"feedback"_s);
    world.clock.advance(1s);
    world.registry.summon(u"uplink"_s);
    QCOMPARE(world.order(), registrationOrder());

    world.registry.setSortMode(ToolSortMode::mostUsed);
    QCOMPARE(world.order().mid(0, 4), (QStringList{u"feedback"_s, u"uplink"_s, u"open-project"_s, u"frequent-clis"_s}));
    world.registry.setSortMode(ToolSortMode::recent);
    QCOMPARE(world.order().mid(0, 4), (QStringList{u"uplink"_s, u"feedback"_s, u"open-project"_s, u"frequent-clis"_s}));
    world.clock.advance(1s);
    world.registry.summon(u"boilerplates"_s);
    QCOMPARE(world.order().first(), u"boilerplates"_s);
    world.registry.setSortMode(ToolSortMode::alphabetical);
    QCOMPARE(world.order().mid(0, 3), (QStringList{u"ai-text-transform"_s, u"quick-question"_s, u"boilerplates"_s}));
    world.registry.togglePin(u"vibe-history"_s);
    QCOMPARE(world.order().first(), u"vibe-history"_s);
    QCOMPARE(SettingsStore(world.folders.file(u"settings.json"_s)).value().toolSortMode, u"alphabetical"_s);
  }

  void movingCapturesTheDisplayedOrder() {
    ToolWorld world;
    world.registry.setSortMode(ToolSortMode::alphabetical);
    QStringList expected = world.order();
    world.registry.move(expected[0], expected[3]);
    expected.move(0, 3);
    QCOMPARE(world.order(), expected);
    QCOMPARE(world.registry.sortMode(), ToolSortMode::manual);
    world.registry.moveToEnd(expected[2]);
    expected.move(2, 13);
    QCOMPARE(world.order(), expected);
    world.registry.move(u"nonsense"_s, expected[0]);
    world.registry.move(expected[0], u"nonsense"_s);
    QCOMPARE(world.order(), expected);
    world.registry.togglePin(expected[5]);
    world.registry.resetArrangement();
    QCOMPARE(world.order(), registrationOrder());
  }

  void summonRecordsSendsAndActivates() {
    World world;
    world.preferences.update([](Preferences& preferences) { preferences.shareUsageStats = true; });
    world.bootstrap();
    world.registry.summon(u"uplink"_s);
    world.registry.summon(u"no-such-tool"_s);
    QCOMPARE(world.activations(u"uplink"_s), 1);
    QCOMPARE(world.registry.usageCount(u"uplink"_s), 1);
    QCOMPARE(world.settings.value().toolLastUsed.at(u"uplink"_s), world.clock.now().count());
    QCOMPARE(world.events.size(), std::size_t{1});
  }

  void theDiskWaitsUntilTheToolIsActive() {
    int uses = 0;
    bool saved = true;
    World world;
    std::vector<std::unique_ptr<Tool>> tools;
    tools.push_back(std::make_unique<LookingTool>(world, uses, saved));
    world.registry.bootstrap(std::move(tools));
    world.registry.summon(u"uplink"_s);
    QCOMPARE(uses, 1);
    QVERIFY(!saved);
    QCOMPARE(SettingsStore(world.folders.file(u"settings.json"_s)).value().toolUsage.at(u"uplink"_s), 1);
  }

  void offlineRefusesNetworkToolsOnly() {
    World world;
    world.preferences.update([](Preferences& preferences) { preferences.shareUsageStats = true; });
    world.bootstrap();
    world.setOnline(false);
    world.registry.summon(u"uplink"_s);
    QCOMPARE(world.activations(u"uplink"_s), 0);
    QCOMPARE(world.registry.usageCount(u"uplink"_s), 0);
    QCOMPARE(world.toasts.shown.size(), std::size_t{1});
    const auto& [toast, duration] = world.toasts.shown.front();
    QCOMPARE(toast.icon, u"wifi.slash"_s);
    QCOMPARE(toast.title, u"Image to URL needs the internet"_s);
    QCOMPARE(toast.detail, u"You're offline — it re-enables the moment the connection returns."_s);
    QCOMPARE(duration, 4s);

    world.registry.summon(u"frequent-clis"_s);
    QCOMPARE(world.activations(u"frequent-clis"_s), 1);
    QVERIFY(world.events.empty());
    world.setOnline(true);
    world.registry.summon(u"uplink"_s);
    QCOMPARE(world.activations(u"uplink"_s), 1);
  }
};

QTEST_GUILESS_MAIN(TestToolRegistry)
#include "test_tool_registry.moc"
