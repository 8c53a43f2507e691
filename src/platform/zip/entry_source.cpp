#include "platform/zip/entry_source.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

constexpr zip_uint64_t kKnownBefore = ZIP_STAT_SIZE | ZIP_STAT_COMP_METHOD | ZIP_STAT_MTIME;
constexpr zip_uint64_t kKnownAfter = kKnownBefore | ZIP_STAT_CRC | ZIP_STAT_COMP_SIZE;

}  // namespace

zip_source_t* EntrySource::make(const ZipEntry& entry, ZipRun& run) {
  auto* const self = new EntrySource(entry, run);
  zip_source_t* const source = zip_source_function_create(answer, self, nullptr);
  if (!source) delete self;
  return source;
}

zip_int64_t EntrySource::answer(void* self, void* data, zip_uint64_t length, zip_source_cmd_t command) {
  auto* const source = static_cast<EntrySource*>(self);
  switch (command) {
    case ZIP_SOURCE_OPEN:
      return 0;
    case ZIP_SOURCE_CLOSE:
      // The library keeps every source until the archive is whole.
      source->block_ = {};
      source->taken_ = 0;
      return 0;
    case ZIP_SOURCE_READ:
      return source->read({static_cast<unsigned char*>(data), length});
    case ZIP_SOURCE_STAT:
      return source->describe(*static_cast<zip_stat_t*>(data));
    case ZIP_SOURCE_ERROR: {
      // What went wrong stands in the run; the library needs some error only.
      const std::array<int, 2> codes = {ZIP_ER_READ, 0};
      std::memcpy(data, codes.data(), sizeof codes);
      return sizeof codes;
    }
    case ZIP_SOURCE_FREE:
      delete source;
      return 0;
    case ZIP_SOURCE_SUPPORTS:
      return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT,
                                            ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, -1);
    default:
      return -1;
  }
}

zip_int64_t EntrySource::read(std::span<unsigned char> out) {
  while (taken_ == block_.bytes.size()) {
    if (blocksLeft_ == 0) return 0;
    if (!takeBlock()) return -1;
  }
  const std::size_t count = std::min(out.size(), block_.bytes.size() - taken_);
  std::memcpy(out.data(), block_.bytes.data() + taken_, count);
  taken_ += count;
  return static_cast<zip_int64_t>(count);
}

bool EntrySource::takeBlock() {
  if (run_.stop.stop_requested()) return fail({.wasCancelled = true});
  BlockPool::Result next = run_.feed.next();
  if (!next) return fail(archiveError(entry_.path, next.error()));
  block_ = std::move(*next);
  taken_ = 0;
  --blocksLeft_;
  crc_ = static_cast<std::uint32_t>(crc32_combine(crc_, block_.crc, block_.size));
  size_ += block_.size;
  compressedSize_ += static_cast<std::int64_t>(block_.bytes.size());
  run_.progress.bytes += block_.size;
  return true;
}

zip_int64_t EntrySource::describe(zip_stat_t& status) const {
  zip_stat_init(&status);
  const bool isRead = blocksLeft_ == 0;
  status.valid = isRead ? kKnownAfter : kKnownBefore;
  status.size = static_cast<zip_uint64_t>(isRead ? size_ : entry_.size);
  status.comp_size = static_cast<zip_uint64_t>(compressedSize_);
  status.crc = crc_;
  status.comp_method = ZIP_CM_DEFLATE;
  status.mtime = entry_.modified;
  return sizeof status;
}

bool EntrySource::fail(ArchiveError error) {
  run_.error = std::move(error);
  return false;
}
