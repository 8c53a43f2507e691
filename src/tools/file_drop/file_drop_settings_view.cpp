#include "tools/file_drop/file_drop_settings_view.h"

#include <QVBoxLayout>

#include "core/ui/connection_test.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"
#include "platform/system_info.h"
#include "tools/file_drop/bulk_upload_client.h"

using namespace Qt::StringLiterals;

namespace {

QStringList notes(const SystemInfo& system) {
  return {
      u"Press the shortcut — a drop window floats up (and stays up while you drag from %1)."_s.arg(
          system.fileManager()),
      u"Drop a single file of any kind and it uploads as-is. Drop multiple files or a folder and they're bundled into one zip."_s,
      u"Either way, the link lands on your clipboard — paste it to any LLM."_s,
      u"Up to 256 MB per upload. Links expire automatically after 90 days."_s,
      u"Files only leave %1 when you click Upload — never on drop."_s.arg(system.thisComputer())};
}

}  // namespace

FileDropSettingsView::FileDropSettingsView(BulkUploadClient& client, const SystemInfo& system, QWidget* parent)
    : QWidget(parent), client_(client) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(Theme::kGrid);
  addHowItWorks(*column, notes(system));
  QLabel* heading = makeHeading(u"Link"_s);
  heading->setContentsMargins(0, Theme::kGrid, 0, 0);
  column->addWidget(heading);
  column->addWidget(makeTest());
  column->addStretch(1);
}

QWidget* FileDropSettingsView::makeTest() {
  const auto run = [this](const JobRef& job, const CheckControl::Done& done) {
    const auto address = [](const QUrl& link) { return link.toString(QUrl::FullyEncoded); };
    client_.testConnection(job, tellingTest(done, address));
  };
  return makeConnectionTest(u"Connection"_s, u"Uploads a small text file."_s, run);
}
