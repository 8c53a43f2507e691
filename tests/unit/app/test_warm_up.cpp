#include <QTest>

#include <memory>

#include "app/warm_up.h"
#include "support/fake_clock.h"

using namespace std::chrono_literals;

class TestWarmUp : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void stepsLeaveRoomForKeysAndEndWithTheProgram() {
    FakeClock clock;
    QList<int> made;
    auto warmUp = std::make_unique<WarmUp>(clock);
    warmUp->begin({[&] { made.append(1); }, [&] { made.append(2); }, [&] { made.append(3); }});
    clock.advance(399ms);
    QVERIFY(made.isEmpty());
    clock.advance(1ms);
    QCOMPARE(made, QList({1}));
    clock.advance(10ms);
    QCOMPARE(made, QList({1, 2}));
    warmUp.reset();
    clock.advance(1s);
    QCOMPARE(made, QList({1, 2}));
  }
};

QTEST_GUILESS_MAIN(TestWarmUp)
#include "test_warm_up.moc"
