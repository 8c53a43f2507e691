#pragma once

#include <QByteArray>

#include <random>

/// Transcripts as they are found on disks: ordinary ones, and with everything wrong that has been seen.
class RandomTranscripts {
 public:
  explicit RandomTranscripts(unsigned seed) : chance_(seed) {}

  QByteArray claude(const QByteArray& cwd);
  QByteArray codex(const QByteArray& cwd);

 private:
  int below(int bound) { return std::uniform_int_distribution(0, bound - 1)(chance_); }
  bool oneIn(int count) { return below(count) == 0; }
  template <std::size_t count>
  QByteArray any(const char* const (&choices)[count]) {
    return choices[below(static_cast<int>(count))];
  }
  QByteArray prompt();
  QByteArray claudeLine(const QByteArray& cwd);
  QByteArray codexLine(const QByteArray& cwd);
  QByteArray damaged(QByteArray line);
  QByteArray transcript(const QByteArray& cwd, QByteArray (RandomTranscripts::*line)(const QByteArray&));

  std::mt19937 chance_;
};
