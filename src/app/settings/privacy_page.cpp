#include <QDesktopServices>
#include <QDir>
#include <QPushButton>
#include <QUrl>

#include "app/settings/delete_data_row.h"
#include "app/settings/export_control.h"
#include "app/settings/pages.h"
#include "app/settings/tool_disclosure_view.h"
#include "app/settings/usage_preview.h"
#include "core/ui/settings_form.h"
#include "core/ui/store_switch.h"

using namespace Qt::StringLiterals;

namespace {

void addUsage(SettingsPage& page, AppContext& context) {
  SettingsSection* usage = page.addSection(u"Usage statistics"_s);
  usage->addRow(
      u"Share anonymous usage statistics"_s,
      u"Helps decide which tools to improve. Sends only which tools you open and an anonymous install id — no "
      u"account, no personal data, no image or text content. Never on when you're offline."_s,
      makeStoreSwitch(context.preferences, &Preferences::shareUsageStats, u"Share anonymous usage statistics"_s));
  usage->addWide(makeUsagePreview(context.analytics));
}

/// Who is asked for newer versions without a key press, if anybody is.
void addUpdates(SettingsPage& page, const UpdateSource& source, const Updater& updater) {
  if (!source.serves(updater)) return;
  page.addNote(
      u"At its start and once a day Vantle asks %1 whether there is a newer version, and downloads it. Nothing of "
      u"yours goes with that."_s.arg(source.folder.host()));
}

void addTools(SettingsPage& page, const SystemInfo& system) {
  SettingsSection* tools = page.addSection(u"What each tool sends"_s);
  addToolDisclosures(*tools, system);
  page.addNote(
      u"Nothing else of yours leaves %1, and nothing before you press a shortcut or a button. Which service that "
      u"goes to stands in General; a credential that you entered there goes with it."_s.arg(system.thisComputer()));
}

void addData(SettingsPage& page, AppContext& context) {
  SettingsSection* data = page.addSection(u"Your data"_s);
  const QString folder = context.folders.vantle();
  auto* opener = new QPushButton(u"Open Data Folder"_s);
  QObject::connect(opener, &QPushButton::clicked, opener,
                   [folder] { QDesktopServices::openUrl(QUrl::fromLocalFile(folder)); });
  data->addRow(u"Where it is"_s, QDir::toNativeSeparators(folder), opener);
  opener->setAccessibleName(opener->text());
  auto* exporting = new ExportControl(context.folders, context.clock);
  exporting->setRemark(
      data->addRow(u"Export"_s, u"A copy of everything but credentials, in a folder that you choose."_s, exporting));
  data->addWide(new DeleteDataRow(context.eraser));
}

}  // namespace

QWidget* makePrivacyPage(AppContext& context, SettingsSelection&) {
  auto* page = new SettingsPage;
  addUsage(*page, context);
  addData(*page, context);
  addTools(*page, *context.platform.systemInfo);
  addUpdates(*page, context.updateSource, *context.platform.updater);
  return page;
}
