#include "tools/asking/ask_settings_view.h"

#include <QVBoxLayout>

#include "base/visible_text.h"
#include "core/ui/check_control.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

/// Of an answer, and of what the service says in place of one.
constexpr qsizetype kAnswerShown = 80;
constexpr qsizetype kErrorShown = 300;

std::expected<QString, QString> remarkOn(const AskOutcome& outcome) {
  if (outcome) return visibleLine(*outcome, kAnswerShown);
  return std::unexpected(visibleLine(outcome.error().description(), kErrorShown));
}

}  // namespace

AskSettingsView::AskSettingsView(const Texts& texts, const Ask& ask, QWidget* parent) : QWidget(parent) {
  const auto test = [ask](const JobRef& job, const auto& done) {
    const AskQuestion question{u"Reply with the single word: pong"_s};
    ask(question, {job, {}, [done](const AskOutcome& outcome) { done(remarkOn(outcome)); }});
  };
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(Theme::kGrid);
  addHowItWorks(*column, texts.howItWorks);
  QLabel* heading = makeHeading(u"Service"_s);
  heading->setContentsMargins(0, Theme::kGrid, 0, 0);
  column->addWidget(heading);
  auto* button = new CheckControl(texts.tool, test, u"Test Connection"_s);
  auto* section = new SettingsSection;
  button->setRemark(section->addRow(u"Connection"_s, texts.remark, button));
  column->addWidget(section);
  column->addStretch(1);
}
