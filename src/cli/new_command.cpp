#include <QDir>
#include <QFileInfo>

#include "base/visible_text.h"
#include "cli/options.h"
#include "platform/stop_signals.h"
#include "tools/boilerplates/boilerplate_settings.h"
#include "tools/boilerplates/template_copy.h"
#include "tools/projects/new_projects.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kShown = 300;
/// What shells add to the number of the signal that ended a program.
constexpr int kSignalled = 128;

void printKnown(const BoilerplateSettings& settings, QTextStream& err) {
  if (settings.templates.empty()) err << "vantle: the settings of Boilerplates list no template folders yet\n";
  for (const Boilerplate& boilerplate : settings.templates)
    err << "    " << visibleLine(boilerplate.name, kShown) << "  " << visibleLine(boilerplate.path, kShown) << '\n';
}

int create(const TemplateCopy& copy, CommandContext& context) {
  CopyProgress progress;
  const StopSignals signals;
  const auto made = copy.run(progress, signals.token());
  if (!made) {
    context.err << "vantle: " << visibleLine(made.error().description(), kShown) << '\n';
    return signals.taken() == 0 ? exit_code::kFailure : kSignalled + signals.taken();
  }
  for (const QString& skipped : made->skipped)
    context.err << "vantle: skipped " << visibleLine(skipped, kShown) << ", which is no file, folder or link\n";
  NewProjectStore(context.folders.file(u"new-projects.json"_s)).update([&](NewProjects& projects) {
    projects.add(made->path);
  });
  context.out << made->path << '\n';
  return exit_code::kSuccess;
}

}  // namespace

int runNew(const QStringList& arguments, CommandContext& context) {
  const Command& command = commandNamed("new"_L1);
  const auto options = Options::parse(arguments, {});
  if (!options) return usageError(command, options.error(), context);
  if (options->words().size() != 2) return usageError(command, u"name a boilerplate and a folder"_s, context);
  const BoilerplateStore store(context.folders.file(u"boilerplates.json"_s));
  const Boilerplate* boilerplate = store.value().find(options->words()[0]);
  if (!boilerplate) {
    context.err << "vantle: there is no boilerplate '" << visibleLine(options->words()[0], kShown) << "'\n";
    printKnown(store.value(), context.err);
    return exit_code::kFailure;
  }
  const QFileInfo target(QDir::cleanPath(QDir::current().absoluteFilePath(options->words()[1])));
  return create(TemplateCopy(boilerplate->path, target.path(), target.fileName()), context);
}
