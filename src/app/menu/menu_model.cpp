#include "app/menu/menu_model.h"

#include <QCoreApplication>

#include <algorithm>

#include "base/text_search.h"
#include "core/hotkeys/app_shortcuts.h"
#include "core/hotkeys/hotkey_center.h"
#include "core/tools/tool_registry.h"
#include "platform/command_key.h"

using namespace Qt::StringLiterals;

namespace {

struct Note {
  QString text = {};
  QString symbol = {};
  QString reason = {};
};

/// Why a tool's shortcut does not start it now; all empty when it does.
Note noteOn(const Tool& tool, const ToolRegistry& registry, const HotkeyCenter& hotkeys) {
  if (!registry.isUsable(tool)) return {u"Offline"_s, u"wifi.slash"_s, u"Needs the internet — offline right now"_s};
  if (!registry.isEnabled(tool.id()))
    return {u"Shortcut off"_s, {}, u"Switched off in Settings; it still starts from here"_s};
  const auto refused = hotkeys.refused();
  const auto found = std::ranges::find(refused, tool.id(), &HotkeyCenter::Refused::toolID);
  if (found != refused.end())
    return {u"Shortcut taken"_s, {}, found->hotkey.spelled() + u": "_s + found->refusal.description()};
  return {};
}

QString titleOf(const MenuEntryInfo& info) {
  return QString::fromUtf16(info.title).replace(u"%1"_s, QCoreApplication::applicationVersion());
}

QStringList capsOf(MenuEntry entry) {
  if (entry == MenuEntry::quit) return keyCaps({u"⌘"_s, u"Q"_s});
  const auto own = std::ranges::find(kAppShortcuts, AppAction::openSettings, &AppShortcut::action);
  return entry == MenuEntry::settings ? own->hotkey.keyCaps() : QStringList();
}

MenuRow entryRow(const MenuEntryInfo& info) {
  return {.kind = MenuRow::Kind::entry,
          .entry = info.entry,
          .title = titleOf(info),
          .symbol = info.icon,
          .caps = capsOf(info.entry)};
}

QString description(const MenuRow& row) {
  QStringList parts{row.spelled, row.reason};
  parts.removeAll(QString());
  return parts.join(u", "_s);
}

}  // namespace

MenuModel::MenuModel(const ToolRegistry& registry, const HotkeyCenter& hotkeys)
    : registry_(registry), hotkeys_(hotkeys) {}

const MenuRow* MenuModel::selectedRow() const {
  return selection_ < 0 ? nullptr : &rows_[static_cast<std::size_t>(selection_)];
}

void MenuModel::reset() { setQuery({}); }

void MenuModel::setQuery(const QString& query) {
  query_ = query;
  take(matchingRows());
  selection_ = -1;
  selectFirst();
  Q_EMIT changed();
}

void MenuModel::refresh() {
  std::vector<MenuRow> rows = matchingRows();
  if (rows == rows_) return;
  const MenuRow selected = selectedRow() ? *selectedRow() : MenuRow();
  take(std::move(rows));
  const auto kept = std::ranges::find_if(rows_, [&](const MenuRow& row) { return row.isSameAs(selected); });
  selection_ = -1;
  selectFrom(kept == rows_.end() ? 0 : static_cast<int>(kept - rows_.begin()), +1);
  Q_EMIT changed();
}

void MenuModel::take(std::vector<MenuRow> rows) {
  beginResetModel();
  rows_ = std::move(rows);
  endResetModel();
}

void MenuModel::select(int row) {
  if (row == selection_ || !isSelectable(row)) return;
  selection_ = row;
  Q_EMIT changed();
}

void MenuModel::moveSelection(int direction) {
  const int count = rowCount();
  if (count > 0) selectFrom((selection_ + direction + count) % count, direction);
}

/// From `row` on, the first that can be selected. No two separators stand side by side, and none at an end.
void MenuModel::selectFrom(int row, int direction) { select(isSelectable(row) ? row : row + direction); }

bool MenuModel::isSelectable(int row) const {
  return row >= 0 && row < rowCount() && rows_[static_cast<std::size_t>(row)].kind != MenuRow::Kind::separator;
}

std::vector<MenuRow> MenuModel::matchingRows() const {
  const QString key = searchKey(query_);
  std::vector<MenuRow> rows;
  for (const ToolItem& item : registry_.items())
    if (searchKey(item.tool->name()).contains(key)) rows.push_back(toolRow(*item.tool));
  bool isFirstEntry = !rows.empty();
  for (const MenuEntryInfo& info : kMenuEntries) {
    if (!searchKey(titleOf(info)).contains(key)) continue;
    if (std::exchange(isFirstEntry, false)) rows.emplace_back();
    rows.push_back(entryRow(info));
  }
  return rows;
}

MenuRow MenuModel::toolRow(const Tool& tool) const {
  const auto shortcut = registry_.shortcut(tool);
  const Note note = noteOn(tool, registry_, hotkeys_);
  return {.kind = MenuRow::Kind::tool,
          .toolID = tool.id(),
          .title = tool.name(),
          .symbol = tool.icon(),
          .caps = shortcut ? shortcut->keyCaps() : QStringList(),
          .spelled = shortcut ? shortcut->spelled() : QString(),
          .note = note.text,
          .noteSymbol = note.symbol,
          .reason = note.reason,
          .isUsable = registry_.isUsable(tool)};
}

int MenuModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant MenuModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) return {};
  const MenuRow& row = rows_[static_cast<std::size_t>(index.row())];
  switch (role) {
    case Qt::DisplayRole:
      return row.title;
    case Qt::AccessibleTextRole:
      // What the line says to the eye.
      return row.kind == MenuRow::Kind::separator ? u"Application"_s : row.title;
    case Qt::AccessibleDescriptionRole:
      return description(row);
    case Qt::ToolTipRole:
      return row.reason;
    case kKindRole:
      return static_cast<int>(row.kind);
    case kSymbolRole:
      return row.symbol;
    case kCapsRole:
      return row.caps;
    case kNoteRole:
      return row.note;
    case kNoteSymbolRole:
      return row.noteSymbol;
    case kUsableRole:
      return row.isUsable;
    default:
      return {};
  }
}

Qt::ItemFlags MenuModel::flags(const QModelIndex& index) const {
  if (!index.isValid() || !isSelectable(index.row())) return Qt::NoItemFlags;
  return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}
