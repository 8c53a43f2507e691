#include "service/accounts/secret.h"

#include <QCryptographicHash>
#include <QRandomGenerator>

#include <array>

QByteArray makeSecret() {
  std::array<quint32, 8> random{};
  QRandomGenerator::system()->fillRange(random.data(), random.size());
  const QByteArray bytes(reinterpret_cast<const char*>(random.data()), sizeof random);
  return bytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}

QString secretDigest(QByteArrayView secret) {
  return QString::fromLatin1(QCryptographicHash::hash(secret.toByteArray(), QCryptographicHash::Sha256).toHex());
}
