#include <QTest>

#include <array>

#include "support/files.h"
#include "tools/boilerplates/ignore_rules.h"

using namespace Qt::StringLiterals;

namespace {

/// A path that ends in a slash is a folder's.
struct Row {
  const char* rules;
  const char* path;
  bool isIgnored;
};

constexpr std::array kRows = {
    Row{"build", "build/", true},
    Row{"build", "deep/er/build", true},
    Row{"build", "rebuild", false},
    Row{"build/", "build", false},
    Row{"build/", "deep/build/", true},
    Row{"/build", "deep/build", false},
    Row{"/build", "build", true},
    Row{"doc/build", "deep/doc/build", false},
    Row{"doc/build/", "doc/build/", true},
    Row{"*.o", "a.o", true},
    Row{"*.o", "deep/.o", true},
    Row{"*.o", "a.oo", false},
    Row{"doc/*.txt", "doc/a.txt", true},
    Row{"doc/*.txt", "doc/sub/a.txt", false},
    Row{"*", ".hidden", true},
    Row{"a?c", "abc", true},
    Row{"a?c", "ac", false},
    Row{"/a?c", "a/c", false},
    Row{"**/foo", "foo", true},
    Row{"**/foo", "a/b/foo", true},
    Row{"**/foo/bar", "a/foo/bar", true},
    Row{"a/**/b", "a/b", true},
    Row{"a/**/b", "a/x/y/b", true},
    Row{"a/**/b", "c/a/b", false},
    Row{"abc/**", "abc/", false},
    Row{"abc/**", "abc/x", true},
    Row{"a/**/b/**/c", "a/b/x/b/c", true},
    Row{"a**b", "axxb", true},
    Row{"/a**b", "a/b", false},
    Row{"*.log\n!keep.log", "keep.log", false},
    Row{"*.log\n!keep.log", "other.log", true},
    Row{"!keep.log\n*.log", "keep.log", true},
    Row{"# a comment\nx", "# a comment", false},
    Row{"\\#x", "#x", true},
    Row{"\\!x", "!x", true},
    Row{"x   ", "x", true},
    Row{"x\\ ", "x ", true},
    Row{"x\\ ", "x", false},
    Row{"x\r\ny\r\n", "x", true},
    Row{"\xEF\xBB\xBFx", "x", true},
    Row{"\n\n   \n/\n!\n", "x", false},
    Row{"[a-c]x", "bx", true},
    Row{"[a-c]x", "dx", false},
    Row{"[!a-c]x", "dx", true},
    Row{"[^a-c]x", "bx", false},
    Row{"[]x]y", "]y", true},
    Row{"[a-]y", "-y", true},
    Row{"[\\]]y", "]y", true},
    Row{"[[:digit:]]y", "7y", true},
    Row{"[[:digit:]]y", "ay", false},
    Row{"[[:nothing:]]y", "ay", false},
    Row{"[ab", "[ab", false},
    Row{"*[ab", "xa", false},
    Row{"foo\\", "foo", false},
    Row{"f\\oo", "foo", true},
    Row{"\\*", "*", true},
    Row{"\\*", "a", false},
    Row{"f\xC3\xBC?", "f\xC3\xBCx", true},
};

bool isIgnored(const Row& row) {
  std::string_view path = row.path;
  const bool isFolder = path.ends_with('/');
  if (isFolder) path.remove_suffix(1);
  return IgnoreRules(row.rules).verdict(path, isFolder) == IgnoreRules::Verdict::ignored;
}

}  // namespace

class TestIgnoreRules : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void decidesAsTheRulesSay() {
    for (const Row& row : kRows)
      QVERIFY2(isIgnored(row) == row.isIgnored, (std::string(row.rules) + " | " + row.path).c_str());
  }

  void aHostilePatternTakesNoTime() {
    const std::string stars = "a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*b";
    QVERIFY(!matchesGlob(stars, std::string(4000, 'a')));
    std::string folders;
    std::string path;
    for (int i = 0; i < 30; ++i) folders += "**/a/";
    for (int i = 0; i < 1000; ++i) path += "a/";
    QCOMPARE(IgnoreRules(folders + "b").verdict(path + "c", false), IgnoreRules::Verdict::undecided);
  }
};

QTEST_GUILESS_MAIN(TestIgnoreRules)
#include "test_ignore_rules.moc"
