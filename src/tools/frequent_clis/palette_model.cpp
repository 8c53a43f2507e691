#include "tools/frequent_clis/palette_model.h"

#include "base/text_search.h"
#include "base/visible_text.h"

using namespace Qt::StringLiterals;

namespace {

QString accessibleText(const CLICommand& command) {
  const QString text = command.title + u", "_s + visibleLine(command.command, PaletteModel::kPreviewLength);
  return command.pressReturn ? text + u", runs immediately"_s : text;
}

}  // namespace

void PaletteModel::reset(std::vector<CLICommand> commands) {
  all_ = std::move(commands);
  searchKeys_.clear();
  restart();
}

const CLICommand* PaletteModel::selectedCommand() const {
  const auto index = static_cast<std::size_t>(selectionIndex());
  return index < filtered_.size() ? &filtered_[index] : nullptr;
}

QString PaletteModel::emptyText() const { return u"No matching commands"_s; }

int PaletteModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(filtered_.size());
}

QVariant PaletteModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const CLICommand& command = filtered_[static_cast<std::size_t>(index.row())];
  switch (role) {
    case TitleRole:
      return visibleLine(command.title, kPreviewLength);
    case CommandPreviewRole:
      return visibleLine(command.command, kPreviewLength);
    case MonogramRole:
      return command.shownIcon().monogram;
    case IconColorRole:
      return command.shownIcon().color;
    case PressReturnRole:
      return command.pressReturn;
    case Qt::AccessibleTextRole:
      return accessibleText(command);
    default:
      return {};
  }
}

void PaletteModel::collectRows() { filtered_ = query().isEmpty() ? all_ : matches(); }

std::vector<CLICommand> PaletteModel::matches() {
  if (searchKeys_.empty())
    for (const CLICommand& command : all_)
      // The separator is a non-character, so that no query matches across it.
      searchKeys_.push_back(searchKey(command.title) + QChar(0xFFFF) + searchKey(command.command));

  std::vector<CLICommand> matches;
  const QString key = searchKey(query());
  for (std::size_t index = 0; index < all_.size(); ++index)
    if (searchKeys_[index].contains(key)) matches.push_back(all_[index]);
  return matches;
}
