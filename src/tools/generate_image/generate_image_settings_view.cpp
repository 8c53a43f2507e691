#include "tools/generate_image/generate_image_settings_view.h"

#include <QComboBox>
#include <QVBoxLayout>

#include <array>

#include "base/byte_count.h"
#include "core/ui/connection_test.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"
#include "platform/system_info.h"
#include "tools/generate_image/generate_image_client.h"
#include "tools/generate_image/image_history.h"

using namespace Qt::StringLiterals;

namespace {

/// In megabytes.
constexpr std::array kRooms = {100, 500, 2'000, 10'000};

QStringList notes(const SystemInfo& system) {
  return {u"Your prompt and your images only leave %1 when you generate — nothing is sent while you type."_s.arg(
              system.thisComputer()),
          u"Press the shortcut anywhere — a panel floats up without stealing your window."_s,
          u"Describe an image, add snips or files as references, and generate. It's made by Orrin's AI service."_s,
          u"Or draw a box on screen with “Edit a Snip” and say what should change."_s,
          u"Copy the result, save it, or drag it out of the panel."_s};
}

QLabel* spaced(QLabel* heading) {
  heading->setContentsMargins(0, Theme::kGrid, 0, 0);
  return heading;
}

QString roomText(int megabytes) { return byteCountText(qint64{megabytes} * 1'000'000); }

}  // namespace

GenerateImageSettingsView::GenerateImageSettingsView(Services services, QWidget* removal, QWidget* parent)
    : QWidget(parent), services_(services), room_(new QComboBox), removal_(removal) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(Theme::kGrid);
  addHowItWorks(*column, notes(services_.system));
  column->addWidget(spaced(makeHeading(u"History"_s)));
  column->addWidget(makeHistory(removal));
  column->addWidget(spaced(makeHeading(u"Service"_s)));
  column->addWidget(makeConnection());
  column->addStretch(1);
  connect(&services_.settings, &StoreBase::changed, this, &GenerateImageSettingsView::follow);
  connect(&services_.history, &ImageHistory::changed, this, &GenerateImageSettingsView::follow);
  services_.history.load();
  follow();
}

QWidget* GenerateImageSettingsView::makeHistory(QWidget* removal) {
  for (const int megabytes : kRooms) room_->addItem(roomText(megabytes), megabytes);
  connect(room_, &QComboBox::activated, this, [this] {
    const int megabytes = room_->currentData().toInt();
    services_.settings.update([=](GenerateImageSettings& settings) { settings.historyMegabytes = megabytes; });
    services_.history.setLimit(services_.settings.value().historyLimit());
  });
  auto* section = new SettingsSection;
  section->addRow(u"Room on the disk"_s, u"When it is used up, the oldest images are deleted for good."_s, room_);
  used_ = section->addRow(
      u"Kept images"_s,
      u"Every image, its prompt and the images that went with it stay on %1."_s.arg(services_.system.thisComputer()),
      removal);
  return section;
}

QWidget* GenerateImageSettingsView::makeConnection() {
  const auto run = [this](const JobRef& job, const CheckControl::Done& done) {
    const auto measures = [](const GeneratedImage& image) {
      return u"An image of %1 × %2 pixels"_s.arg(image.size.width()).arg(image.size.height());
    };
    services_.client.generate({u"A plain blue circle on white"_s, {ImageSize::square, ImageQuality::low}, false, {}},
                              job, tellingTest(done, measures));
  };
  return makeConnectionTest(
      u"Generate Image"_s,
      u"Generates one square image at low quality, which costs what such an image costs. It is not kept."_s, run);
}

void GenerateImageSettingsView::follow() {
  const int megabytes = services_.settings.value().historyMegabytes;
  // A room that a file names and no row has.
  if (room_->findData(megabytes) < 0) room_->addItem(roomText(megabytes), megabytes);
  room_->setCurrentIndex(room_->findData(megabytes));
  const auto count = services_.history.entries().size();
  const QString size = byteCountText(services_.history.totalBytes());
  used_->showHint(count == 0   ? u"None."_s
                  : count == 1 ? u"1 image, %1."_s.arg(size)
                               : u"%1 images, %2."_s.arg(count).arg(size));
  removal_->setEnabled(count > 0);
}
