#include "tools/image_to_url/uplink_settings_view.h"

#include <QComboBox>
#include <QVBoxLayout>

#include "core/ui/connection_test.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

QStringList notes(const SystemInfo& system) {
  return {u"Images only leave %1 when you press the shortcut — never automatically."_s.arg(system.thisComputer()),
          u"Press the shortcut. The image is uploaded to Orrin's image service."_s,
          u"A shareable link lands on your clipboard — paste it straight into any LLM chat."_s,
          u"Links expire automatically after 90 days."_s};
}

}  // namespace

UplinkSettingsView::UplinkSettingsView(Services services, QWidget* parent)
    : QWidget(parent), services_(services), source_(new QComboBox), explanation_(makeDetailLabel({})) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(Theme::kGrid);
  column->addWidget(makeHeading(u"Image"_s));
  column->addWidget(makeSource());
  column->addWidget(explanation_);
  QLabel* heading = makeHeading(u"Link"_s);
  heading->setContentsMargins(0, Theme::kGrid, 0, 0);
  column->addWidget(heading);
  column->addWidget(makeTest());
  for (const QString& note : notes(services_.system)) column->addWidget(makeDetailLabel(note));
  column->addStretch(1);
  connect(&services_.settings, &StoreBase::changed, this, &UplinkSettingsView::follow);
  follow();
}

QWidget* UplinkSettingsView::makeSource() {
  source_->addItem(u"Clipboard"_s, rawValue(ImageSource::clipboard));
  source_->addItem(u"Live selection"_s, rawValue(ImageSource::liveSelection));
  connect(source_, &QComboBox::activated, this, [this] {
    const auto chosen = imageSource(source_->currentData().toString());
    services_.settings.update([chosen](UplinkSettings& settings) { settings.source = chosen.value(); });
  });
  auto* section = new SettingsSection;
  section->addRow(u"Source"_s, {}, source_);
  return section;
}

QWidget* UplinkSettingsView::makeTest() {
  const auto run = [this](const JobRef& job, const CheckControl::Done& done) {
    const auto address = [](const QUrl& link) { return link.toString(QUrl::FullyEncoded); };
    services_.uploader.upload(uplinkTestImage(), job, tellingTest(done, address));
  };
  return makeConnectionTest(u"Image to URL"_s, u"Uploads a picture of one pixel."_s, run);
}

void UplinkSettingsView::follow() {
  source_->setCurrentIndex(source_->findData(rawValue(services_.settings.value().source)));
  explanation_->setText(explanation());
}

QString UplinkSettingsView::explanation() const {
  if (services_.settings.value().source == ImageSource::clipboard)
    return u"Choose a source above — a copied image, or a region you draw on screen."_s;
  QString drag = u"Drag a region on screen; it's captured and uploaded."_s;
  if (!services_.permissions.hasSettingsPage(Permission::screenRecording)) return drag;
  return drag + u" Requires Screen Recording permission (%1 → Privacy)."_s.arg(services_.system.systemSettings());
}
