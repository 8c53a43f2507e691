#pragma once

#include <QDBusVariant>
#include <QObject>

#include "platform/desktop_application.h"

/// The desktop portal's "color-scheme", asked for without waiting. A desktop without a portal never answers.
class X11DesktopApplication final : public QObject, public DesktopApplication {
  Q_OBJECT

 public:
  void watchAppearance(std::function<void(bool dark)> changed) override;

 private Q_SLOTS:
  void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

 private:
  void take(const QVariant& scheme);

  std::function<void(bool dark)> changed_;
};
