#include "tools/ask_ai/quick_question_settings_view.h"

#include "platform/system_info.h"
#include "tools/ask_ai/quick_question_client.h"

using namespace Qt::StringLiterals;

namespace {

QStringList notes(const SystemInfo& system) {
  return {u"Press the shortcut anywhere — an Ask AI panel floats up without stealing your window."_s,
          u"Type anything — a question, a quick task, a lookup — and press ↩. It's answered by Orrin's AI service."_s,
          u"The short answer appears in place — copy it with one click."_s,
          u"Questions only leave %1 when you press ↩ — nothing is sent while you type."_s.arg(system.thisComputer())};
}

}  // namespace

QuickQuestionSettingsView::QuickQuestionSettingsView(QuickQuestionClient& client, const SystemInfo& system,
                                                     QWidget* parent)
    : AskSettingsView(
          {notes(system), u"Ask AI"_s, u"Asks for a single word."_s},
          [&client](const auto& question, const auto& call) { client.ask(question, {}, call); }, parent) {}
