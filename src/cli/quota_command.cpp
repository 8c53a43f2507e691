#include <QJsonDocument>
#include <QJsonObject>

#include "base/visible_text.h"
#include "cli/command_services.h"
#include "cli/options.h"
#include "services/metered_error.h"
#include "services/usage_meter.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kShown = 300;
constexpr int kLabelColumn = 20;

void printJson(const QuotaStore& quota, QTextStream& out) {
  QJsonObject usage;
  for (const auto& [metric, counter] : quota.metrics())
    usage.insert(metric, QJsonObject{{u"used"_s, counter.used}, {u"limit"_s, counter.limit}});
  const QJsonObject object{{u"plan"_s, quota.plan()}, {u"resetsAt"_s, quota.resetsAt()}, {u"usage"_s, usage}};
  out << QJsonDocument(object).toJson(QJsonDocument::Compact) << '\n';
}

void print(const QuotaStore& quota, QTextStream& out) {
  out << QString(u"Plan"_s).leftJustified(kLabelColumn) << visibleLine(quota.plan(), kShown) << '\n';
  const auto meters = usageMeters(quota.metrics());
  if (meters.empty()) {
    out << "This plan has no monthly limits.\n";
    return;
  }
  for (const UsageMeter& meter : meters)
    out << visibleLine(meter.label, kShown).leftJustified(kLabelColumn) << meter.counts() << ", " << meter.remaining()
        << '\n';
  out << QString(u"Resets"_s).leftJustified(kLabelColumn) << resetLabel(quota.resetsAt()) << '\n';
}

}  // namespace

int runQuota(const QStringList& arguments, CommandContext& context) {
  const Command& command = commandNamed("quota"_L1);
  const auto options = Options::parse(arguments, {{"json"_L1, {}}});
  if (!options) return usageError(command, options.error(), context);
  if (!options->words().isEmpty()) return usageError(command, u"it takes no words"_s, context);
  CommandServices with(context, CommandLineService::Purpose::answer);
  const auto refreshed = awaited<std::expected<void, ServiceError>>(
      [&](const JobRef& job, auto done) { with.services.quotaClient.refresh(job, done); });
  if (!refreshed) {
    context.err << "vantle: " << visibleLine(refreshed.error().description(), kShown) << '\n';
    return exit_code::kFailure;
  }
  if (options->has("json"_L1))
    printJson(with.services.quota, context.out);
  else
    print(with.services.quota, context.out);
  return exit_code::kSuccess;
}
