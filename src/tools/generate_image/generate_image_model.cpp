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
  change([&] {
    if (!references_.empty() && references_.front().id == id) isEdit_ = false;
    std::erase_if(references_, [id](const ImageReference& one) { return one.id == id; });
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
