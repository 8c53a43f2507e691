#include "platform/x11/x11_key_map.h"

#include <QTest>

#include "platform/key_codes.h"

namespace {

X11KeyMap keyboard(const char* layouts, xkb_layout_index_t active) {
  xkb_context* context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
  const xkb_rule_names names{.rules = "evdev", .model = "pc105", .layout = layouts, .variant = "", .options = ""};
  X11KeyMap::Map map(xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
  xkb_context_unref(context);
  return {std::move(map), active};
}

}  // namespace

class X11KeyMapTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  /// The table's own claim: on the US layout every symbol is where the table puts it.
  void usLayoutIsTheTable() {
    const auto us = keyboard("us", 0);
    for (const KeyCode& key : keyCodes()) QCOMPARE(us.keyCode(key.mac), xcb_keycode_t(key.position));
  }

  void keysFollowTheirSymbol_data() {
    QTest::addColumn<QByteArray>("layouts");
    QTest::addColumn<int>("active");
    QTest::addColumn<int>("mac");
    QTest::addColumn<int>("code");
    QTest::newRow("de: Z is above A") << QByteArray("de") << 0 << 6 << 29;
    QTest::newRow("fr: A is left of Z") << QByteArray("fr") << 0 << 0 << 24;
    QTest::newRow("fr: the comma is where US has M") << QByteArray("fr") << 0 << 43 << 58;
    QTest::newRow("fr: digits need Shift there, the keys are the same") << QByteArray("fr") << 0 << 18 << 10;
    QTest::newRow("ru alone: no Latin letters, so by position") << QByteArray("ru") << 0 << 6 << 52;
    QTest::newRow("ru beside de: the letters of the other layout") << QByteArray("de,ru") << 1 << 6 << 29;
    QTest::newRow("ru between two: the first one counts") << QByteArray("us,ru,de") << 1 << 6 << 52;
    QTest::newRow("the active one of two layouts counts") << QByteArray("us,de") << 1 << 6 << 29;
    QTest::newRow("Return has one layout only") << QByteArray("us,ru") << 1 << 36 << 36;
  }
  void keysFollowTheirSymbol() {
    QFETCH(QByteArray, layouts);
    QFETCH(int, active);
    QFETCH(int, mac);
    QFETCH(int, code);
    const auto map = keyboard(layouts.constData(), static_cast<xkb_layout_index_t>(active));
    QCOMPARE(map.keyCode(static_cast<std::uint32_t>(mac)), xcb_keycode_t(code));
  }

  void legendsAreWhatIsPrinted_data() {
    QTest::addColumn<QByteArray>("layouts");
    QTest::addColumn<int>("active");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("legend");
    QTest::newRow("us") << QByteArray("us") << 0 << 45 << QStringLiteral("K");
    QTest::newRow("de: umlauts") << QByteArray("de") << 0 << 47 << QStringLiteral("Ö");
    QTest::newRow("de: a letter without upper case") << QByteArray("de") << 0 << 20 << QStringLiteral("ß");
    QTest::newRow("de: a dead key") << QByteArray("de") << 0 << 49 << QStringLiteral("^");
    QTest::newRow("fr: digits need Shift, and are printed") << QByteArray("fr") << 0 << 10 << QStringLiteral("1");
    QTest::newRow("ru beside us: the Latin letter") << QByteArray("us,ru") << 1 << 45 << QStringLiteral("K");
    QTest::newRow("ru alone") << QByteArray("ru") << 0 << 45 << QStringLiteral("Л");
    QTest::newRow("gb: the key beside Shift") << QByteArray("gb") << 0 << 94 << QStringLiteral("\\");
    QTest::newRow("Return types nothing") << QByteArray("us") << 0 << 36 << QString();
    QTest::newRow("nor does the space bar") << QByteArray("us") << 0 << 65 << QString();
  }
  void legendsAreWhatIsPrinted() {
    QFETCH(QByteArray, layouts);
    QFETCH(int, active);
    QFETCH(int, code);
    QFETCH(QString, legend);
    const auto map = keyboard(layouts.constData(), static_cast<xkb_layout_index_t>(active));
    QCOMPARE(map.legend(static_cast<xcb_keycode_t>(code)), legend);
  }

  void oddInput() {
    QVERIFY(!keyboard("us", 0).keyCode(999));
    // A server without the extension: positions.
    QCOMPARE(X11KeyMap(nullptr, 0).keyCode(6), xcb_keycode_t(52));
    QCOMPARE(X11KeyMap(nullptr, 0).legend(52), QString());
  }
};

QTEST_APPLESS_MAIN(X11KeyMapTest)
#include "x11_key_map_test.moc"
