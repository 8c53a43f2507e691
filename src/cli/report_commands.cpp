#include "base/visible_text.h"
#include "cli/command_services.h"
#include "cli/image_argument.h"
#include "cli/options.h"
#include "tools/feedback/report_clients.h"
#include "tools/feedback/report_model.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kShown = 300;
/// More than any service takes.
constexpr qint64 kLongestText = 1'000'000;

struct Report {
  QString text;
  std::vector<QByteArray> snips;
};

QString textOf(const QString& word, const CommandContext& context) {
  if (word != "-"_L1) return word;
  return context.input ? QString::fromUtf8(context.input->read(kLongestText)) : QString();
}

/// Prints what is wrong with it.
std::optional<Report> readReport(const Options& options, CommandContext& context) {
  Report report{textOf(options.words().front(), context), {}};
  if (report.text.trimmed().isEmpty()) {
    context.err << "vantle: there is nothing to send: the text is empty\n";
    return std::nullopt;
  }
  for (const QString& word : options.values("image"_L1)) {
    const auto png = readPNG(word, context);
    if (!png) {
      context.err << "vantle: " << visibleLine(word, kShown) << ": " << png.error() << '\n';
      return std::nullopt;
    }
    report.snips.push_back(*png);
  }
  return report;
}

/// What is wrong with how it is called; empty when nothing is.
QString misuse(const Options& options) {
  const QStringList images = options.values("image"_L1);
  if (options.words().size() != 1) return u"say what you have to say in one text, or - for standard input"_s;
  if (static_cast<std::size_t>(images.size()) > ReportModel::kMostSnips) return u"at most three images go along"_s;
  // Standard input is one thing only.
  if (images.count(u"-"_s) + options.words().count(u"-"_s) > 1) return u"only one thing can be standard input"_s;
  return {};
}

/// Sends by `submit(sender, job, done)` and says how it went.
template <class Submit>
int send(CommandContext& context, const QString& thanks, const Submit& submit) {
  CommandServices with(context, CommandLineService::Purpose::answer);
  ReportSender sender({with.services.environments, with.services.credential, with.http, *with.platform.systemInfo});
  const auto sent = awaited<std::expected<void, ReportError>>(
      [&](const JobRef& job, const auto& done) { submit(sender, job, done); });
  if (!sent) {
    context.err << "vantle: " << visibleLine(sent.error().description(), kShown) << '\n';
    return exit_code::kFailure;
  }
  context.out << thanks << '\n';
  return exit_code::kSuccess;
}

}  // namespace

int runFeedback(const QStringList& arguments, CommandContext& context) {
  const Command& command = commandNamed("feedback"_L1);
  const auto options = Options::parse(arguments, {{"category"_L1, "category"_L1}, {"image"_L1, "file"_L1}});
  if (!options) return usageError(command, options.error(), context);
  const auto category = feedbackCategory(options->value("category"_L1));
  if (!category) return usageError(command, u"say with --category what it is: bug, feedback or question"_s, context);
  if (const QString wrong = misuse(*options); !wrong.isEmpty()) return usageError(command, wrong, context);
  const auto report = readReport(*options, context);
  if (!report) return exit_code::kFailure;
  const auto submit = [&](ReportSender& sender, const JobRef& job, const ReportSender::Done& done) {
    FeedbackClient(sender).submit({*category, report->text, report->snips}, job, done);
  };
  return send(context, u"Thanks — feedback sent!"_s, submit);
}

int runSuggest(const QStringList& arguments, CommandContext& context) {
  const Command& command = commandNamed("suggest"_L1);
  const auto options = Options::parse(arguments, {{"image"_L1, "file"_L1}});
  if (!options) return usageError(command, options.error(), context);
  if (const QString wrong = misuse(*options); !wrong.isEmpty()) return usageError(command, wrong, context);
  const auto report = readReport(*options, context);
  if (!report) return exit_code::kFailure;
  const auto submit = [&](ReportSender& sender, const JobRef& job, const ReportSender::Done& done) {
    SuggestClient(sender).submit({report->text, report->snips}, job, done);
  };
  return send(context, u"Thanks — suggestion sent!"_s, submit);
}
