#include <QSignalSpy>
#include <QTest>

#include <algorithm>

#include "app/shortcuts/keyboard_layout_model.h"
#include "platform/key_codes.h"
#include "support/world.h"

using namespace Qt::StringLiterals;

namespace {

constexpr std::uint32_t kControlOption = carbon::kControl | carbon::kOption;

/// A layout on which some keys are elsewhere.
struct FakeLegends final : KeyLegends {
  QString legend(std::uint32_t position) const override { return position == 16 ? u"Z"_s : QString(); }
  std::uint32_t position(std::uint32_t keyCode) const override {
    const auto found = moved.find(keyCode);
    return found == moved.end() ? keyCode : found->second;
  }
  void watch(std::function<void()> follower) override { changed = std::move(follower); }

  std::map<std::uint32_t, std::uint32_t> moved;
  std::function<void()> changed;
};

struct Stage : World {
  Stage() { bootstrap(); }

  const KeyboardLayoutModel::Key& key(std::uint32_t keyCode) const {
    return *std::ranges::find(model.keys(), keyCode, [](const auto& drawn) { return drawn.place.keyCode; });
  }
  QString nameOn(std::uint32_t keyCode) const {
    const auto entry = model.entryOf(key(keyCode));
    return entry ? model.entries()[*entry].name : QString();
  }
  const ShortcutEntry& entry(const QString& id) const {
    return *std::ranges::find(model.entries(), id, &ShortcutEntry::toolID);
  }
  QStringList lit() const {
    QStringList names;
    for (const auto& drawn : model.keys())
      if (model.lightOf(drawn) == KeyLight::lit) names.append(drawn.legend);
    return names;
  }

  FakeLegends legends;
  KeyboardLayoutModel model{{registry, hotkeys, network, *system.systemInfo}, legends};
};

}  // namespace

