#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <memory>
#include <optional>
#include <vector>

#include "platform/hotkey_backend.h"
#include "platform/x11/x11_key_map.h"
#include "platform/x11/x11_session.h"

class X11RawInput;

/// Passive grabs on the root window, made on Qt's connection and seen by a native event filter. Main thread only.
/// Grabs follow changes of the keyboard layout.
class X11Hotkeys final : public HotkeyBackend, public QAbstractNativeEventFilter {
 public:
  X11Hotkeys(const X11Session& session, std::shared_ptr<X11RawInput> rawInput);
  ~X11Hotkeys() override;

  void install(Pressed pressed) override;
  std::expected<void, HotkeyRefusal> registerHotkey(std::uint32_t id, std::uint32_t keyCode,
                                                    std::uint32_t carbonModifiers) override;
  void unregisterHotkey(std::uint32_t id) override;

  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

 private:
  struct Grab {
    std::uint32_t id;
    std::uint32_t mac;
    std::uint16_t modifiers;
    xcb_keycode_t code;
    /// False when a change of the layout led to a combination that another program has.
    bool active = true;
  };
  struct Release {
    xcb_timestamp_t time;
    std::uint16_t modifiers;
    bool operator==(const Release&) const = default;
  };

  const X11KeyMap& keyMap();
  std::expected<void, HotkeyRefusal> take(const Grab& grab);
  void give(const Grab& grab);
  bool handlePress(const xcb_key_press_event_t& press);
  void thaw();
  void hold(xcb_keycode_t code);
  void forgetHeld();
  void seeRelease(const xcb_key_release_event_t& release);
  void awaitRawRelease(bool wanted);
  void queueKeyMapReading();
  void followKeyMap();

  X11Session session_;
  std::shared_ptr<X11RawInput> rawInput_;
  /// Presses are delivered from the event loop, for as long as this lives.
  QObject context_;
  Pressed pressed_;
  std::optional<X11KeyMap> keyMap_;
  std::vector<Grab> grabs_;
  /// The key of the last press, whose repetitions are not presses; 0 once it is surely up.
  xcb_keycode_t held_ = 0;
  /// The held key's last release, which may be part of its repetition.
  std::optional<Release> release_;
  bool keyMapReadingQueued_ = false;
};
