#pragma once

#include <QObject>
#include <QUuid>

#include <optional>
#include <utility>

/// The command that the settings page shall select and focus next, handed over by whoever opens the settings. Main
/// thread only.
class FocusedCommand : public QObject {
  Q_OBJECT

 public:
  void set(const QUuid& id) {
    id_ = id;
    Q_EMIT changed();
  }
  /// The id, once.
  std::optional<QUuid> take() { return std::exchange(id_, std::nullopt); }

 Q_SIGNALS:
  void changed();

 private:
  std::optional<QUuid> id_;
};
