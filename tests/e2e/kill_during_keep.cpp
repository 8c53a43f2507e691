/// Kills a program many times while it keeps generated images, another one beside it. Each time every image that was
/// kept for certain must be there, and each that is found must be whole: its picture, its prompt, its references.
///
/// A plain program and not a QtTest: the children are made by fork, which wants a process with one thread.
#include <QDir>
#include <QImage>
#include <QTemporaryDir>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <map>
#include <new>
#include <random>
#include <thread>

#include "capture/png_encoding.h"
#include "tools/generate_image/history_folder.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kKills = 200;
/// Kills that must have left something half written, or the test has shown nothing.
constexpr int kLeastInterrupted = 50;

/// In memory that outlives the children.
struct Progress {
  std::atomic<bool> isKeeping = false;
  std::atomic<int> kept = 0;
};

/// As many pixels wide as its number, so that no two are alike.
QByteArray picture(int number) {
  QImage image(1 + number % 500, 300, QImage::Format_RGB32);
  image.fill(Qt::darkCyan);
  return pngOf(image);
}

ImageRequest request(const QString& who, int number) {
  return {u"%1 %2"_s.arg(who).arg(number), {}, true, {picture(number + 1), picture(number + 2)}};
}

[[noreturn]] void keepForEver(const HistoryFolder& folder, const QString& who, Progress& progress) {
  for (int number = progress.kept + 1;; ++number) {
    const ImageRequest made = request(who, number);
    const QByteArray png = picture(number);
    progress.isKeeping = true;
    if (!folder.write(entryOf(made, QDateTime::currentDateTimeUtc()), png, made.references)) _exit(1);
    progress.kept = number;
  }
}

bool isWhole(const HistoryFolder& folder, const HistoryEntry& entry) {
  const auto kept = folder.read(entry);
  const int number = entry.prompt.section(u' ', 1).toInt();
  return kept && !kept->lacksReferences && kept->image.png == picture(number) &&
         kept->request.references == request({}, number).references;
}

/// All that is found is to be whole; what was found is removed. Answers how many images each of the two has kept.
std::map<QString, int> taken(const HistoryFolder& folder) {
  std::map<QString, int> found;
  for (const HistoryEntry& entry : folder.entries()) {
    if (!isWhole(folder, entry)) {
      std::fprintf(stderr, "%s is not whole\n", qPrintable(entry.id));
      std::exit(1);
    }
    ++found[entry.prompt.section(u' ', 0, 0)];
    folder.remove({entry.id});
  }
  return found;
}

pid_t started(const HistoryFolder& folder, const QString& who, Progress& progress) {
  progress.isKeeping = false;
  const pid_t child = fork();
  if (child == 0) keepForEver(folder, who, progress);
  while (!progress.isKeeping) std::this_thread::yield();
  return child;
}

void end(pid_t child) {
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
}

void expectAll(const char* who, int found, int kept) {
  // The last one may have been finished and not have been counted any more.
  if (found == kept || found == kept + 1) return;
  std::fprintf(stderr, "%d images of the %s one were found, and %d were kept\n", found, who, kept);
  std::exit(1);
}

}  // namespace

int main() {
  const QTemporaryDir home;
  const HistoryFolder folder(home.filePath(u"History"_s));
  void* shared = mmap(nullptr, 2 * sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  Progress& killed = *new (shared) Progress;
  Progress& other = *new (static_cast<Progress*>(shared) + 1) Progress;
  std::mt19937 random(20'261);
  std::uniform_int_distribution<int> delay(0, 8'000);
  int interrupted = 0;
  for (int run = 0; run < kKills; ++run) {
    killed.kept = other.kept = 0;
    const pid_t second = started(folder, u"other"_s, other);
    const pid_t first = started(folder, u"killed"_s, killed);
    std::this_thread::sleep_for(std::chrono::microseconds(delay(random)));
    end(first);
    end(second);
    auto found = taken(folder);
    expectAll("other", found[u"other"_s], other.kept);
    expectAll("killed", found[u"killed"_s], killed.kept);
    interrupted += !QDir(home.filePath(u"History"_s)).isEmpty();
    folder.removeAll();
    if (!QDir(home.filePath(u"History"_s)).isEmpty()) {
      std::fprintf(stderr, "what was half written was not deleted with the rest\n");
      return 1;
    }
  }
  if (interrupted < kLeastInterrupted) {
    std::fprintf(stderr, "only %d of %d kills left something half written: nothing is shown\n", interrupted, kKills);
    return 1;
  }
  std::printf("%d kills, %d of them left something half written, which was never shown\n", kKills, interrupted);
}
