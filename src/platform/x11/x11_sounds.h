#pragma once

#include <QThreadPool>

#include <memory>

#include "platform/sounds.h"
#include "platform/x11/x11_session.h"

struct ca_context;

/// Sounds of the freedesktop theme. Finding the sound server can take its time, so a thread of its own does that, which
/// ends when it has nothing to do; the connection is made at the first sound.
class X11Sounds final : public Sounds {
 public:
  explicit X11Sounds(const X11Session& session);
  ~X11Sounds() override;

  void playCompletion() override;
  /// The theme's bell; the X server's own one when there is no sound.
  void beep() override;

 private:
  struct Destroy {
    void operator()(ca_context* context) const;
  };

  bool play(const char* event);
  bool connect();

  X11Session session_;
  /// Only touched by the thread.
  std::unique_ptr<ca_context, Destroy> context_;
  QThreadPool thread_;
};
