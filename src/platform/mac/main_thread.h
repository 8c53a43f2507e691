#pragma once

#include <QObject>

#include <utility>

namespace mac {

/// Runs `call` on the main thread, on a later turn of its event loop, while `scope` lives.
template <class Call>
void onMainThread(QObject& scope, Call call) {
  QMetaObject::invokeMethod(&scope, std::move(call), Qt::QueuedConnection);
}

}  // namespace mac
