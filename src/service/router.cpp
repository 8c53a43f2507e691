#include "service/router.h"

void Router::add(const QByteArray& method, const QByteArray& path, std::unique_ptr<Endpoint> endpoint) {
  byPath_[path][method] = std::move(endpoint);
}

Router::Route Router::find(const QByteArray& method, const QByteArray& path, const QByteArray& authorization) const {
  const auto methods = byPath_.find(path);
  if (methods == byPath_.end()) return {nullptr, Response::text(404, "There is nothing here.")};
  const auto found = methods->second.find(method);
  if (found == methods->second.end()) return {nullptr, Response::text(405, "This path is asked in another way.")};
  Endpoint* const endpoint = found->second.get();
  if (!endpoint->isOpen() && !bearer_.passes(authorization))
    return {nullptr, Response::text(401, "A valid credential is needed.")};
  return {endpoint, {}};
}
