// Lets the user pick a rectangle of the screen, as a tool of the application would, and writes it as PPM:
//   select_region [--dark] [--toast] LABEL ICON FILE
// Says "selecting" and the milliseconds since the beginning when the overlays stand on every screen. Ends with 0 when
// there is a picture, with 1 when there is none.

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QImage>
#include <QTextStream>
#include <QTimer>
#include <QWindow>

#include "capture/region_selection_controller.h"
#include "capture/selection_overlay_panel.h"
#include "core/ui/theme.h"
#include "core/ui/theme_palette.h"
#include "platform/platform.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A white panel of ours in the place of a toast.
class WhiteToast final : public ToastPresenter {
 public:
  explicit WhiteToast(PanelWindow& native) : panel_(nullptr, native.windowFlags(PanelKind::toast)), native_(native) {
    panel_.setGeometry(300, 200, 600, 300);
    panel_.setPalette(Qt::white);
  }
  void show() {
    panel_.winId();
    native_.prepare(*panel_.windowHandle(), PanelKind::toast);
    panel_.show();
  }
  bool isExposed() const { return panel_.windowHandle() && panel_.windowHandle()->isExposed(); }
  void show(ToastContent, std::chrono::milliseconds) override { show(); }
  void dismiss(bool) override { panel_.hide(); }

 private:
  QWidget panel_;
  PanelWindow& native_;
};

bool isEveryScreenCovered() {
  const auto windows = QApplication::topLevelWidgets();
  const auto covered = std::ranges::count_if(windows, [](const QWidget* widget) {
    const bool isOverlay = qobject_cast<const SelectionOverlayPanel*>(widget) != nullptr;
    return isOverlay && widget->windowHandle() && widget->windowHandle()->isExposed();
  });
  return covered == QGuiApplication::screens().size();
}

int write(const std::optional<QByteArray>& png, const QString& path) {
  if (!png) return 1;
  return QImage::fromData(*png, "png").save(path, "ppm") ? 0 : 2;
}

}  // namespace

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  QCommandLineParser parser;
  parser.addOptions({{u"dark"_s, u"as on a dark desktop"_s}, {u"toast"_s, u"a panel of ours is up before"_s}});
  parser.process(app);
  const QStringList arguments = parser.positionalArguments();
  if (arguments.size() != 3) return 2;
  QApplication::setPalette(themePalette(parser.isSet(u"dark"_s) ? Theme::darkTheme() : Theme::light()));

  const Platform platform = makePlatform();
  WhiteToast toast(*platform.panelWindow);
  RegionSelectionController regions(*platform.screenGrabber, toast, [&](SelectionOverlay::Request request) {
    return std::make_unique<SelectionOverlayPanel>(std::move(request), *platform.panelWindow, *platform.systemInfo);
  });
  QElapsedTimer sinceBegin;
  QTimer watch;
  const auto begin = [&] {
    sinceBegin.start();
    regions.begin(arguments[0], arguments[1],
                  [&](const std::optional<QByteArray>& png) { QCoreApplication::exit(write(png, arguments[2])); });
  };
  if (parser.isSet(u"toast"_s)) toast.show();
  QObject::connect(&watch, &QTimer::timeout, &app, [&] {
    if (!sinceBegin.isValid() && (!parser.isSet(u"toast"_s) || toast.isExposed())) begin();
    if (!isEveryScreenCovered()) return;
    QTextStream(stdout) << "selecting " << sinceBegin.elapsed() << Qt::endl;
    watch.stop();
  });
  watch.start(1ms);
  return QCoreApplication::exec();
}
