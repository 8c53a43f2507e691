#include "cli/binding_output.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {

/// By its name only where every desktop looks for programs: a shell's own PATH is not the desktop's.
QString programWord() {
  const QString own = QCoreApplication::applicationFilePath();
  const QString found = QStandardPaths::findExecutable(u"vantle"_s, {u"/usr/local/bin"_s, u"/usr/bin"_s});
  return !found.isEmpty() && QFileInfo(found) == QFileInfo(own) ? u"vantle"_s : own;
}

/// None of them: the desktop is one that we know nothing of.
std::optional<std::vector<CompositorText>> named(const QString& which, const QString& desktops) {
  std::vector<CompositorText> chosen;
  const auto session = compositorOf(desktops);
  for (const CompositorText& row : kCompositors)
    if (which == "all"_L1 || which == row.id || (which == "session"_L1 && session == row.compositor))
      chosen.push_back(row);
  if (chosen.empty() && which != "session"_L1) return std::nullopt;
  return chosen;
}

void printText(const std::vector<CompositorText>& chosen, const Bindings& bindings, QTextStream& out) {
  const QString program = programWord();
  for (const CompositorText& row : chosen)
    out << "\n# Vantle's shortcuts in " << row.name << ": " << row.usage << '\n'
        << bindingSnippet(row.compositor, bindings.commands, program);
  if (chosen.empty())
    out << "\n# Vantle's shortcuts: bind these commands in your desktop's settings\n"
        << bindingList(bindings.commands, program);
}

QJsonArray commandRows(const Bindings& bindings) {
  QJsonArray rows;
  for (const BoundCommand& command : bindings.commands)
    rows.append(QJsonObject{{u"name"_s, command.name},
                            {u"shortcut"_s, command.hotkey.spelled()},
                            {u"command"_s, QJsonArray{programWord(), u"summon"_s, command.target}}});
  return rows;
}

QJsonObject toJson(const std::vector<CompositorText>& chosen, const Bindings& bindings) {
  QJsonArray snippets;
  for (const CompositorText& row : chosen)
    snippets.append(QJsonObject{{u"desktop"_s, QString(row.id)},
                                {u"usage"_s, QString(row.usage)},
                                {u"snippet"_s, bindingSnippet(row.compositor, bindings.commands, programWord())}});
  return {{u"commands"_s, commandRows(bindings)}, {u"snippets"_s, snippets}};
}

}  // namespace

QJsonObject sessionBindings(const Bindings& bindings) {
  return toJson(*named(u"session"_s, bindings.desktops), bindings);
}

int printBindings(const Bindings& bindings, const QString& which, bool json, CommandContext& context) {
  const auto chosen = named(which, bindings.desktops);
  if (!chosen) return usageError(commandNamed("doctor"_L1), u"there is no desktop '%1' here"_s.arg(which), context);
  if (json)
    context.out << QJsonDocument(toJson(*chosen, bindings)).toJson(QJsonDocument::Indented);
  else
    printText(*chosen, bindings, context.out);
  return exit_code::kSuccess;
}
