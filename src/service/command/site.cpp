#include "service/command/site.h"

#include "service/accounts/quota_endpoint.h"
#include "service/ai/ai_endpoints.h"
#include "service/ai/command_provider.h"
#include "service/health_endpoint.h"
#include "service/links/link_endpoint.h"
#include "service/links/upload_endpoint.h"
#include "service/reports/event_endpoint.h"

using namespace Qt::StringLiterals;

namespace {

/// They wait for the disk, not for a core.
constexpr int kWorkers = 16;
/// Of one form for many files at once.
constexpr int kMostFiles = 16;

TokenGate::Limits limits(const ServeOptions& options) {
  return {static_cast<double>(options.ratePerAddress), static_cast<double>(options.ratePerToken)};
}

/// Where commands work.
QString aiFolder(const Place& place) { return place.folder() + u"/ai"_s; }

ProviderSlot::Audience audience(const ServeOptions& options) {
  return options.isEmbedded ? ProviderSlot::Audience::person : ProviderSlot::Audience::operatorOfService;
}

}  // namespace

Site::Site(Place& place, const ServeOptions& options, const QByteArray& credential)
    : address_(options.publicUrl),
      writes_(place.database()),
      quota_(place.database(), writes_),
      gate_(place.database(), limits(options), credential, options.isEmbedded ? u"embedded"_s : u"self-hosted"_s),
      providers_(std::make_shared<ProviderSlot>(audience(options), aiFolder(place))),
      workers_(kWorkers),
      desk_(options.aiConcurrency),
      router_(gate_),
      maintenance_(place.database(), place.blobs()) {
  router_.add("GET", "/health", std::make_unique<HealthEndpoint>(place.database()));
  router_.add("GET", "/v1/quota", std::make_unique<QuotaEndpoint>(quota_));
  router_.add("POST", "/v1/events", std::make_unique<EventEndpoint>(writes_));
  addLinks(place);
  addReports(place);
  CommandProvider::removeLeftovers(aiFolder(place));
  providers_->set(options.provider);
  addAIEndpoints(router_, {*providers_, desk_, workers_, quota_, pictureRoom_, options.aiTimeLimit});
}

void Site::addLinks(Place& place) {
  const UploadEndpoint::Services services{{place.blobs(), workers_}, writes_, address_};
  router_.add("POST", "/v1/images", std::make_unique<UploadEndpoint>(services, QList<QByteArray>{"file"}, 1));
  router_.add("POST", "/v1/upload",
              std::make_unique<UploadEndpoint>(services, QList<QByteArray>{"files", "file"}, kMostFiles));
  router_.add("GET", "/l/", std::make_unique<LinkEndpoint>(place.database(), place.blobs()));
}

void Site::addReports(Place& place) {
  const ReportEndpoint::Services services{{place.blobs(), workers_}, place.database(), writes_};
  const ReportKind feedback{.name = u"feedback"_s, .text = "message", .hasCategory = true};
  const ReportKind suggestion{.name = u"suggestion"_s, .text = "suggestion"};
  router_.add("POST", "/v1/feedback", std::make_unique<ReportEndpoint>(services, feedback));
  router_.add("POST", "/v1/tool-suggestions", std::make_unique<ReportEndpoint>(services, suggestion));
}
