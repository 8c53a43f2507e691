#pragma once

#include "service/http/endpoint.h"
#include "service/links/link_store.h"

/// GET and HEAD of a link: the bytes that were uploaded, whole or a range of them. A browser that asks for something it
/// cannot show gets a page about it; "/l/<id>/<name>" always gives the bytes.
class LinkEndpoint final : public SimpleEndpoint {
 public:
  LinkEndpoint(Database& database, const BlobStore& blobs) : links_(database), blobs_(blobs) {}

  Access access() const override { return Access::open; }
  void answer(const Request& request, const QByteArray& body, const Reply& reply) override;

 private:
  Response find(const Request& request) const;
  Response deliver(const Link& link, const Request& request) const;

  LinkStore links_;
  const BlobStore& blobs_;
};
