#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include "random_transcripts.h"
#include "reference_scanner.h"
#include "tools/session_history/transcript_parsers.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kTranscripts = 2'000;

QString inWords(const std::optional<VibeSession>& session) {
  if (!session) return u"none"_s;
  return u"%1 | %2 | %3 | %4"_s.arg(session->id, session->title, session->cwd, session->gitBranch.value_or(u"-"_s));
}

using Parser = std::optional<VibeSession> (*)(const TranscriptFile&, ParserScratch&);
using Reference = std::optional<VibeSession> (*)(const QString&, const QByteArray&);

/// Compares the two readings of one file.
void compare(const QString& path, const QByteArray& bytes, Parser parse, Reference reference) {
  QFile file(path);
  QVERIFY(file.open(QFile::WriteOnly | QFile::Truncate));
  file.write(bytes);
  file.close();
  static ParserScratch scratch;
  const QString found = inWords(parse({QFile::encodeName(path).toStdString(), {}}, scratch));
  const QString expected = inWords(reference(path, bytes));

  QCOMPARE(found, expected);
}

}  // namespace

/// The fast reading against the plain one, over transcripts with everything that goes wrong.
class TestScannerReference : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void claudeReadsAlike() {
    QTemporaryDir home;
    const QString folder = home.path() + u"/-home-ana-it-s"_s;
    QDir().mkpath(folder);
    for (unsigned seed = 0; seed < kTranscripts && !QTest::currentTestFailed(); ++seed) {
      const QByteArray bytes = RandomTranscripts(seed).claude("/home/ana/it's");
      compare(folder + u"/0b6e9c50-9d4c-4a52-8f7c-0e2e1f2d3c4b.jsonl"_s, bytes, parseClaude, reference::claude);
      if (QTest::currentTestFailed()) qWarning("seed %u", seed);
    }
  }

  void codexReadsAlike() {
    QTemporaryDir home;
    for (unsigned seed = 0; seed < kTranscripts && !QTest::currentTestFailed(); ++seed) {
      const QByteArray bytes = RandomTranscripts(seed).codex("/home/ana/it's");
      compare(home.path() + u"/rollout-2026-11-20T09-00-00-1b6e9c50-9d4c-4a52-8f7c-0e2e1f2d3c4b.jsonl"_s, bytes,
              parseCodex, reference::codex);
      if (QTest::currentTestFailed()) qWarning("seed %u", seed);
    }
  }
};

QTEST_APPLESS_MAIN(TestScannerReference)
#include "test_scanner_reference.moc"
