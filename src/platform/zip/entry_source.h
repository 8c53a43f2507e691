#pragma once

#include <zip.h>

#include <span>
#include <stop_token>

#include "platform/zip/block_feed.h"

/// What the files of one archive share while it is written.
struct ZipRun {
  BlockFeed& feed;
  ArchiveProgress& progress;
  const std::stop_token& stop;
  /// The first thing that went wrong with a file.
  ArchiveError error{};
};

/// One file as the zip library reads it: a stream that is compressed already, whose size and checksum are known at its
/// end. The library asks the files of an archive for their bytes in the order in which they were added.
class EntrySource {
 public:
  /// Null without memory. Owned by the library.
  static zip_source_t* make(const ZipEntry& entry, ZipRun& run);

 private:
  EntrySource(const ZipEntry& entry, ZipRun& run) : entry_(entry), run_(run), blocksLeft_(BlockFeed::blocksOf(entry)) {}

  static zip_int64_t answer(void* self, void* data, zip_uint64_t length, zip_source_cmd_t command);
  zip_int64_t read(std::span<unsigned char> out);
  bool takeBlock();
  zip_int64_t describe(zip_stat_t& status) const;
  bool fail(ArchiveError error);

  const ZipEntry& entry_;
  ZipRun& run_;
  std::int64_t blocksLeft_;
  DeflatedBlock block_;
  std::size_t taken_ = 0;
  std::int64_t size_ = 0;
  std::uint32_t crc_ = 0;
  std::int64_t compressedSize_ = 0;
};
