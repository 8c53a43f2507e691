#include <QJsonDocument>
#include <QJsonObject>

#include "base/visible_text.h"
#include "cli/command_services.h"
#include "cli/image_argument.h"
#include "cli/options.h"
#include "tools/image_to_url/uplink_uploader.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kShown = 300;

void print(const QUrl& link, bool json, QTextStream& out) {
  const QString text = link.toString(QUrl::FullyEncoded);
  if (json)
    out << QJsonDocument(QJsonObject{{u"url"_s, text}}).toJson(QJsonDocument::Compact) << '\n';
  else
    out << text << '\n';
}

}  // namespace

int runLink(const QStringList& arguments, CommandContext& context) {
  const Command& command = commandNamed("link"_L1);
  const auto options = Options::parse(arguments, {{"json"_L1, {}}});
  if (!options) return usageError(command, options.error(), context);
  const QString word = options->words().value(0);
  if (options->words().size() != 1 || word.isEmpty())
    return usageError(command, u"name one image, or - for standard input"_s, context);
  const auto image = readImage(word, context);
  if (!image) {
    context.err << "vantle: " << visibleLine(word, kShown) << ": " << image.error() << '\n';
    return exit_code::kFailure;
  }
  CommandServices with(context, CommandLineService::Purpose::link);
  UplinkUploader uploader(with.services.environments, with.http);
  const auto link = awaited<std::expected<QUrl, UplinkError>>(
      [&](const JobRef& job, auto done) { uploader.upload(*image, job, done); });
  if (!link) {
    context.err << "vantle: " << visibleLine(link.error().description(), kShown) << '\n';
    return exit_code::kFailure;
  }
  print(*link, options->has("json"_L1), context.out);
  return exit_code::kSuccess;
}
