#include "tools/text_transform/ai_text_transform_error.h"

using namespace Qt::StringLiterals;

AITextTransformError AITextTransformError::badStatus(int status, const QByteArray& body) {
  return of(httpFailure(u"Transform failed"_s, {status, {}, body}));
}

AITextTransformError AITextTransformError::noText(const QByteArray& body) {
  return of(u"No text in response: "_s + beginning(body));
}
