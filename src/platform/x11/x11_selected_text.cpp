#include "platform/x11/x11_selected_text.h"

#include "base/background.h"
#include "platform/x11/clipboard_reader.h"
#include "platform/x11/terminal_windows.h"
#include "platform/x11/window_client.h"
#include "platform/x11/x11_key_targets.h"

using namespace std::chrono_literals;

namespace {

constexpr ClipboardReader::Limits kLimits{.offers = 500ms, .silence = 500ms, .whole = 1000ms};

}  // namespace

X11SelectedText::X11SelectedText(const X11Session& session)
    : session_(session), primary_(internAtom(session, "PRIMARY")) {}

bool X11SelectedText::isCopiedByShortcut(KeyTarget target) const {
  if (target == KeyTarget::none || isTerminalClass(windowProperty(session_, windowOf(target), XCB_ATOM_WM_CLASS)))
    return false;
  const auto process = processOf(session_, windowOf(target));
  return !process || !hasTerminals(*process);
}

void X11SelectedText::read(KeyTarget target, const JobRef& job, Answer answer) {
  const xcb_window_t owner = selectionOwner(session_, primary_);
  const bool isThere = owner != XCB_WINDOW_NONE && isSameClient(session_, owner, windowOf(target));
  if (!isThere || isCopiedByShortcut(target)) return SelectedText::read(target, job, std::move(answer));
  const auto work = [](const std::stop_token& stop) { return ClipboardReader(kLimits, stop, "PRIMARY").text(); };
  runInBackground(job, work, std::move(answer), readers_);
}
