#include "tools/generate_image/generate_image_model.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestName = 48;

}  // namespace

void GenerateImageModel::setPrompt(const QString& prompt) {
  if (prompt == prompt_) return;
  change([&] {
    prompt_ = prompt;
    area_ = Area::prompt;
  });
}

void GenerateImageModel::setOptions(const ImageOptions& options) {
  if (options == options_) return;
  change([&] { options_ = options; });
}

bool GenerateImageModel::attach(const QByteArray& png, const QImage& thumbnail) {
  if (!canAttach()) return false;
  change([&] {
    references_.push_back({++lastReference_, png, thumbnail});
    error_.clear();
  });
  return true;
}

/// Without the image that was to be changed, the others are references again.
void GenerateImageModel::removeReference(int id) {
  const auto one = std::ranges::find(references_, id, &ImageReference::id);
  if (one == references_.end()) return;
  change([&] {
    if (one == references_.begin()) isEdit_ = false;
    const auto next = references_.erase(one);
    if (references_.empty() && area_ == Area::references) area_ = Area::prompt;
    if (selectedReference_ == id && !references_.empty())
      selectedReference_ = next == references_.end() ? references_.back().id : next->id;
  });
}

void GenerateImageModel::moveInReferences(int delta) {
  if (references_.empty()) return;
  change([&] {
    const auto selected = std::ranges::find(references_, selectedReference(), &ImageReference::id);
    const auto row = selected == references_.end() ? 0 : selected - references_.begin() + delta;
    const auto last = std::ssize(references_) - 1;
    selectedReference_ = references_[static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(row, 0, last))].id;
    area_ = Area::references;
  });
}

void GenerateImageModel::removeReferences() {
  change([&] {
    references_.clear();
    isEdit_ = false;
    if (area_ == Area::references) area_ = Area::prompt;
  });
}

void GenerateImageModel::edit(const QByteArray& png, const QImage& thumbnail) {
  change([&] {
    references_.assign(1, {++lastReference_, png, thumbnail});
    isEdit_ = true;
    error_.clear();
    area_ = Area::prompt;
  });
}

ImageRequest GenerateImageModel::request() const {
  ImageRequest request{prompt_.trimmed(), options_, isEdit(), {}};
  for (const ImageReference& one : references_) request.references.push_back(one.png);
  return request;
}

void GenerateImageModel::clear() {
  change([&] {
    prompt_.clear();
    references_.clear();
    isEdit_ = false;
    startedAt_.reset();
    shown_.reset();
    error_.clear();
    selectedID_.clear();
    area_ = Area::prompt;
  });
}

void GenerateImageModel::start(Time now) {
  change([&] {
    startedAt_ = now;
    error_.clear();
    area_ = Area::prompt;
  });
}

void GenerateImageModel::stop() {
  change([&] { startedAt_.reset(); });
}

void GenerateImageModel::fail(const QString& reason) {
  change([&] {
    startedAt_.reset();
    error_ = reason;
    area_ = Area::prompt;
  });
}

void GenerateImageModel::finish(ShownImage image) {
  change([&] {
    startedAt_.reset();
    error_.clear();
    area_ = Area::prompt;
    selectedID_ = image.historyID;
    shown_ = std::move(image);
  });
}

void GenerateImageModel::show(ShownImage image) {
  change([&] {
    error_.clear();
    shown_ = std::move(image);
  });
}

void GenerateImageModel::hideShown() {
  change([&] {
    shown_.reset();
    selectedID_.clear();
  });
}

void GenerateImageModel::miss(const QString& reason) {
  change([&] {
    shown_.reset();
    error_ = reason;
  });
}

void GenerateImageModel::setError(const QString& reason) {
  change([&] { error_ = reason; });
}

void GenerateImageModel::setNotice(const QString& notice) {
  change([&] { notice_ = notice; });
}

void GenerateImageModel::setArea(Area area) {
  if (area != area_) change([&] { area_ = area; });
}

void GenerateImageModel::select(const QString& id) {
  change([&] { selectedID_ = id; });
}

void GenerateImageModel::setDeletionAsked(bool isAsked) {
  change([&] { isDeletionAsked_ = isAsked; });
}

QString suggestedFileName(const QString& prompt) {
  QString name;
  for (const QChar character : prompt.toLower()) {
    if (name.size() >= kLongestName) break;
    if (character.isLetterOrNumber())
      name += character;
    else if (!name.isEmpty() && !name.endsWith(u'-'))
      name += u'-';
  }
  // Not in the middle of a word, unless it is the only one.
  if (name.size() >= kLongestName && name.lastIndexOf(u'-') > 0) name.truncate(name.lastIndexOf(u'-'));
  while (name.endsWith(u'-')) name.chop(1);
  return name.isEmpty() ? u"image.png"_s : name + u".png"_s;
}
