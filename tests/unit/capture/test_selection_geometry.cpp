#include <QTest>

#include <limits>

#include "capture/selection_geometry.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QSizeF kView(1000, 600);
constexpr QSizeF kPill(120, 32);
constexpr QSizeF kText(68, 15);

}  // namespace

class SelectionGeometryTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aDragInAnyDirectionSpansTheSameRectangle() {
    const QRectF expected(10, 20, 30, 40);
    QCOMPARE(spannedRect({10, 20}, {40, 60}), expected);
    QCOMPARE(spannedRect({40, 60}, {10, 20}), expected);
    QCOMPARE(spannedRect({40, 20}, {10, 60}), expected);
  }

  void bothSidesMustBeLongerThanFour() {
    QVERIFY(isLargeEnough({4.5, 5}));
    QVERIFY(!isLargeEnough({4, 200}));
    QVERIFY(!isLargeEnough({3, 200}));
    QVERIFY(!isLargeEnough({200, 4}));
  }

  void theLastPixelsOfAViewCanBeSelected_data() {
    QTest::addColumn<double>("scale");
    for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0}) QTest::addRow("%g", scale) << scale;
  }

  void theLastPixelsOfAViewCanBeSelected() {
    QFETCH(double, scale);
    const auto pixel = [scale](int x, int y) { return QPointF(x, y) / scale; };
    const QSizeF view = QSizeF(1920, 1080) / scale;
    const QPointF last = withinView(pixel(1919, 1079), view, scale);
    QCOMPARE(pixelRect(spannedRect({0, 0}, last), scale), QRect(0, 0, 1920, 1080));
    QCOMPARE(withinView(pixel(1918, 500), view, scale), pixel(1918, 500));
    // The mouse is kept while a button is down, so it can be far outside.
    QCOMPARE(withinView({-300, 5000}, view, scale), QPointF(0, view.height()));
  }

  void pixelsArePointsTimesTheScale() {
    QCOMPARE(pixelRect({0, 0, 100, 50}, 2), QRect(0, 0, 200, 100));
    // 101 pixels at 1.25 are 80.8 points, which no double holds exactly.
    QCOMPARE(pixelRect({37 / 1.25, 11 / 1.25, 101 / 1.25, 7 / 1.25}, 1.25), QRect(37, 11, 101, 7));
  }

  void sizesThatAreNoPictureAreRefused() {
    const double infinite = std::numeric_limits<double>::infinity();
    const double none = std::numeric_limits<double>::quiet_NaN();
    QCOMPARE(pixelRect({0, 0, infinite, 10}, 1), std::nullopt);
    QCOMPARE(pixelRect({0, 0, none, 10}, 1), std::nullopt);
    QCOMPARE(pixelRect({none, 0, 10, 10}, 1), std::nullopt);
    QCOMPARE(pixelRect({0, 0, 10, 1e300}, 1e300), std::nullopt);
    QCOMPARE(pixelRect({0, 0, 3e9, 10}, 1), std::nullopt);
    QCOMPARE(pixelRect({0, 0, 10, -1}, 1), std::nullopt);
  }

  void areasAreInThePixelsOfTheirScreen() {
    // Left of the main screen and above it, at twice the scale.
    const QRect left(-1280, -200, 1280, 720);
    const auto area = screenArea({-1180, -150, 100, 50}, left, 2);
    QVERIFY(area);
    QCOMPARE(area->screen, left);
    QCOMPARE(area->points, QRectF(100, 50, 100, 50));
    QCOMPARE(area->pixels, QRect(200, 100, 200, 100));
    // What reaches over the edge belongs to another screen.
    QCOMPARE(screenArea({-50, 0, 500, 100}, left, 2)->pixels, QRect(2460, 400, 100, 200));
    QCOMPARE(screenArea(left, left, 2)->pixels, QRect(0, 0, 2560, 1440));
    QVERIFY(!screenArea({0, 0, 10, 10}, left, 2));
    QVERIFY(!screenArea({-10, 0, 0.1, 0.1}, left, 2));
  }

  void thePillStaysClearOfEveryEdge() {
    QCOMPARE(pillOrigin({100, 100}, kPill, kView), QPointF(118, 118));
    QCOMPARE(pillOrigin({990, 100}, kPill, kView), QPointF(1000 - 120 - 8, 118));
    QCOMPARE(pillOrigin({100, 595}, kPill, kView), QPointF(118, 600 - 32 - 8));
    QCOMPARE(pillOrigin({-40, -40}, kPill, kView), QPointF(8, 8));
    // A view too small for it shows its beginning.
    QCOMPARE(pillOrigin({10, 10}, kPill, {60, 20}), QPointF(8, 8));
  }

  void theSizeLabelIsAlwaysSeen_data() {
    QTest::addColumn<QRectF>("selection");
    QTest::addColumn<QPointF>("corner");
    // The box is 80 × 27.
    QTest::newRow("below") << QRectF(400, 100, 200, 100) << QPointF(460, 206);
    QTest::newRow("wider than the selection") << QRectF(400, 100, 20, 20) << QPointF(370, 126);
    QTest::newRow("just fits") << QRectF(400, 100, 200, 467) << QPointF(460, 573);
    QTest::newRow("above") << QRectF(400, 100, 200, 468) << QPointF(460, 67);
    QTest::newRow("inside, from top to bottom") << QRectF(400, 10, 200, 590) << QPointF(460, 567);
    QTest::newRow("at the left edge") << QRectF(0, 100, 20, 20) << QPointF(0, 126);
    QTest::newRow("at the right edge") << QRectF(990, 100, 10, 20) << QPointF(920, 126);
  }

  void theSizeLabelIsAlwaysSeen() {
    QFETCH(QRectF, selection);
    QFETCH(QPointF, corner);
    const QRectF box = sizeLabelBox(selection, kText, kView);
    QCOMPARE(box, QRectF(corner, QSizeF(80, 27)));
    QVERIFY(QRectF(QPointF(), kView).contains(box));
  }

  void theSizeIsTwoNumbersWithACross() { QCOMPARE(sizeText({3840, 2160}), u"3840 × 2160"_s); }
};

QTEST_APPLESS_MAIN(SelectionGeometryTest)
#include "test_selection_geometry.moc"
