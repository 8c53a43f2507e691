#include "service/ai/command_provider.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStringConverter>
#include <QTemporaryDir>

#include "base/shell_words.h"
#include "service/ai/child_program.h"
#include "service/ai/picture_kind.h"
#include "service/log.h"

using namespace Qt::StringLiterals;

namespace {

/// Where login shells look as well; a program that the desktop has started knows nothing of them.
QStringList loginShellFolders() {
  return {QDir::home().filePath(u".local/bin"_s), QDir::home().filePath(u"bin"_s), u"/usr/local/bin"_s,
          u"/opt/homebrew/bin"_s};
}

QString pathOf(const QString& program) {
  if (program.startsWith("~/"_L1)) return QDir::home().filePath(program.mid(2));
  if (program.contains(u'/')) return program;
  const QString found = QStandardPaths::findExecutable(program);
  return found.isEmpty() ? QStandardPaths::findExecutable(program, loginShellFolders()) : found;
}

std::expected<QByteArrayList, AIError> wordsOf(const QString& line) {
  const auto split = shellWords(line);
  if (!split)
    return std::unexpected(AIError{AIError::Reason::setup, u"The AI command has a quote that does not end."_s});
  const QStringList& words = *split;
  const QString path = words.isEmpty() ? QString() : pathOf(words.first());
  if (path.isEmpty() || !QFileInfo(path).isExecutable() || QFileInfo(path).isRelative())
    return std::unexpected(AIError{AIError::Reason::setup, u"The AI command is not there: %1."_s.arg(words.value(0))});
  QByteArrayList encoded{QFile::encodeName(path)};
  for (const QString& word : words.mid(1)) encoded.append(word.toLocal8Bit());
  return encoded;
}

/// The paths of the pictures, in order; nothing when they cannot be written.
std::optional<QStringList> writePictures(const QString& folder, const Question& question) {
  QStringList paths;
  for (const Turn& turn : question.turns) {
    for (const Picture& picture : turn.pictures) {
      const QString name = u"picture-%1."_s.arg(paths.size() + 1) + QString::fromLatin1(pictureSuffix(picture.type));
      QFile file(folder + u'/' + name);
      if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly) || file.write(picture.bytes) != picture.bytes.size() ||
          !file.flush())
        return {};
      paths.append(file.fileName());
    }
  }
  return paths;
}

/// All of a conversation as one text.
QByteArray promptText(const Question& question, const QStringList& pictures) {
  QString text = question.instructions + u"\n\n"_s;
  if (!pictures.isEmpty())
    text += u"The pictures are these files; look at them:\n"_s + pictures.join(u'\n') + u"\n\n"_s;
  if (question.turns.size() > 1) text += u"The conversation so far:\n\n"_s;
  for (std::size_t i = 0; i + 1 < question.turns.size(); ++i) {
    const bool isUser = question.turns[i].speaker == Turn::Speaker::user;
    text += (isUser ? u"Question: "_s : u"Answer: "_s) + question.turns[i].text + u"\n\n"_s;
  }
  if (question.turns.size() > 1) text += u"Now answer this:\n\n"_s;
  return (text + question.turns.back().text + u'\n').toUtf8();
}

AIError failure(const ChildOutcome& outcome) {
  constexpr qsizetype kLongestLine = 300;
  const QString line = QString::fromUtf8(outcome.errors.trimmed().split('\n').front()).simplified().left(kLongestLine);
  if (outcome.status == 0 && line.isEmpty()) return {.text = u"The AI command gave an empty answer."_s};
  const QString what = outcome.status == 0 ? u"no answer"_s : u"exit status %1"_s.arg(outcome.status);
  return {.text = u"AI command (%1): %2"_s.arg(what, line.isEmpty() ? u"it does not say why"_s : line)};
}

}  // namespace

void CommandProvider::removeLeftovers(const QString& folder) {
  if (folder.isEmpty()) return;
  const QStringList left = QDir(folder).entryList({u"call-??????"_s}, QDir::Dirs | QDir::NoSymLinks);
  for (const QString& name : left) QDir(folder + u'/' + name).removeRecursively();
}

Answered<QString> CommandProvider::ask(const Question& question, const AICall& call) {
  const auto words = wordsOf(line_);
  if (!words) return std::unexpected(words.error());
  QDir().mkpath(folder_);
  const QTemporaryDir folder(folder_ + u"/call-XXXXXX"_s);
  const auto pictures = folder.isValid() ? writePictures(folder.path(), question) : std::nullopt;
  if (!pictures) return std::unexpected(AIError{.text = u"The pictures for the AI command cannot be written."_s});
  QStringDecoder decoder(QStringDecoder::Utf8);
  const auto pass = [&](QByteArrayView bytes) {
    const QString piece = decoder(bytes);
    if (call.onPiece && !piece.isEmpty()) call.onPiece(piece);
  };
  const auto outcome = runProgram(
      {.words = *words, .folder = QFile::encodeName(folder.path()), .input = promptText(question, *pictures)}, call,
      pass);
  if (!outcome) return std::unexpected(outcome.error());
  QString answer = QString::fromUtf8(outcome->output).trimmed();
  if (outcome->status == 0 && !answer.isEmpty()) return answer;
  logLine("ai: the command ended with status %d", outcome->status);
  return std::unexpected(failure(*outcome));
}
