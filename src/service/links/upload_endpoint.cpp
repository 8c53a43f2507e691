#include "service/links/upload_endpoint.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "service/accounts/secret.h"
#include "service/links/content_kind.h"

using namespace Qt::StringLiterals;

namespace {

/// What a form adds to its file: heads, delimiters, other fields.
constexpr qint64 kRoomForHeads = 1'000'000;
/// Of the disk, left to the database.
constexpr qint64 kReserve = 32'000'000;
constexpr qint64 kLifetime = 90LL * 24 * 3600;

/// 24 characters: more than anybody can guess.
QString makeId() {
  constexpr qsizetype kCharacters = 24;
  return QString::fromLatin1(makeSecret().first(kCharacters));
}

class Upload final : public FormExchange {
 public:
  Upload(const UploadEndpoint::Services& services, const FormRules& rules, const QByteArray& boundary,
         const Request& request, QByteArray base)
      : FormExchange(services.form, rules, boundary),
        writes_(services.writes),
        owner_(request.caller.owner),
        base_(std::move(base)) {}

 private:
  void accept(Form form, const Reply& reply) override {
    if (form.files.empty()) return reply(Response::text(400, "The form has no file."));
    for (const FormFile& file : form.files) links_.append(linkTo(file));
    form_ = std::move(form);
    writes_.add([this](Connection& connection) { return insert(connection); },
                [this, reply](const Stored<void>& written) {
                  form_.files.clear();
                  reply(written ? success() : storageFailure(written.error()));
                });
  }

  Link linkTo(const FormFile& file) const {
    const ContentKind kind = ContentKind::of(file.type, file.beginning);
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    return {makeId(), file.blob.hash, file.blob.size, safeFileName(file.name), kind.type, kind.isShown, owner_,
            now,      now + kLifetime};
  }

  Stored<void> insert(Connection& connection) const {
    for (const Link& link : links_)
      if (const auto done = LinkStore::insert(connection, link); !done) return done;
    return {};
  }

  Response success() const {
    QJsonArray urls;
    for (const Link& link : links_) urls.append(QString::fromUtf8(base_) + u"/l/"_s + link.id);
    const qint64 expiresAt = links_.first().expiresAt;
    const QJsonObject answer{
        {u"url"_s, urls.first()},
        {u"urls"_s, urls},
        {u"size"_s, links_.first().size},
        {u"expiresAt"_s, QDateTime::fromSecsSinceEpoch(expiresAt, Qt::UTC).toString(Qt::ISODate)},
    };
    return {.status = 200, .body = QJsonDocument(answer).toJson(QJsonDocument::Compact)};
  }

  WriteQueue& writes_;
  QString owner_;
  QByteArray base_;
  /// Holds the blobs until their links are committed.
  Form form_;
  QList<Link> links_;
};

}  // namespace

UploadEndpoint::UploadEndpoint(Services services, const QList<QByteArray>& parts, int mostFiles)
    : services_(services), rules_{.files = parts, .mostFiles = mostFiles, .largestFile = kLargestUpload} {}

qint64 UploadEndpoint::maximumBody() const { return kLargestUpload + kRoomForHeads; }

std::expected<std::unique_ptr<Exchange>, Response> UploadEndpoint::begin(const Request& request) {
  const auto boundary = MultipartReader::boundary(request.header("content-type"));
  if (!boundary) return std::unexpected(Response::text(415, "A form with a file is wanted."));
  const auto base = services_.address.of(request);
  if (!base) return std::unexpected(Response::text(500, "The service's public URL is not configured."));
  if (request.bodySize() + kReserve > services_.form.blobs.available())
    return std::unexpected(FormExchange::storageFailure({StorageError::Reason::full, u"no room for an upload"_s}));
  return std::make_unique<Upload>(services_, rules_, *boundary, request, *base);
}
