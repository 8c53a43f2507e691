#include "core/ui/launcher/tool_launcher_model.h"

#include <QLocale>

#include <algorithm>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr auto kPulseDuration = 450ms;

}  // namespace

ToolLauncherModel::ToolLauncherModel(Clock& clock) : clock_(clock) {}

int ToolLauncherModel::pageCount() const { return std::max(1, (count() + kPageSize - 1) / kPageSize); }

int ToolLauncherModel::gridRows() const { return (std::min(count(), kPageSize) + kColumns - 1) / kColumns; }

std::optional<ToolItem> ToolLauncherModel::selectedItem() const {
  if (items_.empty()) return std::nullopt;
  return items_[static_cast<std::size_t>(selection_)];
}

void ToolLauncherModel::reset(std::vector<ToolItem> items) {
  all_ = std::move(items);
  query_.clear();
  arranging_ = false;
  pulseID_.clear();
  pulse_.cancel();
  filter({});
}

void ToolLauncherModel::refresh(std::vector<ToolItem> items, const QString& keepingSelectionOn) {
  all_ = std::move(items);
  filter(keepingSelectionOn);
}

void ToolLauncherModel::setQuery(const QString& query) {
  if (query == query_) return;
  query_ = query;
  refilter();
}

void ToolLauncherModel::refilter() {
  const auto selected = selectedItem();
  filter(selected ? selected->id() : QString());
}

void ToolLauncherModel::filter(const QString& keepingSelectionOn) {
  std::vector<ToolItem> kept;
  std::ranges::copy_if(all_, std::back_inserter(kept), [this](const ToolItem& item) { return matches(item); });
  if (kept != items_) {
    beginResetModel();
    items_ = std::move(kept);
    endResetModel();
  }
  selection_ = std::max(0, indexOf(keepingSelectionOn));
  Q_EMIT changed();
}

bool ToolLauncherModel::matches(const ToolItem& item) const {
  const QString name = item.tool->name();
  if (query_.isEmpty() || name.contains(query_, Qt::CaseInsensitive)) return true;
  // The user's locale has case pairs of its own, the dotless i for one.
  const QLocale locale;
  return locale.toLower(name).contains(locale.toLower(query_));
}

void ToolLauncherModel::move(int by) {
  if (items_.empty()) return;
  select(std::clamp(selection_ + by, 0, count() - 1));
}

void ToolLauncherModel::select(int index) {
  if (index < 0 || index >= count() || index == selection_) return;
  selection_ = index;
  Q_EMIT changed();
}

void ToolLauncherModel::select(const QString& toolID) { select(indexOf(toolID)); }

void ToolLauncherModel::setShown(bool shown) {
  if (std::exchange(shown_, shown) != shown) Q_EMIT changed();
}

void ToolLauncherModel::setArranging(bool arranging) {
  if (std::exchange(arranging_, arranging) != arranging) Q_EMIT changed();
}

void ToolLauncherModel::pulse(const QString& toolID) {
  pulseID_ = toolID;
  pulse_ = Job::start();
  clock_.after(kPulseDuration, pulse_, [this] {
    pulseID_.clear();
    Q_EMIT changed();
  });
  Q_EMIT changed();
}

int ToolLauncherModel::indexOf(const QString& toolID) const {
  const auto found = std::ranges::find(items_, toolID, &ToolItem::id);
  return found == items_.end() ? -1 : static_cast<int>(found - items_.begin());
}

int ToolLauncherModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count(); }

QVariant ToolLauncherModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) return {};
  const Tool& tool = *items_[static_cast<std::size_t>(index.row())].tool;
  switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
      return tool.name();
    case Qt::AccessibleDescriptionRole:
      return tool.summary();
    case kToolIDRole:
      return tool.id();
    default:
      return {};
  }
}

QHash<int, QByteArray> ToolLauncherModel::roleNames() const {
  QHash<int, QByteArray> names = QAbstractListModel::roleNames();
  names.insert(kToolIDRole, "toolID");
  return names;
}
