#include "support/gallery/toasts.h"

#include <QPainter>
#include <QTemporaryDir>

#include "core/ui/theme.h"
#include "core/ui/toast/toast_panel.h"
#include "core/ui/toast/toast_view.h"
#include "support/fake_clock.h"
#include "support/fake_panel_window.h"
#include "support/fake_platform.h"
#include "support/fake_toast_surface.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QImage sampleImage() {
  QImage image(320, 200, QImage::Format_RGB32);
  QPainter painter(&image);
  QLinearGradient dusk(0, 0, 0, 200);
  dusk.setColorAt(0, QColor(0x44507E));
  dusk.setColorAt(1, QColor(0xF2A65A));
  painter.fillRect(image.rect(), dusk);
  painter.setBrush(QColor(0xFFE3B0));
  painter.setPen(Qt::NoPen);
  painter.drawEllipse(QPoint(160, 130), 34, 34);
  return image;
}

std::vector<ToastContent> samples(const Theme& theme) {
  return {
      {.icon = u"wifi.slash"_s,
       .title = u"Image to URL needs the internet"_s,
       .detail = u"You're offline — it re-enables the moment the connection returns."_s},
      {.title = u"Uploading image…"_s, .detail = u"screenshot.png, 1.2 MB"_s, .showsSpinner = true},
      {.icon = u"checkmark.circle.fill"_s,
       .iconColor = theme.success,
       .title = u"Link copied to clipboard"_s,
       .detail = u"https://example.org/i/9f8a3c"_s,
       .detailMonospaced = true,
       .completes = true,
       .thumbnail = sampleImage()},
      {.icon = u"xmark.octagon.fill"_s,
       .iconColor = theme.failure,
       .title = u"Image to URL failed"_s,
       .detail = u"The service answered 502: upstream connect error or disconnect/reset before headers; the "
                 "connection was refused and nothing was uploaded."_s},
      {.icon = u"terminal.fill"_s,
       .iconColor = theme.accent,
       .title = u"Frequent CLIs is ready"_s,
       .detail = u"Saved commands are one shortcut away."_s,
       .keys = {u"⌃"_s, u"⌥"_s, u"↩"_s},
       .keysPrefix = u"Press"_s},
      {.icon = u"lock.shield"_s,
       .iconColor = QColor(Qt::white),
       .title = u"Accessibility permission needed"_s,
       .detail = u"Enable Vantle in System Settings → Privacy & Security → Accessibility."_s,
       .tall = true},
      {.assetIcon = u"vantle"_s, .title = u"Vantle is running"_s},
      {.icon = u"doc.on.clipboard"_s,
       .title = u"Resume command copied"_s,
       .detail = u"cd ~/code/vantle && claude --resume 0b4c1c9e-55bd-4a5e-9a43-2f4f3f6ab7d1"_s,
       .detailLineLimit = 1,
       .detailMonospaced = true,
       .tall = true},
  };
}

/// The world of one toast.
struct Stage {
  explicit Stage(const ToastContent& content, QWidget* parent)
      : controller([](ToastController&) { return std::make_unique<FakeToastSurface>(); }, preferences, sounds, clock),
        view(new ToastView(controller, native, clock)) {
    view->setParent(parent);
    view->resize(ToastPanel::kSize);
    controller.show(content, content.showsSpinner ? 120s : 8s);
    clock.advance(2500ms);
  }

  QTemporaryDir folder;
  AppPreferences preferences{folder.filePath(u"app-settings.json"_s)};
  FakeSounds sounds;
  FakeClock clock;
  FakePanelWindow native;
  ToastController controller;
  ToastView* view;
};

class Sheet : public QWidget {
 public:
  Sheet() {
    const auto contents = samples(themeOf(*this));
    resize(2 * ToastPanel::kSize.width(), static_cast<int>(contents.size() + 1) / 2 * kStep + 32);
    int index = 0;
    for (const ToastContent& content : contents) {
      stages_.push_back(std::make_unique<Stage>(content, this));
      stages_.back()->view->move(index % 2 * ToastPanel::kSize.width(), index / 2 * kStep);
      ++index;
    }
  }

 protected:
  void paintEvent(QPaintEvent*) override { paintDesktop(*this); }

 private:
  static constexpr int kStep = 120;
  std::vector<std::unique_ptr<Stage>> stages_;
};

}  // namespace

Piece toasts() { return {u"toasts"_s, std::make_unique<Sheet>()}; }
