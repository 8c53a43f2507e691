#include <QTest>

#include "capture/png_encoding.h"

namespace {

/// Rows that no compression or filter keeps by accident.
QImage noise(QImage::Format format) {
  QImage image(67, 43, QImage::Format_RGB32);
  quint32 state = 1;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) image.setPixel(x, y, (state = state * 1664525 + 1013904223));
  return image.convertToFormat(format);
}

}  // namespace

class PNGEncodingTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  /// The fourth byte of a screen's pixels is whatever the server left there.
  void paddingIsNoTransparency_data() {
    QTest::addColumn<QImage::Format>("format");
    QTest::newRow("red first") << QImage::Format_RGBX8888;
    QTest::newRow("blue first") << QImage::Format_RGB32;
  }

  void paddingIsNoTransparency() {
    QFETCH(QImage::Format, format);
    QImage screen = noise(format);
    for (qsizetype i = 3; i < screen.sizeInBytes(); i += 4) screen.bits()[i] = static_cast<uchar>(i);
    const QImage read = QImage::fromData(pngOf(screen), "png");
    QVERIFY(!read.hasAlphaChannel());
    QCOMPARE(read.convertToFormat(QImage::Format_RGB32), noise(QImage::Format_RGB32));
  }

  void deepColoursKeepTheirUpperBits() {
    const QImage screen = noise(QImage::Format_RGB30);
    const QImage read = QImage::fromData(pngOf(screen), "png");
    QVERIFY(!read.hasAlphaChannel());
    QCOMPARE(read.convertToFormat(QImage::Format_RGB32), screen.convertToFormat(QImage::Format_RGB32));
  }

  void nothingBecomesNothing() { QVERIFY(pngOf(QImage()).isEmpty()); }
};

QTEST_APPLESS_MAIN(PNGEncodingTest)
#include "test_png_encoding.moc"
