#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

/// Lets the user drag a rectangle on any screen. The caller has asked for the permission to read the screen before, and
/// has put its own panels away. Main thread only.
class RegionSelector {
 public:
  /// The rectangle as an opaque PNG of exactly its pixels; nothing when the user cancelled or the capture failed.
  using Completion = std::function<void(std::optional<QByteArray> png)>;

  virtual ~RegionSelector() = default;

  /// Starts a selection; `label` and `icon` (a symbol's name) follow the pointer until the drag begins. Calls
  /// `completion` exactly once, never from inside this call. One selection at a time: one that is still running ends
  /// with nothing.
  virtual void begin(const QString& label, const QString& icon, Completion completion) = 0;

  /// Asked in a completion: whether the user has turned to something else meanwhile, to another selection or to a
  /// window that took the keyboard. Panels that made room for the selection then stay away.
  virtual bool hasUserTurnedAway() const = 0;
};
