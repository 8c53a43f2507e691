#include "tools/file_drop/file_drop_settings_view.h"

#include <QVBoxLayout>

#include "base/visible_text.h"
#include "core/ui/check_control.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"
#include "platform/system_info.h"
#include "tools/file_drop/bulk_upload_client.h"

using namespace Qt::StringLiterals;

namespace {

/// Of what the service says.
constexpr qsizetype kShown = 300;

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
  auto* button = new CheckControl(
      u"Connection"_s, [this](const JobRef& job, const auto& done) { test(job, done); }, u"Test Connection"_s);
  auto* section = new SettingsSection;
  button->setRemark(section->addRow(u"Connection"_s, u"Uploads a small text file."_s, button));
  return section;
}

void FileDropSettingsView::test(const JobRef& job, const std::function<void(std::expected<QString, QString>)>& done) {
  client_.testConnection(job, [done](const BulkUploadClient::Outcome& link) {
    if (link)
      done(link->toString(QUrl::FullyEncoded));
    else
      done(std::unexpected(visibleLine(link.error().description(), kShown)));
  });
}
