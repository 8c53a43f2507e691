#include "tools/generate_image/history_list_model.h"

#include <QLocale>

#include "base/visible_text.h"
#include "tools/generate_image/image_history.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kShown = 200;

QString description(const HistoryEntry& entry) {
  const QString day = QLocale().toString(entry.date.toLocalTime(), QLocale::ShortFormat);
  return u"%1, %2"_s.arg(visibleLine(entry.prompt, kShown), day);
}

QStringList idsOf(const ImageHistory& history) {
  QStringList ids;
  for (const HistoryEntry& entry : history.entries()) ids.append(entry.id);
  return ids;
}

}  // namespace

HistoryListModel::HistoryListModel(ImageHistory& history) : history_(history), ids_(idsOf(history)) {
  connect(&history_, &ImageHistory::changed, this, [this] {
    beginResetModel();
    ids_ = idsOf(history_);
    endResetModel();
  });
  connect(&history_, &ImageHistory::thumbnailReady, this, [this](const QString& id) {
    const QModelIndex changed = index(rowOf(id));
    if (changed.isValid()) Q_EMIT dataChanged(changed, changed, {Qt::DecorationRole});
  });
}

int HistoryListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(ids_.size());
}

QVariant HistoryListModel::data(const QModelIndex& index, int role) const {
  const QString id = idAt(index.row());
  if (role == Qt::DecorationRole) return history_.thumbnail(id);
  if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
  const HistoryEntry* entry = history_.find(id);
  if (!entry) return {};
  const QString text = description(*entry);
  // A tip would take a prompt that looks like a page for one, and load what it names.
  return role == Qt::ToolTipRole ? u"<p>%1</p>"_s.arg(text.toHtmlEscaped()) : text;
}

int HistoryListModel::rowOf(const QString& id) const { return static_cast<int>(ids_.indexOf(id)); }

QString HistoryListModel::idAt(int row) const { return ids_.value(row); }
