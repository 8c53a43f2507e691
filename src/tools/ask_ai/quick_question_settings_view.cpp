#include "tools/ask_ai/quick_question_settings_view.h"

#include <QVBoxLayout>

#include "base/visible_text.h"
#include "core/ui/check_control.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"
#include "platform/system_info.h"
#include "tools/ask_ai/quick_question_client.h"

using namespace Qt::StringLiterals;

namespace {

/// Of an answer, and of what the service says in place of one.
constexpr qsizetype kAnswerShown = 80;
constexpr qsizetype kErrorShown = 300;

QStringList notes(const SystemInfo& system) {
  return {u"Press the shortcut anywhere — an Ask AI panel floats up without stealing your window."_s,
          u"Type anything — a question, a quick task, a lookup — and press ↩. It's answered by Orrin's AI service."_s,
          u"The short answer appears in place — copy it with one click."_s,
          u"Questions only leave %1 when you press ↩ — nothing is sent while you type."_s.arg(system.thisComputer())};
}

}  // namespace

QuickQuestionSettingsView::QuickQuestionSettingsView(QuickQuestionClient& client, const SystemInfo& system,
                                                     QWidget* parent)
    : QWidget(parent), client_(client) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(Theme::kGrid);
  addHowItWorks(*column, notes(system));
  QLabel* heading = makeHeading(u"Service"_s);
  heading->setContentsMargins(0, Theme::kGrid, 0, 0);
  column->addWidget(heading);
  column->addWidget(makeTest());
  column->addStretch(1);
}

QWidget* QuickQuestionSettingsView::makeTest() {
  auto* button = new CheckControl(
      u"Ask AI"_s, [this](const JobRef& job, const auto& done) { test(job, done); }, u"Test Connection"_s);
  auto* section = new SettingsSection;
  button->setRemark(section->addRow(u"Connection"_s, u"Asks for a single word."_s, button));
  return section;
}

void QuickQuestionSettingsView::test(const JobRef& job,
                                     const std::function<void(std::expected<QString, QString>)>& done) {
  const auto say = [done](const AskOutcome& outcome) {
    if (outcome)
      done(visibleLine(*outcome, kAnswerShown));
    else
      done(std::unexpected(visibleLine(outcome.error().description(), kErrorShown)));
  };
  client_.ask({u"Reply with the single word: pong"_s}, {}, {job, {}, say});
}
