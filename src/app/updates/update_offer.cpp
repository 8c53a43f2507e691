#include "app/updates/update_offer.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QVersionNumber>

#include <algorithm>

#include "base/byte_count.h"

using namespace Qt::StringLiterals;

namespace {

/// Numbers and dots alone, so that it can be part of a file's name.
QVersionNumber number(const QString& version) {
  qsizetype end = 0;
  const QVersionNumber number = QVersionNumber::fromString(version, &end);
  return end == version.size() && number.segmentCount() >= 2 ? number : QVersionNumber();
}

bool isFileName(const QString& name) {
  const auto isPlain = [](QChar c) { return (c.isLetterOrNumber() && c.unicode() < 128) || u"._-"_s.contains(c); };
  return !name.isEmpty() && !name.startsWith(u'.') && std::ranges::all_of(name, isPlain);
}

}  // namespace

std::expected<std::optional<UpdateOffer>, QString> UpdateOffer::read(const QByteArray& description, const QUrl& address,
                                                                     const QString& running) {
  const QJsonObject object = QJsonDocument::fromJson(description).object();
  const QString file = object["file"_L1].toString();
  UpdateOffer offer{object["version"_L1].toString(), address.resolved(QUrl(file)),
                    QByteArray::fromHex(object["sha256"_L1].toString().toLatin1()), object["bytes"_L1].toInteger()};
  if (number(offer.version).isNull()) return std::unexpected(u"its description names no version"_s);
  if (number(offer.version) <= number(running)) return std::nullopt;
  const bool isWhole = offer.digest.size() == QCryptographicHash::hashLength(QCryptographicHash::Sha256);
  if (!isWhole || !isFileName(file) || offer.bytes <= 0)
    return std::unexpected(u"the description of %1 does not fit"_s.arg(offer.version));
  if (offer.bytes > kLargest)
    return std::unexpected(
        u"%1 is larger than the %2 that are downloaded at most"_s.arg(offer.version, byteCountText(kLargest)));
  return offer;
}
