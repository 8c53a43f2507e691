#pragma once

#include <QMap>

#include "service/http/endpoint.h"
#include "service/http/multipart_reader.h"
#include "service/storage/blob_store.h"
#include "service/workers.h"

/// Which parts of a form are taken; others are read and thrown away.
struct FormRules {
  QList<QByteArray> files;
  int mostFiles = 1;
  qint64 largestFile = 0;
  QList<QByteArray> fields = {};
};

/// A file of a form, on the disk.
struct FormFile {
  KeptBlob blob;
  /// As sent.
  QByteArray name;
  QByteArray type;
  /// The first bytes of it.
  QByteArray beginning;
};

struct Form {
  QMap<QByteArray, QByteArray> fields;
  std::vector<FormFile> files;
};

/// Takes a form: its files go to the blobs as they come, its fields into memory. What to do with the whole of it the
/// derived class knows.
class FormExchange : public Exchange, private PartReceiver {
 public:
  struct Services {
    BlobStore& blobs;
    /// Where files are waited for until they are on the disk.
    Workers& workers;
  };

  FormExchange(Services services, const FormRules& rules, const QByteArray& boundary);

  void take(std::string_view bytes) override;
  void answer(const Reply& reply) final;

  static Response storageFailure(const StorageError& error);

 protected:
  /// On a thread of the workers.
  virtual void accept(Form form, const Reply& reply) = 0;

 private:
  struct Incoming {
    std::unique_ptr<IncomingBlob> blob;
    QByteArray name;
    QByteArray type;
    QByteArray beginning;
  };

  void beginPart(const PartHead& head) override;
  void takePart(std::string_view bytes) override;
  void endPart() override;
  void beginFile(const PartHead& head);
  void writeFile(std::string_view bytes);
  void appendField(std::string_view bytes);
  void fail(Response response);
  Stored<std::vector<FormFile>> keepFiles();
  void finish(const Reply& reply);

  Services services_;
  const FormRules& rules_;
  MultipartReader reader_;
  std::optional<Response> failure_;
  std::vector<Incoming> incoming_;
  QMap<QByteArray, QByteArray> fields_;
  /// Of the part that comes in; at most one is set.
  Incoming* file_ = nullptr;
  QByteArray* field_ = nullptr;
};
