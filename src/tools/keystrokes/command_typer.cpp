#include "tools/keystrokes/command_typer.h"

#include "core/presenters/toast_presenter.h"
#include "platform/pasteboard.h"
#include "tools/keystrokes/keystroke_sender.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Long enough to read a sentence, and to find out what has the keyboard.
constexpr auto kCopiedToast = 8s;
constexpr int kReasonLines = 3;

}  // namespace

void CommandTyper::type(const QString& command, bool pressReturn) {
  const auto typed = [this, command](const std::expected<void, KeyEventError>& result) {
    if (result) return;
    const KeyEventError& error = result.error();
    if (error.kind == KeyEventError::Kind::refused)
      copy(command, u"Command copied to clipboard"_s, u"It could not be typed: %1."_s.arg(error.description()));
    else if (!error.rest.isEmpty())
      copy(error.rest, u"Rest of the command copied to clipboard"_s,
           u"Typing broke off in the middle: %1."_s.arg(error.description()));
  };
  keys_.send(command, pressReturn, typing_.bind(typed));
}

void CommandTyper::copy(const QString& text, const QString& title, const QString& detail) {
  if (text.isEmpty()) return;
  pasteboard_.writeText(text);
  toasts_.show({.icon = u"doc.on.clipboard.fill"_s, .title = title, .detail = detail, .detailLineLimit = kReasonLines},
               kCopiedToast);
}
