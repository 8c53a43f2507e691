#include "tools/feedback/report_texts.h"

#include "platform/command_key.h"

using namespace Qt::StringLiterals;

ReportTexts ReportTexts::feedback() {
  return {.title = u"What's on your mind?"_s,
          .subtitle = keyText(u"Report a bug, share feedback, or ask a question — ⌘↩ sends it straight to Orrin."_s),
          .snipHint = keyText(u"Add up to 3 screen snips (⌘S) to show exactly what you saw."_s),
          .enoughSnips = u"That is as many as go along: 3 snips per report."_s,
          .sending = u"Sending your feedback…"_s,
          .thanks = u"Thanks — feedback sent!"_s,
          .afterThanks = keyText(u"⌘N to send another · esc to close"_s)};
}

ReportTexts ReportTexts::suggestion() {
  return {.title = u"What tool should exist?"_s,
          .subtitle = keyText(u"Describe the tool you wish existed and press ⌘↩ to send it straight to Orrin."_s),
          .snipHint = keyText(u"Add up to 3 screen snips (⌘S) to show exactly what you mean."_s),
          .enoughSnips = u"That is as many as go along: 3 snips per suggestion."_s,
          .sending = u"Sending your suggestion…"_s,
          .thanks = u"Thanks — suggestion sent!"_s,
          .afterThanks = keyText(u"⌘N to suggest another · esc to close"_s)};
}

QString ReportTexts::privacy(const QString& systemName) {
  return u"Only your words, the snips you choose, and the app/%1 version are sent — nothing else."_s.arg(systemName);
}

QString ReportTexts::snipHelp() { return keyText(u"Draw a box on the screen to attach it (⌘S)"_s); }

QString ReportTexts::removeSnipHelp() { return u"Remove this snip"_s; }

QString ReportTexts::retryHint() { return keyText(u" — ⌘↩ to retry"_s); }
