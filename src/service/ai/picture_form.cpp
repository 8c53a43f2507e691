#include "service/ai/picture_form.h"

#include "service/ai/picture_kind.h"

namespace {

constexpr qint64 kAllPictures = 512'000'000;
constexpr qsizetype kLargestPicture = 20'000'000;
/// A conversation is the longest of them.
constexpr qsizetype kLongestField = 4'000'000;

}  // namespace

bool PictureRoom::take(qint64 bytes) {
  if (used_.fetch_add(bytes) + bytes <= kAllPictures) return true;
  used_ -= bytes;
  return false;
}

PictureForm::PictureForm(const Rules& rules, const QByteArray& boundary, PictureRoom& room)
    : rules_(rules), room_(room), reader_(boundary, *this) {}

void PictureForm::fail(int status, const QByteArray& text) {
  if (failure_) return;
  failure_ = Response::text(status, text);
  target_ = nullptr;
  pictures_.clear();
  fields_.clear();
}

void PictureForm::take(std::string_view bytes) {
  if (failure_) return;
  reader_.feed(bytes);
  if (reader_.error()) fail(400, reader_.error());
}

void PictureForm::beginPart(const PartHead& head) {
  if (failure_) return;
  if (head.fileName && rules_.files.contains(head.name)) {
    if (pictures_.size() == rules_.mostFiles) return fail(400, "There are too many pictures.");
    target_ = &pictures_.emplace_back().bytes;
    longest_ = kLargestPicture;
  }
  if (!head.fileName && rules_.fields.contains(head.name)) {
    target_ = &fields_[head.name];
    longest_ = kLongestField;
  }
}

void PictureForm::takePart(std::string_view bytes) {
  if (!target_) return;
  const auto size = static_cast<qsizetype>(bytes.size());
  if (target_->size() + size > longest_) return fail(413, "The picture or text is too large.");
  if (!room_.take(size)) {
    fail(503, "Too many pictures at once; try again in a moment.");
    return failure_->add("Retry-After", "5");
  }
  taken_ += size;
  target_->append(QByteArrayView(bytes.data(), size));
}

void PictureForm::endPart() { target_ = nullptr; }

std::expected<void, Response> PictureForm::finish() {
  if (!failure_ && !reader_.isComplete()) fail(400, "The form is cut off.");
  for (Picture& picture : pictures_) {
    picture.type = pictureType(picture.bytes);
    if (picture.type.isEmpty()) {
      fail(415, "A picture is neither PNG, JPEG, GIF nor WebP.");
      break;
    }
  }
  if (failure_) return std::unexpected(std::move(*failure_));
  return {};
}
