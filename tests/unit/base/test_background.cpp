#include <QSemaphore>
#include <QTest>
#include <QThread>

#include <atomic>

#include "base/background.h"

class TestBackground : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void worksElsewhereAndAnswersHere() {
    const Job job = Job::start();
    const QThread* worker = nullptr;
    runInBackground(
        job, [](const std::stop_token&) { return static_cast<const QThread*>(QThread::currentThread()); },
        [&](const QThread* thread) {
          QCOMPARE(QThread::currentThread(), thread_);
          worker = thread;
        });
    QTRY_VERIFY(worker);
    QVERIFY(worker != thread_);
  }

  void aCancelledRunIsToldToStopAndDoesNotAnswer() {
    Job job = Job::start();
    QSemaphore cancelled;
    std::atomic_bool wasStopped = false;
    bool hasAnswered = false;
    runInBackground(
        job,
        [&](const std::stop_token& stop) {
          cancelled.acquire();
          return wasStopped.exchange(stop.stop_requested());
        },
        [&](bool) { hasAnswered = true; });
    job.cancel();
    cancelled.release();
    QVERIFY(QThreadPool::globalInstance()->waitForDone(5000));
    QCoreApplication::processEvents();
    QVERIFY(wasStopped && !hasAnswered);
  }

  void nothingRunsWithoutARun() {
    bool ran = false;
    runInBackground(Job(), [&](const std::stop_token&) { return ran = true; }, [](bool) {});
    QVERIFY(QThreadPool::globalInstance()->waitForDone(5000));
    QVERIFY(!ran);
  }

 private:
  QThread* thread_ = QThread::currentThread();
};

QTEST_GUILESS_MAIN(TestBackground)
#include "test_background.moc"
