#include "service/health_endpoint.h"

using namespace Qt::StringLiterals;

void HealthEndpoint::answer(const Request&, const QByteArray&, const Reply& reply) {
  const bool isReached = database_.connection().run(u"SELECT version FROM schema_version"_s).has_value();
  reply(isReached ? Response{.status = 200, .body = R"({"status":"ok"})"}
                  : Response{.status = 503, .body = R"({"status":"no database"})"});
}
