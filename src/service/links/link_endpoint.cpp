#include "service/links/link_endpoint.h"

#include <QDateTime>
#include <QUrl>

#include "service/links/byte_range.h"
#include "service/links/link_page.h"
#include "service/log.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kPrefix = sizeof "/l/" - 1;
/// A link may be taken down; nobody keeps it for long.
constexpr auto kCaching = "private, max-age=3600";
/// What a file is shown as can do nothing, whatever it holds; the style is what browsers put around a picture.
constexpr auto kPolicy = "default-src 'none'; style-src 'unsafe-inline'; frame-ancestors 'none'; sandbox";

QByteArray etag(const Link& link) { return '"' + link.blob.first(32).toLatin1() + '"'; }

/// A browser that was led here, not a program and not a picture within a page.
bool isForPerson(const Request& request) {
  return request.header("accept").contains("text/html") && !request.headers.contains("range");
}

QByteArray disposition(const Link& link) {
  QByteArray plain;
  for (const QChar c : link.name) {
    const bool isPlain = c.unicode() >= 0x20 && c.unicode() < 0x7f && !u"\"\\%"_s.contains(c);
    plain.append(isPlain ? c.toLatin1() : '_');
  }
  return QByteArray(link.isShown ? "inline" : "attachment") + "; filename=\"" + plain + "\"; filename*=UTF-8''" +
         QUrl::toPercentEncoding(link.name);
}

QList<std::pair<QByteArray, QByteArray>> headers(const Link& link) {
  return {{"ETag", etag(link)},
          {"Accept-Ranges", "bytes"},
          {"Cache-Control", kCaching},
          {"Content-Disposition", disposition(link)},
          {"Content-Security-Policy", kPolicy},
          {"Vary", "Accept"}};
}

ByteRange wantedRange(const Request& request, const Link& link) {
  const QByteArray condition = request.header("if-range");
  const bool isCurrent = condition.isEmpty() || condition == etag(link);
  return ByteRange::of(isCurrent ? request.header("range") : QByteArray(), link.size);
}

bool isKnown(const Request& request, const Link& link) {
  const QList<QByteArray> tags = request.header("if-none-match").split(',');
  return std::ranges::any_of(tags, [&](QByteArray tag) {
    tag = tag.trimmed();
    if (tag.startsWith("W/")) tag = tag.mid(2);
    return tag == "*" || tag == etag(link);
  });
}

}  // namespace

void LinkEndpoint::answer(const Request& request, const QByteArray&, const Reply& reply) {
  Response response = find(request);
  // The address is a secret: it goes to no other site and into no index.
  response.add("Referrer-Policy", "no-referrer");
  response.add("X-Robots-Tag", "noindex");
  reply(std::move(response));
}

Response LinkEndpoint::find(const Request& request) const {
  const QByteArray rest = request.path.mid(kPrefix);
  const auto slash = rest.indexOf('/');
  const bool isDirect = slash >= 0;
  const bool person = isForPerson(request);
  const auto found = links_.find(QString::fromLatin1(rest.first(isDirect ? slash : rest.size())));
  if (!found) {
    logLine("storage: %s", qPrintable(found.error().detail));
    return linkRefusal(503, u"Not at the moment"_s, found.error().description(), person);
  }
  if (!*found)
    return linkRefusal(404, u"No such link"_s, u"It may be cut off, or it expired more than a month ago."_s, person);
  const Link& link = **found;
  if (link.expiresAt <= QDateTime::currentSecsSinceEpoch())
    return linkRefusal(410, u"This link has expired"_s, u"This link has expired. Links last 90 days."_s, person);
  if (person && !isDirect && !link.isShown) {
    Response page = linkPage(link);
    page.add("Vary", "Accept");
    return page;
  }
  return deliver(link, request);
}

Response LinkEndpoint::deliver(const Link& link, const Request& request) const {
  if (isKnown(request, link)) return {.status = 304, .contentType = {}, .headers = headers(link)};
  const ByteRange range = wantedRange(request, link);
  if (range.kind == ByteRange::Kind::impossible) {
    Response response = Response::text(416, "The file has no such range.");
    response.add("Content-Range", "bytes */" + QByteArray::number(link.size));
    return response;
  }
  auto reading = blobs_.open(link.blob);
  if (!reading || reading->size != link.size) {
    logLine("the bytes of a link are missing: blob %s", qPrintable(link.blob));
    return Response::text(500, "The service has lost these bytes.");
  }
  const bool isPart = range.kind == ByteRange::Kind::part;
  Response response{.status = isPart ? 206 : 200,
                    .contentType = link.type,
                    .headers = headers(link),
                    .file = FileSlice{std::move(reading->file), range.offset, range.size}};
  if (isPart)
    response.add("Content-Range", "bytes " + QByteArray::number(range.offset) + '-' +
                                      QByteArray::number(range.offset + range.size - 1) + '/' +
                                      QByteArray::number(link.size));
  return response;
}
