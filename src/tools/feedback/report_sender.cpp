#include "tools/feedback/report_sender.h"

#include <QCoreApplication>

#include "services/bearer.h"
#include "services/service_error.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kTimeLimit = 120s;

std::vector<ClipboardImage> numbered(const std::vector<QByteArray>& snips) {
  std::vector<ClipboardImage> images;
  for (const QByteArray& png : snips) images.push_back({png, u"snip-%1.png"_s.arg(images.size() + 1), u"image/png"_s});
  return images;
}

}  // namespace

ReportError ReportError::badStatus(const HttpResponse& response) {
  return {httpFailure(u"Submission failed"_s, response)};
}

/// A keychain that does not open keeps nobody from saying so.
void ReportSender::send(const Report& report, const TokenEnvironment& environment, const JobRef& job, Done done) {
  services_.credential.read(
      job, [this, prepared = request(report, environment), job, done = std::move(done)](const auto& secret) mutable {
        // Only what can stand in a header.
        if (secret && !bearer(*secret).isEmpty()) prepared.headers.emplace_back("X-Person-Token", *secret);
        services_.http.send(prepared, job, [done = std::move(done)](const auto& response) {
          if (!response) return done(std::unexpected(ReportError::of(response.error().description())));
          if (!response->isSuccess()) return done(std::unexpected(ReportError::badStatus(*response)));
          done({});
        });
      });
}

HttpRequest ReportSender::request(const Report& report, const TokenEnvironment& environment) const {
  Multipart::Fields fields = report.fields;
  if (const QString version = QCoreApplication::applicationVersion(); !version.isEmpty())
    fields.emplace(u"appVersion"_s, version);
  fields.emplace(u"osVersion"_s, services_.system.osVersion());
  HttpRequest request = Multipart::request(environment.endpoint, environment.token, numbered(report.snips), fields);
  request.timeout = kTimeLimit;
  request.answerDeadline = kTimeLimit;
  return request;
}
