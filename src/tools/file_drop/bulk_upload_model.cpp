#include "tools/file_drop/bulk_upload_model.h"

#include <QDir>
#include <QHash>

#include <algorithm>

#include "base/byte_count.h"
#include "base/visible_text.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kShownName = 200;

QString counted(qint64 count, QLatin1StringView one, QLatin1StringView many) {
  return count == 1 ? u"1 "_s + one : QString::number(count) + u' ' + many;
}

QString detail(const DroppedItem& item) {
  if (!item.isMeasured) return u"Measuring…"_s;
  if (!item.fault.isEmpty()) return item.fault;
  const QString size = byteCountText(item.bytes);
  return item.isFolder ? counted(item.files, "file"_L1, "files"_L1) + u" · "_s + size : size;
}

QString spoken(const DroppedItem& item) {
  return visibleLine(item.name(), kShownName) + u", "_s + (item.isFolder ? u"folder, "_s : QString()) + detail(item);
}

}  // namespace

QString summary(const BulkUploadModel& model) {
  const QString count = counted(model.rowCount(), "item"_L1, "items"_L1);
  return count + u" · "_s + (model.isMeasuring() ? u"measuring…"_s : byteCountText(model.totalBytes()));
}

QStringList BulkUploadModel::add(const QList<QUrl>& urls) {
  if (isBusy()) return {};
  if (phase_ == Phase::done) reset();
  QStringList fresh;
  for (const QUrl& url : urls) {
    const QString path = url.isLocalFile() ? QDir::cleanPath(url.toLocalFile()) : QString();
    if (path.isEmpty() || !QDir::isAbsolutePath(path) || paths_.contains(path)) continue;
    paths_.insert(path);
    fresh.append(path);
  }
  if (fresh.isEmpty()) return {};
  const int first = rowCount();
  beginInsertRows({}, first, first + static_cast<int>(fresh.size()) - 1);
  for (const QString& path : fresh) items_.push_back({.path = path});
  unmeasured_ += static_cast<std::size_t>(fresh.size());
  endInsertRows();
  backToList();
  return fresh;
}

void BulkUploadModel::takeMeasured(const std::vector<DroppedItem>& items) {
  QHash<QString, std::size_t> rows;
  for (std::size_t row = 0; row < items_.size(); ++row) rows.insert(items_[row].path, row);
  for (const DroppedItem& item : items)
    if (const auto found = rows.constFind(item.path); found != rows.constEnd()) items_[*found] = item;
  unmeasured_ =
      static_cast<std::size_t>(std::ranges::count_if(items_, [](const auto& item) { return !item.isMeasured; }));
  if (!items_.empty()) Q_EMIT dataChanged(index(0), index(rowCount() - 1));
  Q_EMIT changed();
}

QStringList BulkUploadModel::forgetMeasures() {
  QStringList paths;
  for (DroppedItem& item : items_) {
    item = {.path = item.path};
    paths.append(item.path);
  }
  unmeasured_ = items_.size();
  if (!items_.empty()) Q_EMIT dataChanged(index(0), index(rowCount() - 1));
  Q_EMIT changed();
  return paths;
}

void BulkUploadModel::removeSelected() {
  if (phase_ != Phase::collecting || selectedIndex_ >= rowCount()) return;
  beginRemoveRows({}, selectedIndex_, selectedIndex_);
  const auto gone = items_.begin() + selectedIndex_;
  paths_.remove(gone->path);
  unmeasured_ -= gone->isMeasured ? 0 : 1;
  items_.erase(gone);
  endRemoveRows();
  selectedIndex_ = std::clamp(selectedIndex_, 0, std::max(rowCount() - 1, 0));
  Q_EMIT changed();
}

void BulkUploadModel::reset() {
  beginResetModel();
  items_.clear();
  paths_.clear();
  unmeasured_ = 0;
  selectedIndex_ = 0;
  endResetModel();
  backToList();
}

QList<QUrl> BulkUploadModel::files() const {
  QList<QUrl> urls;
  for (const DroppedItem& item : items_) urls.append(QUrl::fromLocalFile(item.path));
  return urls;
}

void BulkUploadModel::select(int row) {
  const int wanted = std::clamp(row, 0, std::max(rowCount() - 1, 0));
  if (wanted == selectedIndex_) return;
  selectedIndex_ = wanted;
  Q_EMIT changed();
}

void BulkUploadModel::showWork(Phase phase, double progress) {
  progress_ = progress;
  enter(phase);
}

void BulkUploadModel::finish(const QUrl& link) {
  link_ = link;
  enter(Phase::done);
}

void BulkUploadModel::fail(const BulkUploadError& error) {
  error_ = error;
  enter(Phase::failed);
}

void BulkUploadModel::backToList() {
  link_.clear();
  error_.reset();
  copied_ = false;
  progress_ = 0;
  enter(Phase::collecting);
}

void BulkUploadModel::enter(Phase phase) {
  if (phase != phase_) resultButtonIndex_ = 0;
  phase_ = phase;
  Q_EMIT changed();
}

void BulkUploadModel::setCopied() {
  copied_ = true;
  Q_EMIT changed();
}

auto BulkUploadModel::resultActions() const -> std::vector<ResultAction> {
  if (phase_ == Phase::done) return {ResultAction::copyLink, ResultAction::startOver};
  if (phase_ == Phase::failed) return {ResultAction::tryAgain, ResultAction::startOver};
  return {};
}

void BulkUploadModel::selectResultButton(int index) {
  const int last = std::max(static_cast<int>(resultActions().size()) - 1, 0);
  resultButtonIndex_ = std::clamp(index, 0, last);
  Q_EMIT changed();
}

int BulkUploadModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(items_.size());
}

QVariant BulkUploadModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const DroppedItem& item = items_[static_cast<std::size_t>(index.row())];
  switch (role) {
    case NameRole:
      return visibleLine(item.name(), kShownName);
    case DetailRole:
      return detail(item);
    case IsFolderRole:
      return item.isFolder;
    case HasFaultRole:
      return !item.fault.isEmpty();
    case Qt::AccessibleTextRole:
      return spoken(item);
    default:
      return {};
  }
}
