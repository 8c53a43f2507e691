#include "reference_scanner.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTextBoundaryFinder>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kChunk = 262'144;

struct Lines {
  QByteArrayList head;
  QByteArrayList tail;
};

QByteArrayList filledLines(const QByteArray& bytes) {
  QByteArrayList lines = bytes.split('\n');
  lines.removeAll(QByteArray());
  return lines;
}

Lines chunks(const QByteArray& bytes) {
  Lines lines{filledLines(bytes.left(kChunk)), {}};
  if (bytes.size() <= kChunk) return {lines.head, lines.head};
  if (!lines.head.isEmpty()) lines.head.removeLast();
  lines.tail = filledLines(bytes.right(kChunk));
  if (!lines.tail.isEmpty()) lines.tail.removeFirst();
  return lines;
}

/// Qt's reader takes control characters and unknown escapes inside of strings; JSON does not.
bool hasStrictStrings(const QByteArray& line) {
  bool inString = false;
  for (qsizetype at = 0; at < line.size(); ++at) {
    const char character = line[at];
    if (character == '"') inString = !inString;
    if (!inString) continue;
    if (character >= 0 && character < ' ') return false;
    if (character != '\\') continue;
    ++at;
    if (at == line.size() || !QByteArray("\"\\/bfnrtu").contains(line[at])) return false;
  }
  return true;
}

/// The line as JSON with damaged text replaced; Qt's reader wants whole UTF-8.
std::optional<QJsonObject> object(const QByteArray& line) {
  if (!hasStrictStrings(line)) return std::nullopt;
  const QJsonDocument document = QJsonDocument::fromJson(QString::fromUtf8(line).toUtf8());
  return document.isObject() ? std::optional(document.object()) : std::nullopt;
}

QString firstCharacters(const QString& prompt) {
  const QString line = prompt.simplified();
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, line);
  for (int count = 0; count < 160 && finder.position() < line.size(); ++count) finder.toNextBoundary();
  return line.left(finder.position());
}

QString clean(const QString& prompt) {
  const QString line = prompt.simplified();
  return line.startsWith(u'<') || line.startsWith("Caveat:"_L1) ? QString() : firstCharacters(line);
}

QString firstClean(const QStringList& texts) {
  for (const QString& text : texts)
    if (const QString prompt = clean(text); !prompt.isEmpty()) return prompt;
  return {};
}

QStringList texts(const QJsonValue& content, const QString& type) {
  QStringList found;
  for (const QJsonValue& part : content.toArray())
    if (part["type"_L1] == type) found.append(part["text"_L1].toString());
  return found;
}

QString nonEmpty(const QStringList& candidates) {
  for (const QString& candidate : candidates)
    if (!candidate.isEmpty()) return candidate;
  return {};
}

std::optional<QString> optional(const QString& text) { return text.isEmpty() ? std::nullopt : std::optional(text); }

QString newest(const QByteArrayList& tail, const QByteArray& type, const QString& key,
               QString (*shape)(const QString&)) {
  for (auto line = tail.rbegin(); line != tail.rend(); ++line) {
    if (!line->contains("\"type\":\"" + type + '"')) continue;
    const auto record = object(*line);
    const QString text = record ? shape(record->value(key).toString()) : QString();
    if (!text.isEmpty()) return text;
  }
  return {};
}

QString userPrompt(const QByteArrayList& head, bool byMachine) {
  for (const QByteArray& line : head) {
    if (!line.contains(R"("type":"user")") || line.contains(R"("toolUseResult")")) continue;
    if (line.contains(R"("isSidechain":true)")) continue;
    if (byMachine != (line.contains(R"("isMeta":true)") || line.contains(R"("isCompactSummary":true)"))) continue;
    const auto record = object(line);
    if (!record) continue;
    const QJsonValue content = (*record)["message"_L1]["content"_L1];
    const QString prompt = firstClean(content.isString() ? QStringList(content.toString()) : texts(content, u"text"_s));
    if (!prompt.isEmpty()) return prompt;
  }
  return {};
}

