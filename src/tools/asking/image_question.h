#pragma once

#include "services/clipboard_image.h"
#include "tools/asking/answer_client.h"
#include "tools/asking/ask_exchange.h"

/// The service's name of the counter of questions about images.
inline constexpr QLatin1StringView kImageAnswersMetric{"image_answers"};

/// A question about at least one image, the first of which it is about most.
HttpRequest imageQuestion(const AskPlace& place, const AskQuestion& question,
                          const std::vector<ClipboardImage>& images);
