#include "random_transcripts.h"

QByteArray RandomTranscripts::claude(const QByteArray& cwd) { return transcript(cwd, &RandomTranscripts::claudeLine); }

QByteArray RandomTranscripts::codex(const QByteArray& cwd) { return transcript(cwd, &RandomTranscripts::codexLine); }

/// Already escaped for JSON.
QByteArray RandomTranscripts::prompt() {
  static constexpr const char* kPrompts[] = {"add retry",
                                             "  why\\n\\n  hang?  ",
                                             "<command-name>/clear</command-name>",
                                             "Caveat: generated",
                                             "",
                                             "   ",
                                             "# AGENTS.md instructions",
                                             "\\ud83d\\ude00 smile",
                                             "half \\ud83d pair",
                                             "half \\ude00 pair",
                                             "\xff\xfe broken",
                                             "na\xc3\xafve \xe2\x80\xa8 line",
                                             "quotes \\\"type\\\":\\\"user\\\" inside",
                                             "## My request for Codex:\\nrename flag",
                                             "files\\n## My request for Codex:  ",
                                             "tab\\tand \\u00a0 space"};
  if (oneIn(12)) return QByteArray("long ").repeated(20 + below(200));
  if (oneIn(30)) return QByteArray("e\xcc\x81").repeated(100 + below(100));
  return any(kPrompts);
}

QByteArray RandomTranscripts::claudeLine(const QByteArray& cwd) {
  static constexpr const char* kBranches[] = {R"("gitBranch":"main",)", R"("gitBranch":"",)", ""};
  const QByteArray place = R"("cwd":")" + (oneIn(8) ? cwd + "/deeper" : cwd) + R"(",)" + any(kBranches);
  const QByteArray user = R"({"type":"user","message":{"role":"user","content":)";
  switch (below(12)) {
    case 0:
      return R"({"type":"mode","mode":"normal","sessionId":"S"})";
    case 1:
      return R"({"type":"ai-title","aiTitle":")" + prompt() + R"(","sessionId":"S"})";
    case 2:
      return oneIn(3) ? R"({"type":"custom-title","customTitle":")" + prompt() + R"(","sessionId":"S"})" : "{}";
    case 3:
      return R"({"type":"last-prompt","lastPrompt":")" + prompt() + R"(","leafUuid":"l"})";
    case 4:
      return R"({"type":"last-prompt","leafUuid":"l","sessionId":"S"})";
    case 5:
      return user + R"([{"type":"tool_result","content":"ok"}]},"toolUseResult":{"stdout":"ok"},)" + place +
             R"("n":1})";
    case 6:
      return user + '"' + prompt() + R"("},"isSidechain":true,)" + place + R"("n":1})";
    case 7:
      return user + R"([{"type":"text","text":")" + prompt() + R"("}]},"isMeta":true,)" + place + R"("n":1})";
    case 8:
      return user + R"([{"type":"text","text":")" + prompt() + R"("},{"type":"image"},{"type":"text","text":")" +
             prompt() + R"("}]},)" + place + R"("isSidechain":false})";
    case 9:
      return R"({"type":"assistant","message":{"content":[{"type":"text","text":")" + prompt().repeated(1 + below(90)) +
             R"("}]},"nested":{"cwd":"/else"}})";
    default:
      return user + '"' + prompt() + R"("},)" + place + R"("isSidechain":false})";
  }
}

QByteArray RandomTranscripts::codexLine(const QByteArray& cwd) {
  static constexpr const char* kSources[] = {R"("source":"cli","thread_source":"user",)",
                                             R"("source":"cli",)",
                                             "",
                                             "",
                                             R"("source":{"subagent":{"other":"guardian"}},)",
                                             R"("thread_source":"subagent",)"};
  static constexpr const char* kIDs[] = {R"("id":"0b6e9c50-9d4c-4a52-8f7c-0e2e1f2d3c4b",)", R"("id":"",)", ""};
  static constexpr const char* kBranches[] = {R"("git":{"branch":"main"})", R"("branch":"dev")", R"("git":null)"};
  const QByteArray place = oneIn(6) ? QByteArray() : R"("cwd":")" + cwd + R"(",)";
  const QByteArray item = R"({"type":"response_item","payload":{"type":"message","role":)";
  switch (below(9)) {
    case 0:
      return oneIn(2)
                 ? R"({"type":"session_meta","payload":{)" + any(kIDs) + place + any(kSources) + any(kBranches) + "}}"
                 : QByteArray(R"({"id":"T","instructions":null,"git":{"branch":"main"}})");
    case 1:
      return R"({"type":"turn_context","payload":{)" + place + R"("model":"m"}})";
    case 2:
      return R"({"type":"event_msg","payload":{"type":"user_message","message":")" + prompt() + R"(","images":[]}})";
    case 3:
      return R"({"type":"event_msg","payload":{"type":"item_completed","item":{"type":"UserMessage","content":[)"
             R"({"type":"text","text":")" +
             prompt() + R"("},{"type":"text","text":")" + prompt() + R"("}]}}})";
    case 4:
      return item + R"("user","content":[{"type":"input_text","text":")" + prompt() + R"("}]}})";
    case 5:
      return R"({"type":"event_msg","payload":{"type":"agent_message","message":"\"user_message\""}})";
    default:
      return item + R"("assistant","content":[{"type":"output_text","text":")" + prompt().repeated(1 + below(90)) +
             R"("}]}})";
  }
}

QByteArray RandomTranscripts::damaged(QByteArray line) {
  switch (below(6)) {
    case 0:
      return line.left(below(static_cast<int>(line.size()) + 1));
    case 1:
      return line + line;
    case 2:
      return QByteArray(1 + below(40), '\0') + line;
    case 3:
      line[below(static_cast<int>(line.size()))] = static_cast<char>(below(256));
      return line;
    case 4:
      return "[" + line + "]";
    default:
      return line + "\r";
  }
}

QByteArray RandomTranscripts::transcript(const QByteArray& cwd,
                                         QByteArray (RandomTranscripts::*line)(const QByteArray&)) {
  // Most are small; some pass the edges of both chunks, the exact one included.
  const int wanted = oneIn(4) ? 200'000 + below(500'000) : below(6'000);
  QByteArray bytes;
  while (bytes.size() < wanted) {
    bytes += oneIn(15) ? damaged((this->*line)(cwd)) : (this->*line)(cwd);
    bytes += oneIn(20) ? "\n\n" : "\n";
    if (oneIn(40) && wanted > 100'000) bytes += QByteArray(below(90'000), 'x') + '\n';
  }
  if (oneIn(5)) bytes.chop(below(static_cast<int>(std::min<qsizetype>(bytes.size(), 50)) + 1));
  if (oneIn(10)) bytes.resize(262'144, '\n');
  return bytes;
}