/// The first prompt in each of the three forms, the best of them first.
QString codexPrompt(const QByteArrayList& lines) {
  const auto request = [](const QString& text) {
    const qsizetype at = text.indexOf("## My request for Codex:"_L1);
    return at < 0 ? text : text.mid(at + 24);
  };
  QStringList prompts(3);
  for (const QByteArray& line : lines) {
    const auto record = object(line);
    if (!record) continue;
    const QJsonValue payload = (*record)["payload"_L1];
    QStringList found[3];
    if (line.contains("\"user_message\"") && payload["type"_L1] == "user_message"_L1)
      found[0] = QStringList(payload["message"_L1].toString());
    if (line.contains("\"item_completed\"") && payload["type"_L1] == "item_completed"_L1 &&
        payload["item"_L1]["type"_L1] == "UserMessage"_L1)
      found[1] = texts(payload["item"_L1]["content"_L1], u"text"_s);
    if (line.contains("\"response_item\"") && line.contains("\"user\"") && payload["role"_L1] == "user"_L1)
      found[2] = texts(payload["content"_L1], u"input_text"_s);
    found[2].removeIf([](const QString& text) { return text.trimmed().startsWith("# AGENTS.md"_L1); });
    for (int form = 0; form < 3; ++form) {
      for (QString& text : found[form]) text = request(text);
      if (prompts[form].isEmpty()) prompts[form] = firstClean(found[form]);
    }
  }
  return nonEmpty(prompts);
}

/// Half a surrogate pair is no character.
QString withoutLoneSurrogates(QString text) {
  for (qsizetype at = 0; at < text.size(); ++at) {
    if (text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate())
      ++at;
    else if (text[at].isSurrogate())
      text[at] = QChar::ReplacementCharacter;
  }
  return text;
}

std::optional<VibeSession> whole(VibeSession session) {
  session.title = withoutLoneSurrogates(session.title);
  if (session.id.isEmpty() || session.cwd.isEmpty() || session.title.isEmpty()) return std::nullopt;
  return session;
}

}  // namespace

std::optional<VibeSession> reference::claude(const QString& path, const QByteArray& bytes) {
  const Lines lines = chunks(bytes);
  VibeSession session;
  session.id = QFileInfo(path).completeBaseName();
  const auto takeFolder = [&](const QByteArray& line, const QString& folder) {
    const auto record = line.contains("\"cwd\":") ? object(line) : std::nullopt;
    const QString cwd = record ? record->value("cwd"_L1).toString() : QString();
    static const QRegularExpression special(u"[^0-9a-zA-Z]"_s);
    if (cwd.isEmpty() || (!folder.isEmpty() && QString(cwd).replace(special, u"-"_s) != folder)) return false;
    session.cwd = cwd;
    session.gitBranch = optional(record->value("gitBranch"_L1).toString());
    return true;
  };
  for (const QByteArray& line : lines.head)
    if (takeFolder(line, {})) break;
  const QString folder = QFileInfo(path).dir().dirName();
  for (auto line = lines.tail.rbegin(); session.cwd.isEmpty() && line != lines.tail.rend(); ++line)
    takeFolder(*line, folder);
  session.title =
      nonEmpty({newest(lines.tail, "custom-title", u"customTitle"_s, firstCharacters),
                newest(lines.tail, "ai-title", u"aiTitle"_s, firstCharacters), userPrompt(lines.head, false),
                newest(lines.tail, "last-prompt", u"lastPrompt"_s, clean), userPrompt(lines.head, true)});
  return whole(session);
}

std::optional<VibeSession> reference::codex(const QString& path, const QByteArray& bytes) {
  const Lines lines = chunks(bytes);
  VibeSession session;
  session.agent = SessionAgent::codex;
  for (const QByteArray& line : lines.head) {
    const auto record = line.contains("\"session_meta\"") ? object(line) : std::nullopt;
    if (!record || (*record)["type"_L1] != "session_meta"_L1) continue;
    const QJsonValue payload = (*record)["payload"_L1];
    const QJsonValue threadSource = payload["thread_source"_L1];
    if (threadSource.isString() && threadSource != "user"_L1) return std::nullopt;
    if (payload["source"_L1].toObject().contains("subagent"_L1)) return std::nullopt;
    session.id = payload["id"_L1].toString();
    session.cwd = payload["cwd"_L1].toString();
    session.gitBranch =
        optional(nonEmpty({payload["git"_L1]["branch"_L1].toString(), payload["branch"_L1].toString()}));
    break;
  }
  if (session.id.isEmpty())
    session.id = QRegularExpression(u"[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}$"_s)
                     .match(QFileInfo(path).completeBaseName())
                     .captured();
  for (const QByteArray& line : lines.head + lines.tail) {
    const auto record = object(line);
    if (session.cwd.isEmpty() && record && (*record)["type"_L1] == "turn_context"_L1)
      session.cwd = (*record)["payload"_L1]["cwd"_L1].toString();
  }
  session.title = nonEmpty({codexPrompt(lines.head), codexPrompt(lines.tail)});
  return whole(session);
}
