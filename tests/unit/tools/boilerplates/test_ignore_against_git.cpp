#include <sys/stat.h>

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <array>
#include <filesystem>
#include <random>

#include "support/files.h"
#include "tools/boilerplates/open_file.h"
#include "tools/boilerplates/template_plan.h"

using namespace Qt::StringLiterals;

namespace {

constexpr unsigned kTrees = 100;

constexpr std::array kNames = {"a",  "b",  "ab",  "A",   "a.o",  ".o", "b.log", "x y",  "a ",       "#a",
                               "!a", "a*", "[a]", "\\a", "\xFC", "-",  "]",     "a\tb", "\xC3\xBC", "**"};
constexpr std::array kPieces = {"a",   "b",   "*",           "*",    "**",    "?",     "/",    "/",       "**/",
                                "/**", "!",   "#",           " ",    "\\",    "[ab]",  "[!a]", ".o",      "]",
                                "[",   "[a-", "[[:alpha:]]", "-",    "\\ ",   "A",     "\t",   "\r",      "ab",
                                "a.o", "[^]", "x",           "[]a]", "[b-a]", "[\\]]", "\xFC", "[a\\-c]", "/*"};

/// A tree of random folders and files with random `.gitignore` files, the same for the same seed.
class RandomTree {
 public:
  RandomTree(const QString& root, unsigned seed) : random_(seed) { fill(QFile::encodeName(root), 0); }

 private:
  template <std::size_t N>
  QByteArray oneOf(const std::array<const char*, N>& choices) {
    return choices.at(random_() % N);
  }
  void fill(const QByteArray& folder, int depth) {
    ::mkdir(folder.constData(), 0700);
    for (unsigned i = 0; i < 2 + random_() % 4; ++i) {
      const QByteArray path = folder + '/' + oneOf(kNames);
      if (depth < 3 && random_() % 2 == 0)
        fill(path, depth + 1);
      else
        write(path, "x");
    }
    if (depth == 0 || random_() % 4 == 0) write(folder + "/.gitignore", rules());
  }
  QByteArray rules() {
    QByteArray text;
    for (unsigned line = 0; line < 1 + random_() % 5; ++line) {
      for (unsigned piece = 0; piece < 1 + random_() % 5; ++piece) text += oneOf(kPieces);
      text += random_() % 8 == 0 ? "\r\n" : "\n";
    }
    return random_() % 8 == 0 ? text.chopped(1) : text;
  }
  static void write(const QByteArray& path, const QByteArray& bytes) {
    const OpenFile file(path.toStdString(), O_CREAT | O_WRONLY | O_TRUNC, 0600);
    // A folder may have the name already.
    if (file.isOpen() && !file.write(bytes)) qFatal("not written");
  }

  std::mt19937 random_;
};

std::vector<QByteArray> planned(const QString& root) {
  const auto plan = TemplatePlan::make(QFile::encodeName(root).toStdString(), {});
  std::vector<QByteArray> files;
  for (const PlannedEntry& entry : plan.value().entries)
    if (entry.kind == PlannedEntry::Kind::file) files.emplace_back(entry.path.c_str());
  std::ranges::sort(files);
  return files;
}

/// With what cannot be read escaped.
QByteArray shown(const QByteArray& bytes) { return bytes.toPercentEncoding("/*?[]!#\\: "); }

/// The first file that only one of them keeps, and the rules that are for it; empty when they agree.
QByteArray difference(const QString& root, const std::vector<QByteArray>& ours, const std::vector<QByteArray>& gits) {
  std::vector<QByteArray> odd;
  std::ranges::set_symmetric_difference(ours, gits, std::back_inserter(odd));
  if (odd.empty()) return {};
  const QByteArray file = odd.front();
  QByteArray text = (std::ranges::binary_search(ours, file) ? "git leaves out " : "git keeps ") + shown(file);
  qsizetype start = 0;
  do {
    const OpenFile rules((QFile::encodeName(root) + '/' + file.left(start) + ".gitignore").toStdString(), O_RDONLY);
    if (rules.isOpen())
      text += "\n  " + shown(file.left(start)) + ".gitignore: " + shown(rules.read(1000).value_or(""));
    start = file.indexOf('/', start) + 1;
  } while (start > 0);
  return text;
}

}  // namespace

/// What is left out of a random tree, beside git's own answer.
class TestIgnoreAgainstGit : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    if (QStandardPaths::findExecutable(u"git"_s).isEmpty()) QSKIP("git is not installed");
    qputenv("GIT_CONFIG_NOSYSTEM", "1");
    qputenv("GIT_CONFIG_GLOBAL", "/dev/null");
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(directory_.path()));
    run({u"init"_s, u"-q"_s, u"--bare"_s, repository_});
  }

  void keepsTheSameFiles() {
    for (unsigned seed = 0; seed < kTrees; ++seed) {
      const QString root = directory_.filePath(u"tree%1"_s.arg(seed));
      const RandomTree tree(root, seed);
      const QByteArray found = difference(root, planned(root), kept(root));
      QVERIFY2(found.isEmpty(), found.constData());
      std::filesystem::remove_all(QFile::encodeName(root).toStdString());
    }
  }

 private:
  static QByteArray run(const QStringList& arguments) {
    QProcess git;
    git.start(u"git"_s, arguments);
    if (!git.waitForFinished() || git.exitCode() != 0) qFatal("%s", git.readAllStandardError().constData());
    return git.readAllStandardOutput();
  }
  std::vector<QByteArray> kept(const QString& root) const {
    const QByteArray answer =
        run({u"-c"_s, u"core.bare=false"_s, u"--git-dir="_s + repository_, u"--work-tree="_s + root, u"-C"_s, root,
             u"ls-files"_s, u"--others"_s, u"--exclude-standard"_s, u"-z"_s});
    std::vector<QByteArray> files;
    for (const QByteArray& file : answer.split('\0'))
      if (!file.isEmpty()) files.push_back(file);
    std::ranges::sort(files);
    return files;
  }

  QTemporaryDir directory_;
  QString repository_ = directory_.filePath(u"repository"_s);
};

QTEST_GUILESS_MAIN(TestIgnoreAgainstGit)
#include "test_ignore_against_git.moc"
