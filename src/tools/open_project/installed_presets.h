#pragma once

#include <QObject>

#include <set>
#include <vector>

#include "base/job.h"
#include "tools/open_project/launch_preset.h"

/// Which presets' programs the user's login shell finds, asked for in the background. Until an answer is there, all of
/// them count as installed. Main thread only.
class InstalledPresets final : public QObject {
  Q_OBJECT

 public:
  InstalledPresets(std::vector<LaunchPreset> presets, QString shell)
      : presets_(std::move(presets)), shell_(std::move(shell)) {}

  const std::vector<LaunchPreset>& presets() const { return presets_; }
  /// Whether an answer has come.
  bool isKnown() const { return isKnown_; }
  bool isInstalled(const QString& name) const { return !missing_.contains(name); }
  /// Asks anew; nothing happens while an answer is awaited.
  void look();

 Q_SIGNALS:
  void changed();

 private:
  void read(const QByteArray& output);

  std::vector<LaunchPreset> presets_;
  QString shell_;
  bool isKnown_ = false;
  std::set<QString> missing_;
  Job job_;
};
