#include "services/service_error.h"

#include <QStringDecoder>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kShownCharacters = 80;

}  // namespace

QString decoded(const QByteArray& body) {
  QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
  QString text = utf8(body);
  return utf8.hasError() ? QString() : text;
}

QString beginning(const QByteArray& body) {
  const QString text = decoded(body);
  qsizetype end = 0;
  for (qsizetype characters = 0; characters < kShownCharacters && end < text.size(); ++characters)
    end += text[end].isHighSurrogate() && end + 1 < text.size() ? 2 : 1;
  return text.left(end);
}

QString httpFailure(const QString& phrase, const HttpResponse& response) {
  return u"%1 (HTTP %2) "_s.arg(phrase).arg(response.status) + beginning(response.body);
}

ServiceError ServiceError::badStatus(const HttpResponse& response) {
  if (response.status == 401 || response.status == 403)
    return {Reason::badStatus, u"The service does not accept the credential (HTTP %1)."_s.arg(response.status)};
  return {Reason::badStatus, httpFailure(u"Request failed"_s, response)};
}

QString ServiceError::description() const {
  if (reason == Reason::noCredential) return u"Enter your credential first."_s;
  if (reason == Reason::badAnswer) return u"What answers there is not Vantle's service."_s;
  return detail;
}
