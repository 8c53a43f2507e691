#pragma once

#include <QWidget>

#include <memory>

#include "core/hotkeys/hotkey_recorder_model.h"

class QLabel;
class QPushButton;
class QToolButton;

/// The control with which a shortcut is recorded: a button that takes the next combination, and a cross that removes
/// it.
class HotkeyRecorderView : public QWidget {
  Q_OBJECT

 public:
  /// `name`: whose shortcut it is, for screen readers.
  HotkeyRecorderView(HotkeyRecorderModel::Services services, const QString& toolID, const QString& name,
                     QWidget* parent = nullptr);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void follow();
  bool handleRecordingEvent(QEvent& event);

  HotkeyRecorderModel model_;
  QString name_;
  QPushButton* button_;
  QToolButton* clear_;
  QLabel* hint_;
};
