#include "platform/x11/x11_screen_image.h"

#include <QColor>
#include <QTest>

#include <array>

#include "support/x_client.h"

namespace {

const std::array kColors = {QColor(255, 0, 0), QColor(0, 255, 0), QColor(0, 0, 255), QColor(255, 255, 255),
                            QColor(0, 0, 0)};

const xcb_screen_t& screenOf(const XClient& client) {
  return *xcb_setup_roots_iterator(xcb_get_setup(client.connection())).data;
}

/// A full colour channel is all bits of its mask.
std::uint32_t pixel(const xcb_screen_t& screen, const QColor& color) {
  for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem > 0; xcb_depth_next(&depth))
    for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem > 0; xcb_visualtype_next(&visual))
      if (visual.data->visual_id == screen.root_visual)
        return (color.red() ? visual.data->red_mask : 0) | (color.green() ? visual.data->green_mask : 0) |
               (color.blue() ? visual.data->blue_mask : 0);
  return 0;
}

}  // namespace

/// Runs on servers of several depths, with shared memory and without.
class X11ScreenImageTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    for (std::size_t i = 0; i < kColors.size(); ++i) fill(kColors[i], static_cast<std::int16_t>(10 * i));
    user_.moveTo(20, 20);
  }

  void everyPixelIsInItsPlaceAndColour() {
    const auto image = x11ScreenImage({1, 2, 49, 7});
    QVERIFY(image);
    QCOMPARE(image->size(), QSize(49, 7));
    for (int x = 0; x < 49; ++x) QCOMPARE(image->pixelColor(x, x % 7), kColors[static_cast<std::size_t>((x + 1) / 10)]);
    QVERIFY(!image->hasAlphaChannel() || image->pixelColor(3, 3).alpha() == 255);
  }

  void whatLiesBesideTheScreenIsCutOff() {
    const auto image = x11ScreenImage({-5, -5, 10, 10});
    QVERIFY(image);
    QCOMPARE(image->size(), QSize(5, 5));
    QCOMPARE(image->pixelColor(4, 4), kColors[0]);
    QCOMPARE(x11ScreenImage({638, 478, 10, 10})->size(), QSize(2, 2));
    QVERIFY(!x11ScreenImage({640, 0, 10, 10}));
    QVERIFY(!x11ScreenImage({0, 0, 0, 10}));
  }

  void pixelsOutliveTheConnection() {
    QImage kept;
    {
      const auto image = x11ScreenImage({0, 0, 50, 20});
      kept = *image;
    }
    for (int i = 0; i < 20; ++i) QVERIFY(x11ScreenImage({0, 0, 640, 480}));
    QCOMPARE(kept.pixelColor(49, 19), kColors[4]);
  }

 private:
  void fill(const QColor& color, std::int16_t x) {
    xcb_connection_t* const connection = user_.connection();
    const xcb_gcontext_t context = xcb_generate_id(connection);
    const std::uint32_t values[] = {pixel(screenOf(user_), color), XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS};
    xcb_create_gc(connection, context, user_.root(), XCB_GC_FOREGROUND | XCB_GC_SUBWINDOW_MODE, values);
    const xcb_rectangle_t rectangle{x, 0, 10, 20};
    xcb_poly_fill_rectangle(connection, user_.root(), context, 1, &rectangle);
  }

  XClient user_;
};

QTEST_GUILESS_MAIN(X11ScreenImageTest)
#include "x11_screen_image_test.moc"
