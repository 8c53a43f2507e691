#pragma once

#include <QImage>
#include <QJsonArray>
#include <QString>

#include <optional>
#include <vector>

/// One question and its answer.
struct AskExchange {
  QString question;
  QString answer;
  /// What went along with the question, small; services are not told of it again.
  std::vector<QImage> thumbnails{};

  bool operator==(const AskExchange&) const = default;

  /// An object each, in their order.
  static QJsonArray history(const std::vector<AskExchange>& exchanges);
  /// The same as JSON text; none for an empty list.
  static std::optional<QString> historyJSON(const std::vector<AskExchange>& exchanges);
};

/// A question with what was said before it.
struct AskQuestion {
  QString text;
  /// Oldest first.
  std::vector<AskExchange> history{};
};
