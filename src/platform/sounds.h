#pragma once

/// The system's named sounds. Main thread only.
class Sounds {
 public:
  virtual ~Sounds() = default;

  /// The sound of a finished task: "Glass" on macOS, "complete" of the freedesktop theme elsewhere. Returns at once.
  virtual void playCompletion() = 0;
  /// The system's alert sound.
  virtual void beep() = 0;
};
