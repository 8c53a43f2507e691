#include "base/visible_text.h"
#include "cli/command_services.h"
#include "cli/options.h"
#include "services/service_error.h"
#include "tools/text_transform/ai_text_transform_client.h"

using namespace Qt::StringLiterals;

namespace {

using Order = AITextTransformClient::Order;

constexpr qsizetype kShown = 300;
/// Far more than any model reads at once.
constexpr qint64 kLargestText = 4 * 1024 * 1024;

std::expected<Order, QString> orderIn(const Options& options) {
  if (!options.words().isEmpty()) return std::unexpected(u"it takes its text from standard input"_s);
  if (options.has("mode"_L1) == options.has("instruction"_L1))
    return std::unexpected(u"say what to do, with either --mode or --instruction"_s);
  if (options.has("mode"_L1)) {
    const auto mode = textTransformMode(options.value("mode"_L1));
    if (!mode) return std::unexpected(u"--mode is one of improve, enhance-prompt, shorten and fix-grammar"_s);
    return Order{{}, *mode};
  }
  const QString instruction = options.value("instruction"_L1).trimmed();
  if (instruction.isEmpty()) return std::unexpected(u"--instruction is empty"_s);
  return Order{{}, TextTransformMode::custom, instruction};
}

std::expected<QString, QString> readText(QIODevice* input) {
  QByteArray bytes;
  while (input && bytes.size() <= kLargestText) {
    const QByteArray piece = input->read(kLargestText + 1 - bytes.size());
    if (piece.isEmpty()) break;
    bytes += piece;
  }
  if (bytes.size() > kLargestText) return std::unexpected(u"the text is larger than 4 MB"_s);
  if (bytes.trimmed().isEmpty()) return std::unexpected(u"there is no text on standard input"_s);
  const QString text = decoded(bytes);
  return text.isEmpty() ? std::unexpected(u"the text is not UTF-8"_s) : std::expected<QString, QString>(text);
}

int failed(const QString& reason, CommandContext& context) {
  context.err << "vantle: " << visibleLine(reason.trimmed(), kShown) << '\n';
  return exit_code::kFailure;
}

}  // namespace

int runTransform(const QStringList& arguments, CommandContext& context) {
  const Command& command = commandNamed("transform"_L1);
  const auto options = Options::parse(arguments, {{"mode"_L1, "mode"_L1}, {"instruction"_L1, "text"_L1}});
  if (!options) return usageError(command, options.error(), context);
  auto order = orderIn(*options);
  if (!order) return usageError(command, order.error(), context);
  const auto text = readText(context.input);
  if (!text) return failed(text.error(), context);
  order->text = *text;
  CommandServices with(context, CommandLineService::Purpose::answer);
  AITextTransformClient client(with.services);
  const auto result = awaited<AITextTransformClient::Result>(
      [&](const JobRef& job, auto done) { client.transform(*order, job, done); });
  if (!result) return failed(result.error().description(), context);
  context.out << *result << (result->endsWith(u'\n') ? "" : "\n");
  return exit_code::kSuccess;
}
