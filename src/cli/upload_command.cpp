#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <unistd.h>

#include <cmath>

#include "base/visible_text.h"
#include "cli/command_services.h"
#include "cli/options.h"
#include "platform/termination.h"
#include "tools/file_drop/bulk_upload_client.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kShown = 300;

/// One line on a terminal that says how far it is; nothing anywhere else.
class ProgressPrinter {
 public:
  explicit ProgressPrinter(QTextStream& err) : err_(err), isSeen_(!err.string() && ::isatty(STDERR_FILENO) == 1) {}
  ~ProgressPrinter() {
    if (!last_.isEmpty()) err_ << "\r\x1b[K" << Qt::flush;
  }
  ProgressPrinter(const ProgressPrinter&) = delete;
  ProgressPrinter& operator=(const ProgressPrinter&) = delete;

  void show(QLatin1StringView what, double fraction) {
    const QString line = u"%1 %2 %"_s.arg(what).arg(static_cast<int>(std::floor(100 * fraction)));
    if (!isSeen_ || line == last_) return;
    last_ = line;
    err_ << "\r\x1b[K" << line << Qt::flush;
  }

 private:
  QTextStream& err_;
  bool isSeen_;
  QString last_;
};

std::vector<DroppedItem> itemsNamed(const QStringList& words) {
  QStringList paths;
  for (const QString& word : words) paths.append(QDir::cleanPath(QFileInfo(word).absoluteFilePath()));
  paths.removeDuplicates();
  std::vector<DroppedItem> items;
  for (const QString& path : paths) items.push_back(measured(path, {}));
  return items;
}

/// None: the user has broken it off.
std::optional<BulkUploadClient::Outcome> uploadAndWait(BulkUploadClient& client, const std::vector<DroppedItem>& items,
                                                       QTextStream& err) {
  ProgressPrinter progress(err);
  const BulkUploadClient::Observer observer{[&](double fraction) { progress.show("Zipping"_L1, fraction); },
                                            [&](double fraction) { progress.show("Uploading"_L1, fraction); }};
  std::optional<BulkUploadClient::Outcome> outcome;
  const Job job = Job::start();
  // The command line has no other event loop that this one could stand inside.
  QEventLoop loop;
  const TerminationSignals termination;
  QObject::connect(&termination, &TerminationSignals::requested, &loop, &QEventLoop::quit);
  client.upload(items, job, observer, [&](const BulkUploadClient::Outcome& result) {
    outcome = result;
    loop.quit();
  });
  loop.exec();
  return outcome;
}

}  // namespace

int runUpload(const QStringList& arguments, CommandContext& context) {
  const Command& command = commandNamed("upload"_L1);
  const auto options = Options::parse(arguments, {{"json"_L1, {}}});
  if (!options) return usageError(command, options.error(), context);
  const QStringList words = options->words();
  if (words.isEmpty() || words.contains(QString()))
    return usageError(command, u"name the files and folders to upload"_s, context);
  CommandServices with(context, CommandLineService::Purpose::link);
  BulkUploadClient client(
      {with.services.environments, with.http, with.clock, context.makeArchiver(), QDir::tempPath()});
  client.removeLeftovers();
  const auto outcome = uploadAndWait(client, itemsNamed(words), context.err);
  if (!outcome || !*outcome) {
    const QString reason = outcome ? outcome->error().description() : u"cancelled"_s;
    context.err << "vantle: " << visibleLine(reason, kShown) << '\n';
    return exit_code::kFailure;
  }
  const QString link = outcome->value().toString(QUrl::FullyEncoded);
  if (options->has("json"_L1))
    context.out << QJsonDocument(QJsonObject{{u"url"_s, link}}).toJson(QJsonDocument::Compact) << '\n';
  else
    context.out << link << '\n';
  return exit_code::kSuccess;
}
