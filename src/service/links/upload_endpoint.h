#pragma once

#include "service/links/form_exchange.h"
#include "service/links/link_store.h"
#include "service/links/public_address.h"

/// The size of the largest file, in bytes; the clients know the same number.
constexpr qint64 kLargestUpload = 256'000'000;

/// POST of a form with files, each of which gets a link. Answers only when bytes and links are on the disk.
class UploadEndpoint final : public Endpoint {
 public:
  struct Services {
    FormExchange::Services form;
    WriteQueue& writes;
    const PublicAddress& address;
  };

  /// `parts`: the names of the parts that hold files.
  UploadEndpoint(Services services, const QList<QByteArray>& parts, int mostFiles);

  Access access() const override { return Access::anyCredential; }
  qint64 maximumBody() const override;
  std::expected<std::unique_ptr<Exchange>, Response> begin(const Request& request) override;

 private:
  Services services_;
  FormRules rules_;
};
