#include "services/multipart.h"

#include <QStringEncoder>
#include <QUuid>

#include "core/net/request_body.h"
#include "services/bearer.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kTimeLimit = 60s;

/// `text` as UTF-8; nothing when it holds half a surrogate pair.
QByteArray encoded(const QString& text) {
  QStringEncoder utf8(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless);
  QByteArray bytes = utf8(text);
  return utf8.hasError() ? QByteArray() : bytes;
}

/// A name as it stands between double quotes: what would end the quotes or the line is escaped as browsers do it.
QString quoted(QString name) { return name.replace(u'"', "%22"_L1).replace(u'\r', "%0D"_L1).replace(u'\n', "%0A"_L1); }

/// A media type as it stands on a line of its own.
QString onOneLine(QString mimeType) { return mimeType.remove(u'\r').remove(u'\n'); }

/// The fixed texts between the pieces of one body.
class Layout {
 public:
  const QString& boundary() const { return boundary_; }

  QByteArray field(const QString& name, const QString& value) const {
    return opening() + encoded(u"Content-Disposition: form-data; name=\"%1\"\r\n\r\n"_s.arg(quoted(name))) +
           encoded(value) + "\r\n";
  }
  QByteArray fields(const Multipart::Fields& fields) const {
    QByteArray bytes;
    for (const auto& [name, value] : fields) bytes += field(name, value);
    return bytes;
  }
  /// Up to the first byte of the content, after which a line break belongs.
  QByteArray head(QLatin1StringView field, const QString& filename, const QString& mimeType) const {
    const QString disposition = u"Content-Disposition: form-data; name=\""_s + field + u"\"; filename=\""_s;
    return opening() + encoded(disposition + quoted(filename) + u"\"\r\n"_s) +
           encoded(u"Content-Type: "_s + onOneLine(mimeType) + u"\r\n\r\n"_s);
  }
  QByteArray image(QLatin1StringView field, const ClipboardImage& image) const {
    return head(field, image.filename, image.mimeType) + image.data + "\r\n";
  }
  QByteArray images(const std::vector<ClipboardImage>& images) const {
    QByteArray bytes;
    for (const ClipboardImage& one : images) bytes += image("files"_L1, one);
    return bytes;
  }
  QByteArray closing() const { return "--" + boundary_.toLatin1() + "--\r\n"; }

 private:
  QByteArray opening() const { return "--" + boundary_.toLatin1() + "\r\n"; }

  QString boundary_ = u"Vantle-"_s + QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
};

HttpRequest requestOf(const QUrl& url, const QByteArray& token, const Layout& layout) {
  HttpRequest request{.method = "POST", .url = url, .timeout = kTimeLimit};
  request.headers.emplace_back("Content-Type", "multipart/form-data; boundary=" + layout.boundary().toLatin1());
  addBearer(request.headers, token);
  return request;
}

}  // namespace

HttpRequest Multipart::request(const QUrl& url, const QByteArray& token, const ClipboardImage& image,
                               const Fields& fields) {
  return request(url, token, image, {}, fields);
}

HttpRequest Multipart::request(const QUrl& url, const QByteArray& token, const ClipboardImage& primaryImage,
                               const std::vector<ClipboardImage>& additionalImages, const Fields& fields) {
  const Layout layout;
  HttpRequest request = requestOf(url, token, layout);
  request.body = layout.fields(fields) + layout.image("file"_L1, primaryImage) + layout.images(additionalImages) +
                 layout.closing();
  return request;
}

HttpRequest Multipart::request(const QUrl& url, const QByteArray& token, const std::vector<ClipboardImage>& images,
                               const Fields& fields) {
  const Layout layout;
  HttpRequest request = requestOf(url, token, layout);
  request.body = layout.fields(fields) + layout.images(images) + layout.closing();
  return request;
}

std::expected<HttpRequest, FileError> Multipart::request(const QUrl& url, const QByteArray& token,
                                                         const UploadFile& file) {
  const Layout layout;
  auto body =
      RequestBody::around(layout.head("files"_L1, file.filename, file.mimeType), file.path, "\r\n" + layout.closing());
  if (!body) return std::unexpected(body.error());
  HttpRequest request = requestOf(url, token, layout);
  request.stream = std::move(*body);
  return request;
}
