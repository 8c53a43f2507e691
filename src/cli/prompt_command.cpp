#include "base/visible_text.h"
#include "cli/command_services.h"
#include "cli/image_argument.h"
#include "cli/options.h"
#include "tools/image_to_prompt/promptify_client.h"
#include "tools/image_to_prompt/promptify_settings.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kShown = 300;

/// What was asked for, else what is set; nobody can be asked here.
std::optional<PromptMode> chosenMode(const Options& options, const Folders& folders) {
  if (options.has("mode"_L1)) return promptMode(options.value("mode"_L1));
  const PromptifyStore settings(folders.file(u"Promptify/settings.json"_s));
  return modeOf(settings.value().style).value_or(PromptMode::general);
}

}  // namespace

int runPrompt(const QStringList& arguments, CommandContext& context) {
  const Command& command = commandNamed("prompt"_L1);
  const auto options = Options::parse(arguments, {{"mode"_L1, "mode"_L1}});
  if (!options) return usageError(command, options.error(), context);
  const QString word = options->words().value(0);
  if (options->words().size() != 1 || word.isEmpty())
    return usageError(command, u"name one image, or - for standard input"_s, context);
  const auto mode = chosenMode(*options, context.folders);
  if (!mode) return usageError(command, u"--mode is one of ui, general and image"_s, context);
  const auto image = readImage(word, context);
  if (!image) {
    context.err << "vantle: " << visibleLine(word, kShown) << ": " << image.error() << '\n';
    return exit_code::kFailure;
  }
  CommandServices with(context, CommandLineService::Purpose::answer);
  PromptifyClient client(with.services.environments, with.http);
  const auto prompt = awaited<std::expected<QString, PromptifyError>>(
      [&](const JobRef& job, const auto& done) { client.reverseEngineer(*image, *mode, job, done); });
  if (!prompt) {
    context.err << "vantle: " << visibleLine(prompt.error().description(), kShown) << '\n';
    return exit_code::kFailure;
  }
  context.out << *prompt << '\n';
  return exit_code::kSuccess;
}
