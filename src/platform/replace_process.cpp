#include "platform/replace_process.h"

#include <QFile>

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <vector>

QString replaceProcess(const ShellCall& call) {
  std::vector<QByteArray> words{QFile::encodeName(call.program)};
  for (const QString& argument : call.arguments) words.push_back(argument.toLocal8Bit());
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (QByteArray& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  execvp(pointers.front(), pointers.data());
  return QString::fromLocal8Bit(std::strerror(errno));
}
