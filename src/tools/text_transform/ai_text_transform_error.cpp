#include "tools/text_transform/ai_text_transform_error.h"

using namespace Qt::StringLiterals;

QString AITextTransformError::description() const {
  switch (reason) {
    case Reason::badStatus:
      return httpFailure(u"Transform failed"_s, {status, {}, body});
    case Reason::noText:
      return u"No text in response: "_s + beginning(body);
    case Reason::other:
      break;
  }
  return detail;
}
