#pragma once

#include "service/http/endpoint.h"
#include "service/storage/write_queue.h"

/// POST /v1/events: takes a usage event with the keys there are and no others.
class EventEndpoint final : public SimpleEndpoint {
 public:
  explicit EventEndpoint(WriteQueue& writes) : writes_(writes) {}

  Access access() const override { return Access::anyCredential; }
  qint64 maximumBody() const override { return 4096; }
  void answer(const Request& request, const QByteArray& body, const Reply& reply) override;

 private:
  WriteQueue& writes_;
};
