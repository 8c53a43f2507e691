#include "tools/asking/ask_error.h"

#include "base/visible_text.h"

using namespace Qt::StringLiterals;

namespace {

/// Of what the service says.
constexpr qsizetype kShown = 300;

}  // namespace

AskError AskError::noAnswer(const QByteArray& body) { return AskError(u"No answer in response: "_s + beginning(body)); }

AskError AskError::brokenOff() { return AskError(u"The answer broke off before its end."_s); }

AskError AskError::tooLarge() { return AskError(HttpError{HttpError::Reason::tooLarge, {}}.description()); }

AskError AskError::told(const QString& text) {
  return text.isEmpty() ? brokenOff() : AskError(visibleLine(text, kShown));
}
