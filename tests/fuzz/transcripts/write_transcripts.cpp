// Writes random transcripts as seeds. usage: write_transcripts <claude|codex> <folder>

#include <QDir>
#include <QFile>

#include <string_view>

#include "random_transcripts.h"

namespace {

constexpr unsigned kSeeds = 60;
/// Larger ones make a fuzzer slow; it stretches small ones by itself.
constexpr qsizetype kLargest = 6'000;

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const QDir folder(QFile::decodeName(argv[2]));
  for (unsigned seed = 0; seed < kSeeds; ++seed) {
    RandomTranscripts transcripts(seed);
    const bool isClaude = std::string_view(argv[1]) == "claude";
    const QByteArray bytes = isClaude ? transcripts.claude("/home/ana/shop") : transcripts.codex("/home/ana/shop");
    if (bytes.size() > kLargest) continue;
    QFile file(folder.filePath(QStringLiteral("random-%1").arg(seed)));
    // The first three bytes say how the transcript is stretched.
    if (!file.open(QFile::WriteOnly) || file.write(QByteArray(3, static_cast<char>(seed)) + bytes) < 0) return 1;
  }
  return 0;
}
