#include <QFileInfo>

#include "base/atomic_file.h"
#include "base/visible_text.h"
#include "cli/command_services.h"
#include "cli/options.h"
#include "tools/generate_image/generate_image_client.h"
#include "tools/generate_image/generate_image_settings.h"
#include "tools/generate_image/history_folder.h"
#include "tools/generate_image/image_reference_reader.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kShown = 300;
constexpr qint64 kLongestPrompt = 1'000'000;

template <class Value>
std::expected<Value, QString> optionOf(const Options& options, QLatin1StringView name, Value otherwise) {
  if (options.has(name) && !decode(options.value(name), otherwise))
    return std::unexpected(u"there is no %1 '%2'"_s.arg(name, visibleLine(options.value(name), kShown)));
  return otherwise;
}

/// What is asked for, but for its references. Errors are for the usage.
std::expected<ImageRequest, QString> requestOf(const Options& options, const CommandContext& context) {
  const QStringList words = options.words();
  if (words.size() != 1) return std::unexpected(u"describe one image, in quotes, or - for standard input"_s);
  if (options.value("o"_L1).isEmpty()) return std::unexpected(u"say with -o where the image is to be written"_s);
  const bool isInput = words[0] == "-"_L1 && context.input;
  ImageRequest request;
  request.prompt = (isInput ? QString::fromUtf8(context.input->read(kLongestPrompt)) : words[0]).trimmed();
  if (request.prompt.isEmpty()) return std::unexpected(u"the description is empty"_s);
  request.isEdit = options.has("edit"_L1);
  const auto size = optionOf(options, "size"_L1, ImageSize::automatic);
  const auto quality = optionOf(options, "quality"_L1, ImageQuality::automatic);
  if (!size || !quality) return std::unexpected(size ? quality.error() : size.error());
  request.options = {*size, *quality};
  const auto count = options.values("image"_L1).size();
  if (request.isEdit && count == 0) return std::unexpected(u"--edit needs the --image that is to be changed"_s);
  if (count > static_cast<qsizetype>(ImageRequest::kMostReferences))
    return std::unexpected(u"at most %1 images go with a description"_s.arg(ImageRequest::kMostReferences));
  return request;
}

/// The path of the first that is no image.
std::expected<void, QString> readReferences(const QStringList& paths, ImageRequest& request) {
  for (const QString& path : paths) {
    const auto reference = preparedReference(imageFileContents(path), 1);
    if (!reference) return std::unexpected(path);
    request.references.push_back(reference->png);
  }
  return {};
}

int fail(const QString& text, CommandContext& context) {
  context.err << "vantle: " << visibleLine(text.trimmed(), kShown) << '\n';
  return exit_code::kFailure;
}

/// Where the application keeps its images too. The user has the image all the same when that fails.
bool keep(const ImageRequest& request, const GeneratedImage& image, const CommandContext& context) {
  const HistoryFolder history(context.folders.file(u"GenerateImage/History"_s));
  const GenerateImageStore settings(context.folders.file(u"GenerateImage/settings.json"_s));
  const HistoryEntry entry = entryOf(request, QDateTime::currentDateTimeUtc());
  const auto written = history.write(entry, image.png, request.references);
  if (written)
    history.trim(settings.value().historyLimit());
  else
    context.err << "vantle: not kept in the history: " << written.error().description() << '\n';
  return written.has_value();
}

/// What is read and asked for is known to be good; error: why there is no image.
std::expected<GeneratedImage, GenerateImageError> generated(const ImageRequest& request, CommandContext& context) {
  CommandServices with(context, CommandLineService::Purpose::answer);
  GenerateImageClient client(with.services);
  return awaited<GenerateImageClient::Outcome>(
      [&](const JobRef& job, auto done) { client.generate(request, job, done); });
}

}  // namespace

int runGenerate(const QStringList& arguments, CommandContext& context) {
  const Command& command = commandNamed("generate"_L1);
  const auto options = Options::parse(arguments, {{"o"_L1, "file"_L1},
                                                  {"image"_L1, "file"_L1},
                                                  {"edit"_L1, {}},
                                                  {"size"_L1, "size"_L1},
                                                  {"quality"_L1, "quality"_L1},
                                                  {"no-history"_L1, {}}});
  if (!options) return usageError(command, options.error(), context);
  auto request = requestOf(*options, context);
  if (!request) return usageError(command, request.error(), context);
  if (const auto read = readReferences(options->values("image"_L1), *request); !read)
    return fail(read.error() + u": this is not an image that can be read, or it is too large"_s, context);
  // Known before an image is paid for.
  const QFileInfo file(options->value("o"_L1));
  if (file.isDir() || !QFileInfo(file.absolutePath()).isWritable())
    return fail(file.filePath() + u": nothing can be written there"_s, context);
  const auto outcome = generated(*request, context);
  if (!outcome) return fail(outcome.error().description(), context);
  const bool isKept = !options->has("no-history"_L1) && keep(*request, *outcome, context);
  if (const auto written = replaceFileAtomically(file.absoluteFilePath(), outcome->png); !written)
    return fail(written.error().description() + (isKept ? u"; the image is in Generate Image's history"_s : QString()),
                context);
  return exit_code::kSuccess;
}
