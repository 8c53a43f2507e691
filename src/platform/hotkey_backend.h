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

/// System-wide key combinations. Main thread only.
class HotkeyBackend {
 public:
  using Pressed = std::function<void(std::uint32_t id)>;

  virtual ~HotkeyBackend() = default;

  /// Installs the handler, once. `pressed` is called on the main thread, never from inside the system's own callback.
  virtual void install(Pressed pressed) = 0;
  /// Takes a macOS virtual key code with a Carbon modifier mask for `id`; ids are never used twice.
  virtual std::expected<void, HotkeyRefusal> registerHotkey(std::uint32_t id, std::uint32_t keyCode,
                                                            std::uint32_t carbonModifiers) = 0;
  /// Gives the combination of `id` back; an unknown id is ignored.
  virtual void unregisterHotkey(std::uint32_t id) = 0;
};
