#include "service/reports/report_endpoint.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

#include <array>

#include "service/accounts/token_store.h"
#include "service/links/content_kind.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kMostImages = 3;
/// A picture of a large screen that compresses badly.
constexpr qint64 kLargestImage = 40'000'000;
constexpr qint64 kLargestReport = kMostImages * kLargestImage + 1'000'000;
constexpr qsizetype kLongestText = 20'000;
constexpr std::array kCategories = {"bug"_L1, "feedback"_L1, "question"_L1};

/// The row's number, for the images.
Stored<qint64> insertReport(Connection& connection, const QVariantList& values) {
  const auto rows = connection.run(
      u"INSERT INTO reports (kind, received_at, owner, person, body) VALUES (?, ?, ?, ?, ?) RETURNING id"_s, values);
  if (!rows) return std::unexpected(rows.error());
  return rows->front().front().toLongLong();
}

class Report final : public FormExchange {
 public:
  Report(const ReportEndpoint::Services& services, const FormRules& rules, const QByteArray& boundary,
         const ReportKind& kind, const Request& request)
      : FormExchange(services.form, rules, boundary),
        services_(services),
        kind_(kind),
        owner_(request.caller.name),
        personSecret_(request.header("x-person-token")) {}

 private:
  void accept(Form form, const Reply& reply) override {
    const auto body = read(form);
    if (!body) return reply(Response::text(400, body.error()));
    form_ = std::move(form);
    const QVariant name = person();
    const QVariantList values{kind_.name, QDateTime::currentSecsSinceEpoch(), owner_, name,
                              QString::fromUtf8(QJsonDocument(*body).toJson(QJsonDocument::Compact))};
    services_.writes.add([this, values](Connection& connection) { return insert(connection, values); },
                         [this, reply](const Stored<void>& written) {
                           form_.files.clear();
                           reply(written ? Response{.status = 200, .body = "{}"} : storageFailure(written.error()));
                         });
  }

  std::expected<QJsonObject, const char*> read(const Form& form) const {
    QJsonObject body;
    for (const auto& [name, value] : form.fields.asKeyValueRange())
      body.insert(QString::fromUtf8(name), QString::fromUtf8(value).remove(QChar::Null));
    const QString text = body.value(QString::fromUtf8(kind_.text)).toString();
    if (text.trimmed().isEmpty()) return std::unexpected("There are no words in it.");
    if (text.size() > kLongestText) return std::unexpected("The text is too long.");
    const QString category = body.value("category"_L1).toString();
    if (kind_.hasCategory && std::ranges::find(kCategories, category) == kCategories.end())
      return std::unexpected("The category is none that there is.");
    return body;
  }

  /// Who it is from. What somebody has to say is taken even if his credential is not known any more.
  QVariant person() const {
    if (personSecret_.isEmpty()) return {};
    const auto token = tokens::find(services_.database.connection(), personSecret_);
    return token && *token ? QVariant((*token)->name) : QVariant();
  }

  Stored<void> insert(Connection& connection, const QVariantList& values) const {
    const auto report = insertReport(connection, values);
    if (!report) return std::unexpected(report.error());
    for (std::size_t i = 0; i < form_.files.size(); ++i) {
      const FormFile& file = form_.files[i];
      const auto done = connection.run(
          u"INSERT INTO report_images (report, position, blob, size, name, type) VALUES (?, ?, ?, ?, ?, ?)"_s,
          {*report, static_cast<int>(i) + 1, file.blob.hash, file.blob.size, safeFileName(file.name),
           QString::fromLatin1(ContentKind::of(file.type, file.beginning).type)});
      if (!done) return std::unexpected(done.error());
    }
    return {};
  }

  ReportEndpoint::Services services_;
  const ReportKind& kind_;
  QString owner_;
  QByteArray personSecret_;
  Form form_;
};

}  // namespace

ReportEndpoint::ReportEndpoint(Services services, const ReportKind& kind)
    : services_(services),
      kind_(kind),
      rules_{.files = {"files"},
             .mostFiles = kMostImages,
             .largestFile = kLargestImage,
             .fields = {"category", kind.text, "appVersion", "osVersion"}} {}

qint64 ReportEndpoint::maximumBody() const { return kLargestReport; }

std::expected<std::unique_ptr<Exchange>, Response> ReportEndpoint::begin(const Request& request) {
  const auto boundary = MultipartReader::boundary(request.header("content-type"));
  if (!boundary) return std::unexpected(Response::text(415, "A form is wanted."));
  return std::make_unique<Report>(services_, rules_, *boundary, kind_, request);
}
