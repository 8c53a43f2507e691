#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <functional>
#include <memory>

#include "platform/key_target.h"
#include "platform/x11/x11_raw_input.h"

/// Sees the key at the device, so that nobody has to give it away. Main thread only.
class X11EscapeWatch final : public EscapeWatch, private QAbstractNativeEventFilter {
 public:
  /// Presses while `isIgnored` do not count.
  X11EscapeWatch(const X11Session& session, std::shared_ptr<X11RawInput> rawInput, std::function<bool()> isIgnored,
                 std::function<void()> pressed);

 private:
  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

  X11Session session_;
  std::shared_ptr<X11RawInput> rawInput_;
  std::shared_ptr<void> keyPresses_;
  std::function<bool()> isIgnored_;
  std::function<void()> pressed_;
  xcb_keycode_t escape_;
  QObject context_;
};
