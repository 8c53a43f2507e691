#pragma once

#include <QString>

#include <cstdint>
#include <expected>
#include <functional>

/// Why the system did not give a combination away. `taken`: another program holds it.
struct HotkeyRefusal {
  enum class Reason { taken, noSuchKey, unavailable };
  Reason reason = Reason::unavailable;

  QString description() const;
};

/// What a combination is for: a name that never changes, and what people call it.
struct HotkeyPurpose {
  QString id;
  QString name;
};

/// System-wide key combinations. Main thread only.
class HotkeyBackend {
 public:
  using Pressed = std::function<void(std::uint32_t id)>;
  using Describe = std::function<HotkeyPurpose(std::uint32_t keyCode, std::uint32_t carbonModifiers)>;

  virtual ~HotkeyBackend() = default;

  /// Installs the handler, once. `pressed` is called on the main thread, never from inside the system's own callback.
  virtual void install(Pressed pressed) = 0;
  /// Takes a macOS virtual key code with a Carbon modifier mask for `id`; ids are never used twice.
  virtual std::expected<void, HotkeyRefusal> registerHotkey(std::uint32_t id, std::uint32_t keyCode,
                                                            std::uint32_t carbonModifiers) = 0;
  /// Gives the combination of `id` back; an unknown id is ignored.
  virtual void unregisterHotkey(std::uint32_t id) = 0;
  /// Who knows what a combination is for, told before any is registered; systems that show a list of them ask.
  virtual void describeBy([[maybe_unused]] const Describe& describe) {}
  /// What the user has to press instead, in the system's words, where the system decides that; empty: as registered.
  virtual QString systemTrigger([[maybe_unused]] std::uint32_t keyCode,
                                [[maybe_unused]] std::uint32_t carbonModifiers) const {
    return {};
  }
  /// Calls `changed` whenever `systemTrigger` has something else to say, or a combination that was refused may be given
  /// now.
  virtual void watchTriggers([[maybe_unused]] const std::function<void()>& changed) {}
};
