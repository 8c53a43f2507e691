#include "service/bearer_check.h"

#include <QCryptographicHash>
#include <QRandomGenerator>

#include <array>

namespace {

constexpr QByteArrayView kScheme = "Bearer ";

// Digests are of one length whatever was sent, so that not even the length shows in the time it takes.
QByteArray digest(QByteArrayView credential) {
  return QCryptographicHash::hash(credential.toByteArray(), QCryptographicHash::Sha256);
}

}  // namespace

BearerCheck::BearerCheck(const QByteArray& credential) : isSet_(!credential.isEmpty()), digest_(digest(credential)) {}

bool BearerCheck::passes(const QByteArray& authorization) const {
  if (!isSet_ || !authorization.startsWith(kScheme)) return false;
  const QByteArray sent = digest(QByteArrayView(authorization).sliced(kScheme.size()));
  int difference = 0;
  for (qsizetype i = 0; i < digest_.size(); ++i) difference |= digest_[i] ^ sent[i];
  return difference == 0;
}

QByteArray BearerCheck::makeCredential() {
  std::array<quint32, 8> random{};
  QRandomGenerator::system()->fillRange(random.data(), random.size());
  const QByteArray bytes(reinterpret_cast<const char*>(random.data()), sizeof random);
  return bytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}
