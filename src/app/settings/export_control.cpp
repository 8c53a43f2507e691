#include "app/settings/export_control.h"

#include <QDateTime>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QPushButton>
#include <QStandardPaths>
#include <QUrl>

#include "base/background.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

/// More would not be read.
constexpr int kMostNames = 3;

QString named(const QStringList& paths) {
  const QString names = paths.mid(0, kMostNames).join(u", "_s);
  return paths.size() <= kMostNames ? names : u"%1 and %2 more"_s.arg(names).arg(paths.size() - kMostNames);
}

QString told(const ExportedData& exported) {
  const QString files = exported.files == 1 ? u"1 file is"_s : u"%1 files are"_s.arg(exported.files);
  QString text = u"%1 in %2."_s.arg(files, QDir::toNativeSeparators(exported.folder));
  if (!exported.leftOut.isEmpty()) text += u" Left out: "_s + named(exported.leftOut);
  return text;
}

}  // namespace

ExportControl::ExportControl(const Folders& folders, Clock& clock)
    : folders_(folders), clock_(clock), show_(new QPushButton(u"Show"_s)), export_(new QPushButton) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(Theme::kGrid);
  row->addWidget(show_);
  row->addWidget(export_);
  setFocusProxy(export_);
  show_->setAccessibleName(u"Show the exported copy"_s);
  connect(show_, &QPushButton::clicked, this, [this] { QDesktopServices::openUrl(QUrl::fromLocalFile(exported_)); });
  connect(export_, &QPushButton::clicked, this, &ExportControl::press);
  follow();
}

ExportControl::~ExportControl() { stop_.request_stop(); }

void ExportControl::press() {
  // A stopped copy still answers: it may have been whole a moment before.
  if (job_.isRunning())
    stop_.request_stop();
  else
    choose();
}

void ExportControl::choose() {
  if (!dialog_) {
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString start = QDir(documents).exists() ? documents : QDir::homePath();
    dialog_ = new QFileDialog(this, u"Export Vantle's data to"_s, start);
    dialog_->setFileMode(QFileDialog::Directory);
    dialog_->setOption(QFileDialog::ShowDirsOnly);
    dialog_->setLabelText(QFileDialog::Accept, u"Export"_s);
    dialog_->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog_, &QFileDialog::fileSelected, this, &ExportControl::start);
  }
  dialog_->show();
  dialog_->activateWindow();
}

void ExportControl::start(const QString& destination) {
  job_ = Job::start();
  stop_ = {};
  exported_.clear();
  remark_->showHint(u"Copying…"_s);
  follow();
  const auto now = static_cast<qint64>(clock_.now().count());
  const DataExport copy(folders_.vantle(), destination, QDateTime::fromSecsSinceEpoch(now).date());
  runInBackground(
      job_, [copy, stop = stop_.get_token()](const std::stop_token&) { return copy.run(stop); },
      [this](const std::expected<ExportedData, DataExportError>& exported) { finish(exported); });
}

void ExportControl::finish(const std::expected<ExportedData, DataExportError>& exported) {
  job_.cancel();
  if (exported) {
    exported_ = exported->folder;
    remark_->showHint(told(*exported));
  } else {
    remark_->showError(exported.error().description());
  }
  follow();
}

void ExportControl::follow() {
  export_->setText(job_.isRunning() ? u"Cancel"_s : u"Export…"_s);
  export_->setAccessibleName(job_.isRunning() ? u"Cancel the export"_s : export_->text());
  show_->setVisible(!exported_.isEmpty());
}
