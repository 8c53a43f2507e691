#include "tools/generate_image/generate_image_error.h"

using namespace Qt::StringLiterals;

GenerateImageError GenerateImageError::of(const MeteredFailure& failure) {
  if (const auto* bad = std::get_if<MeteredError>(&failure))
    return of(httpFailure(u"Generation failed"_s, {bad->status, {}, bad->body}));
  return of(::description(failure));
}

GenerateImageError GenerateImageError::noImage(const QByteArray& body) {
  return of(u"No image in response: "_s + beginning(body));
}

GenerateImageError GenerateImageError::damagedImage() {
  return of(u"The service sent an image that is damaged or too large."_s);
}
