#include "platform/zip/zip_archiver.h"

#include <unistd.h>

#include <QFile>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <numeric>

#include "platform/zip/entry_source.h"

namespace {

using Outcome = std::expected<void, ArchiveError>;

/// The id of the extra field "UT": the time in seconds since 1970, UTC, which the format's own dates do not tell.
constexpr zip_uint16_t kTimestampField = 0x5455;
constexpr zip_uint32_t kFolderAttribute = 0x10;

struct Discard {
  void operator()(zip_t* zip) const { zip_discard(zip); }
};
using ZipHandle = std::unique_ptr<zip_t, Discard>;

std::unexpected<ArchiveError> failure(const QString& target, const char* reason) {
  return std::unexpected(ArchiveError{false, target + QStringLiteral(": ") + QString::fromUtf8(reason)});
}

std::expected<ZipHandle, ArchiveError> create(const QString& target) {
  int code = 0;
  ZipHandle zip(zip_open(QFile::encodeName(target).constData(), ZIP_CREATE | ZIP_EXCL, &code));
  if (zip) return zip;
  zip_error_t error{};
  zip_error_init_with_code(&error, code);
  const auto result = failure(target, zip_error_strerror(&error));
  zip_error_fini(&error);
  return result;
}

/// Where a link leads is its content.
std::expected<zip_source_t*, ArchiveError> linkSource(zip_t* zip, const ZipEntry& entry) {
  std::array<char, PATH_MAX> target{};
  const ssize_t length = readlink(entry.path.c_str(), target.data(), target.size());
  if (length < 0) return std::unexpected(archiveError(entry.path, errno));
  const auto size = static_cast<std::size_t>(length);
  void* const copy = std::malloc(size + 1);
  std::memcpy(copy, target.data(), size);
  return zip_source_buffer(zip, copy, size, 1);
}

/// The entry's number; -1 for the library's error.
std::expected<zip_int64_t, ArchiveError> addNamed(zip_t* zip, const ZipEntry& entry, ZipRun& run) {
  constexpr zip_flags_t kUtf8 = ZIP_FL_ENC_UTF_8;
  if (entry.kind == ZipEntry::Kind::folder) return zip_dir_add(zip, entry.name.c_str(), kUtf8);
  std::expected<zip_source_t*, ArchiveError> source = nullptr;
  if (entry.kind == ZipEntry::Kind::link)
    source = linkSource(zip, entry);
  else
    source = EntrySource::make(entry, run);
  if (!source) return std::unexpected(source.error());
  const zip_int64_t index = *source ? zip_file_add(zip, entry.name.c_str(), *source, kUtf8) : -1;
  if (index < 0) zip_source_free(*source);
  return index;
}

bool describe(zip_t* zip, zip_uint64_t index, const ZipEntry& entry) {
  const zip_uint32_t folder = entry.kind == ZipEntry::Kind::folder ? kFolderAttribute : 0;
  const zip_uint32_t attributes = (static_cast<zip_uint32_t>(entry.mode) << 16) | folder;
  const auto seconds = static_cast<std::uint32_t>(entry.modified);
  const auto byte = [seconds](int number) { return static_cast<zip_uint8_t>(seconds >> (8 * number)); };
  const std::array<zip_uint8_t, 5> timestamp = {1, byte(0), byte(1), byte(2), byte(3)};
  return zip_file_set_external_attributes(zip, index, 0, ZIP_OPSYS_UNIX, attributes) == 0 &&
         zip_file_set_mtime(zip, index, entry.modified, 0) == 0 &&
         zip_file_extra_field_set(zip, index, kTimestampField, 0, timestamp.data(), timestamp.size(),
                                  ZIP_FL_CENTRAL | ZIP_FL_LOCAL) == 0;
}

Outcome add(zip_t* zip, const ZipEntry& entry, ZipRun& run) {
  const auto index = addNamed(zip, entry, run);
  if (!index) return std::unexpected(index.error());
  if (*index >= 0 && describe(zip, static_cast<zip_uint64_t>(*index), entry)) return {};
  return failure(QString::fromStdString(entry.name), zip_strerror(zip));
}

/// The library writes when it closes the archive; to a file beside `target`, which it then renames.
Outcome write(ZipHandle zip, const QString& target, const ZipRun& run) {
  if (zip_close(zip.get()) == 0) {
    static_cast<void>(zip.release());
    return {};
  }
  if (run.error.wasCancelled || !run.error.message.isEmpty()) return std::unexpected(run.error);
  return failure(target, zip_strerror(zip.get()));
}

Outcome packInto(const QString& target, const std::vector<ArchiveItem>& items, ArchiveProgress& progress,
                 const std::stop_token& stop) {
  const auto entries = listEntries(items, stop);
  if (!entries) return std::unexpected(entries.error());
  progress.totalBytes = std::accumulate(entries->begin(), entries->end(), std::int64_t{0},
                                        [](std::int64_t sum, const ZipEntry& entry) { return sum + entry.size; });
  BlockFeed feed(*entries);
  ZipRun run{feed, progress, stop};
  auto zip = create(target);
  if (!zip) return std::unexpected(zip.error());
  for (const ZipEntry& entry : *entries)
    if (auto added = add(zip->get(), entry, run); !added) return added;
  return write(std::move(*zip), target, run);
}

}  // namespace

std::expected<void, ArchiveError> ZipArchiver::pack(const std::vector<ArchiveItem>& items, const QString& target,
                                                    ArchiveProgress& progress, const std::stop_token& stop) {
  auto packed = packInto(target, items, progress, stop);
  if (packed && stop.stop_requested()) {
    QFile::remove(target);
    return std::unexpected(ArchiveError{.wasCancelled = true});
  }
  return packed;
}

std::unique_ptr<Archiver> makeArchiver() { return std::make_unique<ZipArchiver>(); }
