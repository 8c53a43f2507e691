#include "tools/session_history/vibe_history_palette_controller.h"

#include <QFileInfo>

#include "base/background.h"
#include "core/presenters/toast_presenter.h"
#include "platform/pasteboard.h"
#include "tools/keystrokes/command_typer.h"
#include "tools/session_history/vibe_history_tool.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kCopiedToast = 4s;

struct Scanned {
  std::vector<VibeSession> sessions;
  QStringList gone;
};

/// The folders are looked at here as well: one on a sleeping disk or a dead server must not hold up the main thread.
Scanned scanned(std::vector<VibeSession> sessions) {
  QStringList gone;
  for (const VibeSession& session : sessions)
    if (!gone.contains(session.cwd) && !(session.cwd.startsWith(u'/') && QFileInfo(session.cwd).isDir()))
      gone.append(session.cwd);
  return {std::move(sessions), std::move(gone)};
}

}  // namespace

VibeHistoryPaletteController::VibeHistoryPaletteController(Services services, PanelFactory makePanel)
    : PaletteController(services.launcher, kVibeHistoryID, std::move(makePanel)), services_(services) {
  connect(&model_, &PaletteListModel::changed, this, &VibeHistoryPaletteController::followSelection);
}

void VibeHistoryPaletteController::begin() {
  model_.beginLoading(now());
  scan();
  tick();
}

void VibeHistoryPaletteController::scan() {
  scan_ = Job::start();
  const auto work = [scanner = services_.scanner, settings = services_.settings.value()](const std::stop_token& stop) {
    return scanned(scanner.recentSessions(kSessionLimit, settings.includeClaude, settings.includeCodex, stop));
  };
  runInBackground(scan_, work,
                  [this](Scanned found) { model_.finishLoading(std::move(found.sessions), std::move(found.gone)); });
}

void VibeHistoryPaletteController::tick() {
  ticking_ = Job::start();
  services_.clock.after(kTick, ticking_, [this] {
    model_.setNow(now());
    tick();
  });
}

void VibeHistoryPaletteController::followSelection() {
  const VibeSession* session = model_.selectedSession();
  const std::string transcript = session && isShown() ? session->transcript : std::string();
  if (transcript == previewed_) return;
  previewed_ = transcript;
  preview_ = {};
  previewing_ = Job();
  Q_EMIT previewChanged();
  if (transcript.empty()) return;
  previewing_ = Job::start();
  runInBackground(
      previewing_, [copy = *session](const std::stop_token&) { return readPreview(copy); },
      [this](SessionPreview preview) {
        preview_ = std::move(preview);
        Q_EMIT previewChanged();
      });
}

void VibeHistoryPaletteController::ended() {
  scan_ = Job();
  ticking_ = Job();
  followSelection();
}

bool VibeHistoryPaletteController::handleOwnKey(const KeyPress& key) {
  if (!key.command || key.charactersIgnoringModifiers.toLower() != "c"_L1) return false;
  copySelected();
  return true;
}

void VibeHistoryPaletteController::chooseSelected(const KeyPress& key) {
  if (const VibeSession* session = model_.selectedSession()) insert(*session, key.command);
}

void VibeHistoryPaletteController::insert(const VibeSession& session, bool pressReturn) {
  const QString command = session.resumeCommand();
  hide();
  services_.clock.after(kTypingDelay, typing_,
                        [this, command, pressReturn] { services_.typer.type(command, pressReturn); });
}

void VibeHistoryPaletteController::copySelected() {
  const VibeSession* session = model_.selectedSession();
  if (!session) return;
  services_.pasteboard.writeText(session->resumeCommand());
  hide();
  services_.toasts.show({.icon = u"doc.on.clipboard.fill"_s, .title = u"Resume command copied"_s}, kCopiedToast);
}

QDateTime VibeHistoryPaletteController::now() const {
  using std::chrono::milliseconds;
  return QDateTime::fromMSecsSinceEpoch(std::chrono::duration_cast<milliseconds>(services_.clock.now()).count());
}
