#include "tools/asking/ask_exchange.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

QJsonArray AskExchange::history(const std::vector<AskExchange>& exchanges) {
  QJsonArray history;
  for (const AskExchange& exchange : exchanges)
    history.append(QJsonObject{{u"question"_s, exchange.question}, {u"answer"_s, exchange.answer}});
  return history;
}

std::optional<QString> AskExchange::historyJSON(const std::vector<AskExchange>& exchanges) {
  if (exchanges.empty()) return std::nullopt;
  return QString::fromUtf8(QJsonDocument(history(exchanges)).toJson(QJsonDocument::Compact));
}
