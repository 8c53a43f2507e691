#include <QAccessible>
#include <QImage>
#include <QScrollBar>
#include <QSpinBox>
#include <QTest>

#include <algorithm>

#include "core/tools/tool.h"
#include "core/ui/control_style.h"
#include "core/ui/footer_hints.h"
#include "core/ui/icon.h"
#include "core/ui/search_field.h"
#include "core/ui/theme.h"
#include "core/ui/theme_palette.h"
#include "core/ui/toggle_switch.h"
#include "core/ui/wrapped_text.h"

using namespace Qt::StringLiterals;

namespace {

double luminance(const QColor& color) {
  const auto linear = [](double c) { return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& a, const QColor& b) {
  const auto [dark, light] = std::minmax({luminance(a), luminance(b)});
  return (light + 0.05) / (dark + 0.05);
}

/// How many pixels of the symbol are drawn at all.
qsizetype inkOf(const QString& symbol) {
  const QImage image = symbolPixmap(symbol, 24, Qt::black, 2).toImage().convertToFormat(QImage::Format_Alpha8);
  return std::count_if(image.constBits(), image.constBits() + image.sizeInBytes(), [](uchar a) { return a > 127; });
}

}  // namespace

class SharedWidgetsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void everyToolHasADrawing() {
    const QStringList names = symbolNames();
    for (const ToolInfo& tool : toolTable()) QVERIFY2(names.contains(tool.icon), tool.icon.latin1());
  }

  void everyDrawingShows() {
    for (const QString& name : symbolNames()) QVERIFY2(inkOf(name) > 40, qPrintable(name));
  }

  void symbolsTakeTheirColour() {
    const QImage image = symbolPixmap(u"minus"_s, 24, QColor(0x4C8DFF), 1).toImage();
    QCOMPARE(image.pixelColor(12, 12).rgb(), QColor(0x4C8DFF).rgb());
    QCOMPARE(image.pixelColor(12, 4).alpha(), 0);
  }

  void textIsReadable_data() {
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
  }

  void textIsReadable() {
    QFETCH(bool, dark);
    const Theme& theme = dark ? Theme::darkTheme() : Theme::light();
    for (const QColor& ground : {theme.card, theme.window}) {
      QVERIFY(contrast(theme.text, ground) >= 4.5);
      QVERIFY(contrast(theme.secondary, ground) >= 4.5);
    }
    QVERIFY(contrast(theme.text, theme.raised) >= 4.5);
    QVERIFY(contrast(theme.onAccent, theme.selection) >= 4.5);
    QVERIFY(contrast(theme.failure, theme.card) >= 4.5);
    QVERIFY(contrast(theme.success, theme.card) >= 4.5);
    QWidget widget;
    widget.setPalette(themePalette(theme));
    QCOMPARE(themeOf(widget).dark, dark);
  }

  void theSearchFieldIsReadAsAField() {
    SearchField field(u"Search commands"_s);
    field.setText(u"git"_s);
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&field);
    QCOMPARE(interface->role(), QAccessible::EditableText);
    QCOMPARE(interface->text(QAccessible::Name), u"Search commands"_s);
    QCOMPARE(interface->text(QAccessible::Value), u"git"_s);
  }

  void theSwitchIsACheckBox() {
    ToggleSwitch toggle(u"Enabled"_s);
    toggle.resize(toggle.sizeHint());
    toggle.show();
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&toggle);
    QCOMPARE(interface->role(), QAccessible::CheckBox);
    QTest::mouseClick(&toggle, Qt::LeftButton, {}, toggle.rect().center());
    QVERIFY(interface->state().checked);
    QTest::keyClick(&toggle, Qt::Key_Space);
    QVERIFY(!interface->state().checked);
  }

  void controlsAnswerWhereTheirMarksAreDrawn() {
    ControlStyle style;
    QSpinBox box;
    box.setStyle(&style);
    box.resize(120, 28);
    box.show();
    QTest::mouseClick(&box, Qt::LeftButton, {}, {108, 8});
    QCOMPARE(box.value(), 1);
    QTest::mouseClick(&box, Qt::LeftButton, {}, {108, 20});
    QCOMPARE(box.value(), 0);

    QScrollBar bar(Qt::Vertical);
    bar.setStyle(&style);
    bar.setRange(0, 900);
    bar.setPageStep(100);
    bar.resize(10, 400);
    bar.show();
    // A page, down and up again: there are no arrows at the ends.
    QTest::mouseClick(&bar, Qt::LeftButton, {}, {5, 398});
    QCOMPARE(bar.value(), 100);
    QTest::mouseClick(&bar, Qt::LeftButton, {}, {5, 1});
    QCOMPARE(bar.value(), 0);
    QTest::mousePress(&bar, Qt::LeftButton, {}, {5, 10});
    QTest::mouseMove(&bar, {5, 1000});
    QTest::mouseRelease(&bar, Qt::LeftButton, {}, {5, 399});
    QCOMPARE(bar.value(), 900);
  }

  void textIsBrokenToItsLimit() {
    const QFont font = Theme::detailFont();
    QCOMPARE(wrappedLines({}, font, 200, 2), QStringList());
    QCOMPARE(wrappedLines(u"one\r\ntwo\n"_s, font, 200, 3), QStringList({u"one"_s, u"two"_s}));
    const QStringList cut = wrappedLines(u"one\ntwo\nthree"_s, font, 200, 2);
    QCOMPARE(cut, QStringList({u"one"_s, u"two three"_s}));
    const QString sentence = u"A sentence that is a little longer than a line and ends in one short word"_s;
    const int full = QFontMetrics(font).horizontalAdvance(sentence) - 4;
    const int balanced = balancedWidth(sentence, font, full, 2);
    QVERIFY(balanced < full * 3 / 4);
    QCOMPARE(wrappedLines(sentence, font, balanced, 3).size(), 2);
    QCOMPARE(balancedWidth(u"word"_s, font, full, 2), full);
    const QStringList lines = wrappedLines(QString(5000, u'm'), font, 200, 3);
    QCOMPARE(lines.size(), 3);
    QVERIFY(lines.last().endsWith(u'…'));
    for (const QString& line : lines) QVERIFY(QFontMetrics(font).horizontalAdvance(line) <= 200);
  }

  void howToLeaveStaysInANarrowFooter() {
    const KeyHint first{{u"⌘"_s, u"S"_s}, u"snip"_s};
    const KeyHint second{{u"⌘"_s, u"N"_s}, u"start over"_s};
    const KeyHint last{{u"esc"_s}, u"close"_s};
    const auto drawn = [](std::vector<KeyHint> hints, int width) {
      FooterHints footer(std::move(hints));
      footer.resize(width, FooterHints::kHeight);
      return footer.grab().toImage();
    };
    QCOMPARE(drawn({first, second, last}, 220), drawn({first, last}, 220));
    QCOMPARE(drawn({first, second, last}, 120), drawn({last}, 120));
    QVERIFY(drawn({first, second, last}, 600) != drawn({first, last}, 600));
    QCOMPARE(drawn({last}, 30), drawn({}, 30));
  }
};

QTEST_MAIN(SharedWidgetsTest)
#include "shared_widgets_test.moc"
