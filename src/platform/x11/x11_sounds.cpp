#include "platform/x11/x11_sounds.h"

#include <canberra.h>

#include <QCoreApplication>

#include "base/logging.h"

namespace {

constexpr auto kCompletion = "complete";
constexpr auto kBell = "bell";
/// In milliseconds.
constexpr int kIdleBeforeThreadEnds = 2000;

}  // namespace

X11Sounds::X11Sounds(const X11Session& session) : session_(session) {
  thread_.setMaxThreadCount(1);
  thread_.setExpiryTimeout(kIdleBeforeThreadEnds);
}

X11Sounds::~X11Sounds() { thread_.waitForDone(); }

void X11Sounds::Destroy::operator()(ca_context* context) const { ca_context_destroy(context); }

void X11Sounds::playCompletion() {
  thread_.start([this] { play(kCompletion); });
}

void X11Sounds::beep() {
  thread_.start([this] {
    if (play(kBell)) return;
    xcb_bell(session_.connection, 0);
    xcb_flush(session_.connection);
  });
}

bool X11Sounds::play(const char* event) {
  const int result =
      connect() ? ca_context_play(context_.get(), 0, CA_PROP_EVENT_ID, event, nullptr) : CA_ERROR_DESTROYED;
  if (result == CA_SUCCESS) return true;
  qCDebug(lcPlatform) << "no sound" << event << ca_strerror(result);
  // A server that has gone does not come back on the same connection.
  context_.reset();
  return false;
}

bool X11Sounds::connect() {
  if (context_) return true;
  ca_context* context = nullptr;
  if (ca_context_create(&context) != CA_SUCCESS) return false;
  context_.reset(context);
  ca_context_change_props(context, CA_PROP_APPLICATION_NAME, "Vantle", nullptr);
  return true;
}
