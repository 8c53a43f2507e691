#include "tools/frequent_clis/icon_picker_model.h"

#include "base/text_search.h"

using namespace Qt::StringLiterals;

IconPickerModel::IconPickerModel(QObject* parent) : QAbstractListModel(parent) { setQuery({}); }

void IconPickerModel::setQuery(const QString& query) {
  beginResetModel();
  query_ = query;
  icons_.clear();
  const QString key = searchKey(query.trimmed());
  for (const CommandIcon& icon : CommandIcon::all())
    if (searchKey(icon.name).contains(key) || icon.id.contains(key)) icons_.push_back(&icon);
  endResetModel();
}

QString IconPickerModel::emptyText() const { return u"No icons match “%1”"_s.arg(query_); }

int IconPickerModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(icons_.size());
}

QVariant IconPickerModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const CommandIcon& icon = *icons_[static_cast<std::size_t>(index.row())];
  switch (role) {
    case NameRole:
    case Qt::ToolTipRole:
      return icon.name;
    case IdRole:
      return icon.id;
    case MonogramRole:
      return icon.monogram;
    case ColorRole:
      return icon.color;
    default:
      return {};
  }
}
