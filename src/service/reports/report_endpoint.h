#pragma once

#include "service/links/form_exchange.h"
#include "service/storage/write_queue.h"

/// What is reported by one form: its words, and pictures that go with them.
struct ReportKind {
  /// In the database and on the command line.
  QString name;
  /// The field that must say something.
  QByteArray text;
  bool hasCategory = false;
};

/// POST of feedback or of an idea: stored until the operator exports it.
class ReportEndpoint final : public Endpoint {
 public:
  struct Services {
    FormExchange::Services form;
    Database& database;
    WriteQueue& writes;
  };

  ReportEndpoint(Services services, const ReportKind& kind);

  Access access() const override { return Access::anyCredential; }
  qint64 maximumBody() const override;
  std::expected<std::unique_ptr<Exchange>, Response> begin(const Request& request) override;

 private:
  Services services_;
  ReportKind kind_;
  FormRules rules_;
};
