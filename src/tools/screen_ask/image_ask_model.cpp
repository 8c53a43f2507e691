#include "tools/screen_ask/image_ask_model.h"

#include "capture/image_decoding.h"

void ImageAskModel::setCapture(const QByteArray& png) {
  imagePNG_ = png;
  previewImage_ = decodedImage(png);
  clearConversation();
  Q_EMIT captureChanged();
}

void ImageAskModel::clear() {
  imagePNG_.clear();
  previewImage_ = {};
  clearConversation();
  Q_EMIT captureChanged();
}
