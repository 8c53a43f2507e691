#pragma once

#include <QCoreApplication>
#include <QMetaObject>
#include <QThreadPool>

#include <utility>

#include "base/job.h"

/// Runs `work(stop token)` on a thread of the pool (the program's own, unless the work waits for others) and hands its
/// result to `done` on the main thread, unless the Job has ended by then. Called on the main thread; what `work`
/// touches must not be touched elsewhere meanwhile.
template <class Work, class Done>
void runInBackground(const JobRef& job, Work work, Done done, QThreadPool& pool = *QThreadPool::globalInstance()) {
  if (!job.isRunning()) return;
  pool.start([token = job.stopToken(), work = std::move(work), done = job.bind(std::move(done))] {
    const auto answer = [done, result = work(token)]() mutable { done(std::move(result)); };
    QMetaObject::invokeMethod(QCoreApplication::instance(), answer, Qt::QueuedConnection);
  });
}
