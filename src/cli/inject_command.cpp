#include "base/visible_text.h"
#include "cli/options.h"
#include "tools/inject_md/inject_md_settings.h"
#include "tools/inject_md/md_injector.h"
#include "tools/inject_md/well_known_templates.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kShownPath = 300;

/// The user's own file of that name, else the well-known one.
std::optional<MDDocument> documentNamed(const QString& name, const InjectMDSettings& settings) {
  if (const MDDocument* own = settings.find(name)) return *own;
  const QString known = wellKnownTemplate(name);
  return known.isNull() ? std::nullopt : std::optional(MDDocument{QUuid(), name, known});
}

QString fileNames(const InjectMDSettings& settings) {
  QStringList names;
  for (const MDDocument& document : settings.documents) names.append(visibleLine(document.fileName, kShownPath));
  for (const WellKnownTemplate& known : wellKnownTemplates)
    if (!names.contains(known.fileName)) names.append(known.fileName);
  return names.join(u", "_s);
}

int fail(const QString& message, CommandContext& context) {
  context.err << "vantle: " << message << '\n';
  return exit_code::kFailure;
}

int inject(const MDInjector& injector, bool overwrites, CommandContext& context) {
  const auto found = injector.inspect();
  if (!found) return fail(found.error().description(), context);
  const QString path = visibleLine(injector.targetPath(), kShownPath);
  if (*found && !overwrites)
    return fail(u"%1 is already there; with --force: %2"_s.arg(path, (*found)->effect), context);
  const auto written = injector.write(overwrites ? MDInjector::Overwrite::yes : MDInjector::Overwrite::no);
  if (!written) return fail(written.error().description(), context);
  context.out << path << '\n';
  return exit_code::kSuccess;
}

}  // namespace

int runInject(const QStringList& arguments, CommandContext& context) {
  const Command& command = commandNamed("inject"_L1);
  const auto options = Options::parse(arguments, {{"force"_L1, {}}});
  if (!options) return usageError(command, options.error(), context);
  if (options->words().size() != 2) return usageError(command, u"it takes a file name and a folder"_s, context);
  const InjectMDStore store(context.folders.file(u"inject-md.json"_s));
  const QString name = options->words().front();
  const auto document = documentNamed(name, store.value());
  if (!document)
    return fail(u"there is no file '%1'; there are %2"_s.arg(visibleLine(name, kShownPath), fileNames(store.value())),
                context);
  return inject(MDInjector(*document, options->words().back()), options->has("force"_L1), context);
}
