#include "tools/text_transform/ai_text_transform_error.h"

using namespace Qt::StringLiterals;

AITextTransformError AITextTransformError::noText(const QByteArray& body) {
  return of(u"No text in response: "_s + beginning(body));
}
