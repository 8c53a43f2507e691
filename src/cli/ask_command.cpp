#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <unistd.h>

#include "base/regular_file.h"
#include "base/visible_text.h"
#include "cli/command_services.h"
#include "cli/options.h"
#include "tools/ask_ai/ask_attachment.h"
#include "tools/ask_ai/quick_question_client.h"
#include "tools/ask_ai/quick_question_model.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kShown = 300;
constexpr qint64 kLargestText = 4'000'000;

/// A question with its images.
struct Asked {
  AskQuestion question;
  std::vector<QByteArray> images;
};

/// What an answer says, without what would move the terminal's cursor or change its colours.
QString harmless(const QString& text) {
  QString shown;
  for (const QChar character : text)
    if (character.category() != QChar::Other_Control || character == u'\n' || character == u'\t') shown += character;
  return shown;
}

/// An answer on a terminal, as it arrives; nothing anywhere else.
class GrowthPrinter {
 public:
  explicit GrowthPrinter(QTextStream& out) : out_(out), isSeen_(!out.string() && ::isatty(STDOUT_FILENO) == 1) {}

  bool isSeen() const { return isSeen_; }
  void show(const QString& soFar) {
    if (!isSeen_ || soFar.size() <= printed_.size()) return;
    out_ << harmless(soFar.mid(printed_.size())) << Qt::flush;
    printed_ = soFar;
  }
  /// The rest of it. One that turned out otherwise than it came is printed whole, below.
  void finish(const QString& answer) {
    if (!answer.startsWith(printed_)) {
      out_ << "\n\n";
      printed_.clear();
    }
    show(answer);
    out_ << '\n';
  }
  /// An error is not to stand in the same line.
  void breakOff() {
    if (!printed_.isEmpty()) out_ << '\n' << Qt::flush;
  }

 private:
  QTextStream& out_;
  bool isSeen_;
  QString printed_;
};

std::optional<AskExchange> exchangeIn(const QJsonValue& value) {
  const QJsonValue question = value["question"_L1];
  const QJsonValue answer = value["answer"_L1];
  if (!question.isString() || !answer.isString()) return std::nullopt;
  return AskExchange{question.toString(), answer.toString()};
}

std::expected<std::vector<AskExchange>, QString> readHistory(const QString& path) {
  const auto file = openRegularFile(path);
  if (!file) return std::unexpected(file.error().reason);
  const QByteArray bytes = (*file)->read(kLargestText);
  const auto document = QJsonDocument::fromJson(bytes);
  std::vector<AskExchange> history;
  if (!document.isArray()) return std::unexpected(u"this is not a JSON array of questions and answers"_s);
  for (const QJsonValue value : document.array()) {
    const auto exchange = exchangeIn(value);
    if (!exchange) return std::unexpected(u"each entry must have a 'question' and an 'answer', both texts"_s);
    history.push_back(*exchange);
  }
  return history;
}

QString readQuestion(const QString& word, const CommandContext& context) {
  if (word != "-"_L1) return word.trimmed();
  return context.input ? QString::fromUtf8(context.input->read(kLargestText)).trimmed() : QString();
}

/// Error: the whole message.
std::expected<Asked, QString> readAsked(const Options& options, const QString& question) {
  Asked asked{{question}, {}};
  for (const QString& path : options.values("image"_L1)) {
    auto image = attachmentOfFile(path);
    if (!image) return std::unexpected(image.error());
    asked.images.push_back(std::move(image->png));
  }
  if (!options.has("history"_L1)) return asked;
  const QString path = options.value("history"_L1);
  auto history = readHistory(path);
  if (!history) return std::unexpected(visibleLine(path, kShown) + u": "_s + history.error());
  asked.question.history = std::move(*history);
  return asked;
}

AskOutcome answerTo(const Asked& asked, CommandContext& context, GrowthPrinter& printer) {
  CommandServices with(context, CommandLineService::Purpose::answer);
  Services& services = with.services;
  QuickQuestionClient client({services.environments, services.api, with.http, services.quota});
  return awaited<AskOutcome>([&](const JobRef& job, auto done) {
    client.ask(asked.question, asked.images, {job, [&](const QString& soFar) { printer.show(soFar); }, done});
  });
}

int fail(const QString& message, CommandContext& context) {
  context.err << "vantle: " << message << '\n';
  return exit_code::kFailure;
}

}  // namespace

int runAsk(const QStringList& arguments, CommandContext& context) {
  const Command& command = commandNamed("ask"_L1);
  const auto options = Options::parse(arguments, {{"image"_L1, "file"_L1}, {"history"_L1, "file"_L1}});
  if (!options) return usageError(command, options.error(), context);
  if (options->words().size() != 1)
    return usageError(command, u"ask one question, in quotes, or - for standard input"_s, context);
  if (options->values("image"_L1).size() > static_cast<qsizetype>(QuickQuestionModel::kMostAttachments))
    return usageError(command, u"at most six images go with a question"_s, context);
  const QString question = readQuestion(options->words().front(), context);
  if (question.isEmpty()) return usageError(command, u"the question is empty"_s, context);
  const auto asked = readAsked(*options, question);
  if (!asked) return fail(asked.error(), context);
  GrowthPrinter printer(context.out);
  const AskOutcome answer = answerTo(*asked, context, printer);
  if (!answer) {
    printer.breakOff();
    return fail(visibleLine(answer.error().description(), kShown), context);
  }
  if (printer.isSeen())
    printer.finish(*answer);
  else
    context.out << *answer << '\n';
  return exit_code::kSuccess;
}
