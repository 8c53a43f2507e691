// Packs one folder into a zip as File Drop does, and prints JSON: milliseconds, and by how much the memory has grown.
// usage: pack_files <folder> <archive>

#include <QFile>
#include <QFileInfo>

#include <chrono>
#include <cstdio>

#include "platform/archiver.h"

namespace {

/// What getrusage tells includes the program that started this one.
long peakKilobytes() {
  QFile status(QStringLiteral("/proc/self/status"));
  if (!status.open(QFile::ReadOnly)) return 0;
  for (const QByteArray& line : status.readAll().split('\n'))
    if (line.startsWith("VmHWM:")) return line.mid(6).replace("kB", "").trimmed().toLong();
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const QString folder = QFile::decodeName(argv[1]);
  const auto archiver = makeArchiver();
  const long before = peakKilobytes();
  const auto start = std::chrono::steady_clock::now();
  ArchiveProgress progress;
  const auto packed =
      archiver->pack({{folder, QFileInfo(folder).fileName()}}, QFile::decodeName(argv[2]), progress, {});
  const auto taken = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start);
  if (!packed) {
    std::fprintf(stderr, "%s\n", qPrintable(packed.error().description()));
    return 1;
  }
  std::printf("{\"ms\": %.1f, \"grown_kb\": %ld}\n", taken.count(), peakKilobytes() - before);
  return 0;
}
