#include "app/updates/update_source.h"

#include "core/net/http_client.h"
#include "platform/updater.h"

using namespace Qt::StringLiterals;

namespace {

/// What is downloaded is run later: nobody on the way may change it, though its signature would tell.
bool isSafe(const QUrl& url) {
  return url.scheme() == "https"_L1 || (url.scheme() == "http"_L1 && isLoopbackHost(url.host()));
}

}  // namespace

UpdateSource UpdateSource::ofThisBuild() {
  return {QUrl(QStringLiteral(VANTLE_UPDATE_FOLDER)), QStringLiteral(VANTLE_UPDATE_PUBLISHER)};
}

bool UpdateSource::serves(const Updater& updater) const {
  return !updater.downloadName().isEmpty() && !publisher.isEmpty() && isSafe(folder);
}
