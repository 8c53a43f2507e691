#pragma once

#include <QObject>
#include <QString>

#include <functional>

#include "core/hotkeys/hotkey.h"

class HotkeyCenter;
class Sounds;

/// Records a new combination for one tool. While it records, the tools' own combinations are paused, so that pressing
/// one of them reaches the recorder; they resume however the recording ends. Main thread only.
class HotkeyRecorderModel : public QObject {
  Q_OBJECT

 public:
  struct Services {
    HotkeyCenter& hotkeys;
    Sounds& sounds;
    std::function<QString(const QString& toolID)> toolName;
  };

  HotkeyRecorderModel(Services services, QString toolID);
  ~HotkeyRecorderModel() override;

  bool isRecording() const { return recording_; }
  bool hasBinding() const;
  /// The button's text: the binding, "Record Shortcut" or "Press shortcut…".
  QString text() const;
  /// Why the last combination was not taken; empty when there is nothing to say.
  const QString& hint() const { return hint_; }

  void start();
  /// Ends without a change.
  void cancel();
  /// Removes the tool's shortcut.
  void clear();
  /// A key-down while recording: takes the combination, or says why not and goes on.
  void record(const Hotkey& pressed);

 Q_SIGNALS:
  void changed();

 private:
  void refuse(const QString& hint);

  Services services_;
  QString toolID_;
  QString hint_;
  bool recording_ = false;
};
