#include "tools/screen_ask/image_ask_client.h"

#include "tools/asking/image_question.h"

using namespace Qt::StringLiterals;

void ImageAskClient::ask(const AskQuestion& question, const QByteArray& image, const AskCall& call) {
  const ClipboardImage capture{image, u"capture.png"_s, u"image/png"_s};
  answers_.ask<ImageAskEnvironment>(
      kImageAnswersMetric,
      [question, capture](const AskPlace& place) { return imageQuestion(place, question, {capture}); }, call);
}
