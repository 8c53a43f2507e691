#pragma once

#include <QString>

#include <cstdint>

/// The port that the embedded service listened on last, kept beside its data: the links of an earlier run then open
/// again in the next one.
class KeptPort {
 public:
  explicit KeptPort(const QString& folder) : path_(folder + QStringLiteral("/port")) {}

  /// 0 when none is known.
  std::uint16_t value() const;
  void keep(std::uint16_t port) const;

 private:
  QString path_;
};