class TestKeyboardLayoutModel : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void keysLieSideBySide() {
    for (const KeyboardKind kind : {KeyboardKind::pc, KeyboardKind::mac}) {
      for (const bool iso : {false, true}) {
        const auto places = keyPlaces(kind, iso);
        double area = 0;
        for (const KeyPlace& place : places) {
          QVERIFY(QRectF(QPointF(), kKeyboardUnits).contains(place.area));
          QCOMPARE(std::ranges::count(places, place.keyCode, &KeyPlace::keyCode), 1);
          for (const KeyPlace& other : places)
            QVERIFY(other.keyCode == place.keyCode || !other.area.intersects(place.area));
          area += place.area.width() * place.area.height();
        }
        // Twelve function keys and Escape, five full rows of fifteen units, and nine keys beside them.
        QCOMPARE(area, 13 + 5 * 15.0 + 10);
      }
    }
  }

  /// All keys that a shortcut can be recorded with are drawn, but for the number pad's.
  void everyShortcutHasItsKey() {
    const auto places = keyPlaces(KeyboardKind::pc, false);
    for (const KeyCode& code : keyCodes())
      QCOMPARE(std::ranges::count(places, code.mac, &KeyPlace::keyCode), code.mac == 76 ? 0 : 1);
    Stage stage;
    QCOMPARE(stage.model.entries().size(), toolTable().size() + kAppShortcuts.size());
    for (std::size_t entry = 0; entry < stage.model.entries().size(); ++entry) QVERIFY(stage.model.keyOf(entry));
    QCOMPARE(stage.nameOn(36), u"Frequent CLIs"_s);
    QCOMPARE(stage.model.markOf(stage.key(40)), KeyMark::tool);
    QCOMPARE(stage.model.markOf(stage.key(49)), KeyMark::application);
    QCOMPARE(stage.model.markOf(stage.key(7)), KeyMark::none);
  }

  void heldModifiersChooseWhatIsLit() {
    Stage stage;
    stage.hotkeys.setHotkey(Hotkey{40, kControlOption | carbon::kShift}, u"feedback"_s);
    QCOMPARE(stage.lit(), QStringList());
    QCOMPARE(stage.nameOn(40), u"Ask AI"_s);

    stage.model.setHeld(carbon::kControl);
    QCOMPARE(stage.lit(), (QStringList{u"⌃ Ctrl"_s, u"⌃ Ctrl"_s}));
    QCOMPARE(stage.model.lightOf(stage.key(40)), KeyLight::faded);
    QCOMPARE(stage.model.markOf(stage.key(40)), KeyMark::none);

    stage.model.setHeld(kControlOption);
    QVERIFY(stage.lit().contains(u"K"_s) && !stage.lit().contains(u"B"_s));
    QCOMPARE(stage.lit().size(), 4 + 13 + 4);
    QCOMPARE(stage.nameOn(40), u"Ask AI"_s);

    stage.model.setHeld(kControlOption | carbon::kShift);
    QCOMPARE(stage.lit().size(), 6 + 1);
    QCOMPARE(stage.nameOn(40), u"Feedback"_s);
    QCOMPARE(stage.model.spokenName(stage.key(40)), u"K, Ctrl+Alt: Ask AI; Ctrl+Alt+Shift: Feedback"_s);

    QSignalSpy spy(&stage.model, &KeyboardLayoutModel::heldChanged);
    stage.model.setHeld(kControlOption | carbon::kShift);
    QCOMPARE(spy.count(), 0);
  }

  void keysAreWhereTheUserPressesThem() {
    Stage stage;
    stage.model.followLayout(true);
    QCOMPARE(stage.key(16).legend, u"Z"_s);
    QCOMPARE(stage.key(36).legend, u"↩"_s);
    stage.hotkeys.setHotkey(Hotkey{6, kControlOption}, u"feedback"_s);
    stage.legends.moved = {{6, 16}, {42, keycode::kIsoKey}};
    stage.legends.changed();
    QCOMPARE(stage.nameOn(16), u"Feedback"_s);
    QCOMPARE(stage.nameOn(6), QString());
    QCOMPARE(stage.nameOn(keycode::kIsoKey), u"AI Text Transform"_s);
    QVERIFY(stage.model.spokenName(stage.key(16)).startsWith(u"Z, "_s));
    stage.legends.moved = {{42, 16}, {6, 16}};
    stage.legends.changed();
    const auto transform = stage.key(16).entries.front();
    QCOMPARE(stage.model.remarks(transform),
             (QStringList{u"On this keyboard the key is “Z”."_s, u"Also on this key: ⌃⌥Z Feedback"_s}));
    QCOMPARE(stage.model.remarks(stage.key(16).entries.back()),
             QStringList{u"Also on this key: ⌃⌥\\ AI Text Transform"_s});
    stage.legends.moved = {};
    stage.legends.changed();
    QVERIFY(std::ranges::none_of(stage.model.keys(),
                                 [](const auto& key) { return key.place.keyCode == keycode::kIsoKey; }));
    stage.model.followLayout(false);
    QVERIFY(!stage.legends.changed);
  }

  void saysWhatStandsInTheWay() {
    Stage stage;
    stage.setOnline(false);
    stage.registry.setEnabled(u"inject-md"_s, false);
    QCOMPARE(stage.entry(u"uplink"_s).obstacles, QStringList{u"Needs internet — offline right now"_s});
    QVERIFY(!stage.entry(u"uplink"_s).isBlocked);
    QCOMPARE(stage.entry(u"inject-md"_s).obstacles, QStringList{u"Shortcut off"_s});
    QVERIFY(stage.entry(u"inject-md"_s).isBlocked);
    QVERIFY(stage.entry(u"vibe-history"_s).obstacles.isEmpty());
    stage.setOnline(true);
    QVERIFY(stage.entry(u"uplink"_s).obstacles.isEmpty());

    stage.hotkeyBackend.taken = {{7, kControlOption}};
    stage.hotkeys.setHotkey(Hotkey{7, kControlOption}, u"uplink"_s);
    QCOMPARE(stage.entry(u"uplink"_s).obstacles, QStringList{u"⌃⌥X is taken by another program."_s});
    QVERIFY(stage.entry(u"uplink"_s).isBlocked);
    stage.hotkeys.setHotkey(std::nullopt, u"uplink"_s);
    QVERIFY(!stage.entry(u"uplink"_s).isBlocked && !stage.entry(u"uplink"_s).hotkey);
    stage.hotkeys.resetHotkey(u"uplink"_s);
    QVERIFY(stage.entry(u"uplink"_s).obstacles.isEmpty());
  }

  void arrowsGoToTheNearestKeyThatCarriesSomething() {
    using enum KeyboardLayoutModel::Direction;
    Stage stage;
    const auto next = [&](std::uint32_t from, KeyboardLayoutModel::Direction direction) {
      const auto place = std::distance(stage.model.keys().data(), &stage.key(from));
      const auto found = stage.model.neighbour(static_cast<std::size_t>(place), direction);
      return found ? stage.model.keys()[*found].place.keyCode : 0xFFFF;
    };
    QCOMPARE(next(40, right), 37U);  // K to L
    QCOMPARE(next(37, right), 36U);  // L over two plain keys to Return
    QCOMPARE(next(36, right), 0xFFFFU);
    QCOMPARE(next(40, up), 34U);    // K to I
    QCOMPARE(next(40, down), 43U);  // K to the comma, which is nearer than N
    QCOMPARE(next(0, down), 11U);   // A to B, the first of the row below
  }
};

QTEST_GUILESS_MAIN(TestKeyboardLayoutModel)
#include "test_keyboard_layout_model.moc"
