#include "service/links/form_exchange.h"

#include "service/log.h"

namespace {

constexpr qsizetype kLongestField = 64 * 1024;
/// Enough to tell what a file is.
constexpr qsizetype kBeginning = 512;

QByteArrayView view(std::string_view bytes) { return {bytes.data(), static_cast<qsizetype>(bytes.size())}; }

}  // namespace

FormExchange::FormExchange(Services services, const FormRules& rules, const QByteArray& boundary)
    : services_(services), rules_(rules), reader_(boundary, *this) {}

Response FormExchange::storageFailure(const StorageError& error) {
  logLine("storage: %s", qPrintable(error.detail));
  const int status = error.reason == StorageError::Reason::full ? 507 : 503;
  return Response::text(status, error.description().toUtf8());
}

void FormExchange::fail(Response response) {
  if (failure_) return;
  failure_ = std::move(response);
  // Nothing of a request that has failed takes room while the rest of it comes.
  incoming_.clear();
  file_ = nullptr;
  field_ = nullptr;
}

void FormExchange::take(std::string_view bytes) {
  if (failure_) return;
  reader_.feed(bytes);
  if (reader_.error()) fail(Response::text(400, reader_.error()));
}

void FormExchange::beginPart(const PartHead& head) {
  if (failure_) return;
  if (head.fileName && rules_.files.contains(head.name)) beginFile(head);
  if (!head.fileName && rules_.fields.contains(head.name)) field_ = &fields_[head.name];
}

void FormExchange::beginFile(const PartHead& head) {
  if (incoming_.size() == static_cast<std::size_t>(rules_.mostFiles))
    return fail(Response::text(400, "The form has too many files."));
  auto blob = services_.blobs.receive();
  if (!blob) return fail(storageFailure(blob.error()));
  file_ = &incoming_.emplace_back(std::move(*blob), *head.fileName, head.type, QByteArray());
}

void FormExchange::takePart(std::string_view bytes) {
  if (file_) writeFile(bytes);
  if (field_) appendField(bytes);
}

void FormExchange::writeFile(std::string_view bytes) {
  if (file_->blob->size() + static_cast<qint64>(bytes.size()) > rules_.largestFile)
    return fail(Response::text(413, "The file is too large."));
  if (file_->beginning.size() < kBeginning)
    file_->beginning.append(
        view(bytes).first(std::min(bytes.size(), static_cast<std::size_t>(kBeginning - file_->beginning.size()))));
  if (const auto written = file_->blob->write(bytes); !written) fail(storageFailure(written.error()));
}

void FormExchange::appendField(std::string_view bytes) {
  if (field_->size() + static_cast<qsizetype>(bytes.size()) > kLongestField)
    return fail(Response::text(413, "A field of the form is too long."));
  field_->append(view(bytes));
}

void FormExchange::endPart() {
  file_ = nullptr;
  field_ = nullptr;
}

void FormExchange::answer(const Reply& reply) {
  if (!failure_ && !reader_.isComplete()) fail(Response::text(400, "The form is cut off."));
  if (failure_) return reply(std::move(*failure_));
  services_.workers.start([this, reply] { finish(reply); });
}

Stored<std::vector<FormFile>> FormExchange::keepFiles() {
  std::vector<FormFile> files;
  for (Incoming& incoming : incoming_) {
    auto kept = incoming.blob->keep();
    if (!kept) return std::unexpected(kept.error());
    files.push_back({std::move(*kept), incoming.name, incoming.type, incoming.beginning});
  }
  return files;
}

void FormExchange::finish(const Reply& reply) {
  auto files = keepFiles();
  if (!files) return reply(storageFailure(files.error()));
  accept({fields_, std::move(*files)}, reply);
}
