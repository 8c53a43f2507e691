#include "tools/frequent_clis/palette_model.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

#include "base/text_search.h"
#include "base/visible_text.h"

using namespace Qt::StringLiterals;

namespace {

CLICommand command(const QString& title, const QString& text) {
  return {QUuid::createUuid(), title, text, false, u"terminal"_s};
}

QStringList titles(const PaletteModel& model) {
  QStringList titles;
  for (const CLICommand& command : model.filtered()) titles.append(command.title);
  return titles;
}

}  // namespace

class PaletteModelTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void filterLooksIntoTitleAndCommand() {
    PaletteModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.reset(
        {command(u"Claude — skip"_s, u"a"_s), command(u"b"_s, u"run claude"_s), command(u"Codex"_s, u"codex"_s)});
    model.setQuery(u"CLAUDE"_s);
    QCOMPARE(titles(model), QStringList({u"Claude — skip"_s, u"b"_s}));
    // No fuzzy matching, and no match across title and command.
    model.setQuery(u"cde"_s);
    QCOMPARE(model.rowCount(), 0);
    model.setQuery(u"skipa"_s);
    QCOMPARE(model.rowCount(), 0);
    model.setQuery({});
    QCOMPARE(model.rowCount(), 3);
    // What stood there before is not found any more.
    model.reset({command(u"d"_s, u"e"_s), command(u"f"_s, u"claude"_s)});
    model.setQuery(u"claude"_s);
    QCOMPARE(titles(model), QStringList(u"f"_s));
  }

  void filterIgnoresCaseAndComposition() {
    for (const auto& [title, query] : {std::pair{u"PRÜFEN"_s, u"prüf"_s},
                                       {u"ΛΟΓΟΣ"_s, u"λογος"_s},
                                       {u"e\u0301te"_s, u"\u00e9T"_s},
                                       {u"\U00010400"_s, u"\U00010428"_s}}) {
      PaletteModel model;
      model.reset({command(u"other"_s, {}), command(title, {})});
      model.setQuery(query);
      QCOMPARE(titles(model), QStringList(title));
    }
  }

  void selectionIsCyclic() {
    PaletteModel model;
    model.reset({command(u"a"_s, {}), command(u"b"_s, {}), command(u"c"_s, {})});
    QSignalSpy changes(&model, &PaletteModel::changed);
    model.moveSelection(-1);
    QCOMPARE(model.selectedCommand()->title, u"c"_s);
    model.moveSelection(+1);
    QCOMPARE(model.selectedCommand()->title, u"a"_s);
    model.moveSelection(+1);
    QCOMPARE(model.selectionIndex(), 1);
    QCOMPARE(changes.size(), 3);
  }

  void everyRefilterSelectsTheFirstRow() {
    PaletteModel model;
    model.reset({command(u"aa"_s, {}), command(u"ab"_s, {})});
    model.moveSelection(+1);
    model.setQuery(u"a"_s);
    QCOMPARE(model.selectionIndex(), 0);
    model.moveSelection(+1);
    model.reset({command(u"x"_s, {}), command(u"y"_s, {})});
    QCOMPARE(model.query(), QString());
    QCOMPARE(model.selectedCommand()->title, u"x"_s);
  }

  void emptyListHasNoSelection() {
    PaletteModel model;
    model.reset({command(u"a"_s, {})});
    model.setQuery(u"zzz"_s);
    model.moveSelection(+1);
    model.moveSelection(-1);
    QCOMPARE(model.selectionIndex(), 0);
    QVERIFY(!model.selectedCommand());
  }

  void rowsShowWhatTheyHide() {
    PaletteModel model;
    for (const auto& [text, shown] : {std::pair{u"a\nb\tc\r"_s, u"a\\nb\\tc\\r"_s},
                                      {u"\u001b[0m\u007f"_s, u"\\u{1b}[0m\\u{7f}"_s},
                                      {u"rm \u202egpj.x"_s, u"rm \\u{202e}gpj.x"_s},
                                      {u"a\u2028b"_s, u"a\\u{2028}b"_s},
                                      {QChar(0xD83D) + u"a"_s + QChar(0xDE00), u"\\u{d83d}a\\u{de00}"_s},
                                      {u"👩‍💻"_s, u"👩‍💻"_s}}) {
      model.reset({command(text, text)});
      QCOMPARE(model.data(model.index(0), PaletteModel::CommandPreviewRole).toString(), shown);
      QCOMPARE(model.data(model.index(0), PaletteModel::TitleRole).toString(), shown);
    }
  }

  void hugeCommandsCostAsMuchAsARow() {
    PaletteModel model;
    const QString huge = QString(1 << 20, u'\n') + u"needle"_s;
    model.reset({command(huge, huge)});
    for (const int role : {int(PaletteModel::CommandPreviewRole), int(PaletteModel::TitleRole)})
      QCOMPARE(model.data(model.index(0), role).toString(), u"\\n"_s.repeated(PaletteModel::kPreviewLength) + u'…');
    // A pair on the cut is neither split nor half shown.
    QCOMPARE(visibleLine(u"a😀b"_s, 2), u"a😀…"_s);
    model.setQuery(u"NEEDLE"_s);
    QCOMPARE(model.selectedCommand()->command, huge);
  }

  void lastCharacterIsWhatTheUserSees() {
    for (const QString& last : {u"b"_s, u"e\u0301"_s, u"🇩🇪"_s, u"😀"_s})
      QCOMPARE(withoutLastCharacter(u"a"_s + last), u"a"_s);
    QCOMPARE(withoutLastCharacter({}), QString());
  }
};

QTEST_GUILESS_MAIN(PaletteModelTest)
#include "test_palette_model.moc"
