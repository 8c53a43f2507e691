#pragma once

#include <QCoreApplication>
#include <QStandardPaths>

#include "app/app_context.h"
#include "app/updates/automatic_updates.h"
#include "app/updates/update_notice.h"
#include "services/services.h"

/// The step of the launch that is about updates. Main thread only.
class Updates {
 public:
  Updates(AppContext& context, QSettings& defaults)
      : notice_(defaults, QCoreApplication::applicationVersion()),
        automatic_({context.services.http, *context.platform.updater, context.network, context.toasts, context.clock},
                   context.updateSource, notice_.running(),
                   QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + QStringLiteral("/Updates")) {}

  UpdateNotice& notice() { return notice_; }
  /// Has newer versions downloaded from now on. Whether one that was installed is to be announced, as `UpdateNotice`
  /// says.
  bool start(bool isBusy) {
    automatic_.start();
    return notice_.prepare(isBusy);
  }

 private:
  UpdateNotice notice_;
  AutomaticUpdates automatic_;
};
