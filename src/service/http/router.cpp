#include "service/http/router.h"

namespace {

Response methodRefusal(const QByteArray& allowed) {
  Response response = Response::text(405, "This path is asked in another way.");
  response.add("Allow", allowed);
  return response;
}

}  // namespace

void Router::add(const QByteArray& method, const QByteArray& path, std::unique_ptr<Endpoint> endpoint) {
  byPath_[path][method] = std::move(endpoint);
}

const std::pair<const QByteArray, Router::Methods>* Router::lookUp(const QByteArray& path) const {
  if (const auto exact = byPath_.find(path); exact != byPath_.end() && !path.endsWith('/')) return &*exact;
  const auto slash = path.indexOf('/', 1);
  const auto folder = byPath_.find(path.first(slash + 1));
  return slash > 0 && slash + 1 < path.size() && folder != byPath_.end() ? &*folder : nullptr;
}

Router::Route Router::find(Request& request) const {
  if (request.isAmbiguous()) return {.exchange = std::unexpected(Response::text(400, "Where does the body end?"))};
  const auto* const found = lookUp(request.path);
  if (!found) return {.exchange = std::unexpected(Response::text(404, "There is nothing here."))};
  const auto& [path, methods] = *found;
  const QByteArray label = path.endsWith('/') ? path + "{id}" : path;
  const auto method = methods.find(request.method == "HEAD" ? QByteArray("GET") : request.method);
  if (method == methods.end())
    return {.label = label, .exchange = std::unexpected(methodRefusal(methods.begin()->first))};
  Endpoint& endpoint = *method->second;
  return {.label = label, .maximumBody = endpoint.maximumBody(), .exchange = begin(endpoint, request)};
}

std::expected<std::unique_ptr<Exchange>, Response> Router::begin(Endpoint& endpoint, Request& request) const {
  if (!endpoint.isUnlimited()) {
    auto admitted = gate_.admit(request, endpoint.access());
    if (!admitted) return std::unexpected(std::move(admitted).error());
    request.caller = *admitted;
  }
  if (request.bodySize() > endpoint.maximumBody())
    return std::unexpected(Response::text(413, "The body is too large."));
  return endpoint.begin(request);
}
