#include "services/base_url.h"

#include "core/net/http_client.h"

using namespace Qt::StringLiterals;

QString BaseUrlError::description() const {
  switch (reason) {
    case Reason::insecure:
      return u"It has to begin with https://. Plain http:// is for this computer itself only."_s;
    case Reason::hasMore:
      return u"Only host, port and path: no user name, no ? and no #."_s;
    case Reason::notAnAddress:
      break;
  }
  return u"This is not a web address, like https://vantle.example.com."_s;
}

std::expected<QUrl, BaseUrlError> parseBaseUrl(const QString& text) {
  using Reason = BaseUrlError::Reason;
  QUrl url(text.trimmed(), QUrl::StrictMode);
  if (!isWebAddress(url)) return std::unexpected(BaseUrlError{Reason::notAnAddress});
  if (!url.userInfo().isEmpty() || url.hasQuery() || url.hasFragment())
    return std::unexpected(BaseUrlError{Reason::hasMore});
  if (url.scheme() == "http"_L1 && !isLoopbackHost(url.host())) return std::unexpected(BaseUrlError{Reason::insecure});
  return below(url, {});
}

bool isWebAddress(const QUrl& url) {
  return url.isValid() && !url.host().isEmpty() && (url.scheme() == "https"_L1 || url.scheme() == "http"_L1);
}

QUrl below(QUrl base, const QString& path) {
  QString whole = base.path(QUrl::FullyEncoded);
  while (whole.endsWith(u'/')) whole.chop(1);
  base.setPath(whole + path, QUrl::StrictMode);
  return base;
}
