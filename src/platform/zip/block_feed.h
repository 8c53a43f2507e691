#pragma once

#include <deque>
#include <memory>

#include "platform/zip/block_pool.h"
#include "platform/zip/shared_file.h"
#include "platform/zip/zip_entries.h"

/// The compressed blocks of all files among some entries, in their order. A bounded number of them is being made ahead
/// of the one that is asked for.
class BlockFeed {
 public:
  explicit BlockFeed(const std::vector<ZipEntry>& entries) : entries_(entries) {}

  /// A file has at least one block. Called once for each; waits for it.
  BlockPool::Result next();

  static std::int64_t blocksOf(const ZipEntry& file);

 private:
  /// Large enough that their independence costs nothing, small enough that many can wait.
  static constexpr std::int64_t kBlock = 256 * 1024;

  bool addNext();

  const std::vector<ZipEntry>& entries_;
  const unsigned threads_ = std::max(1U, std::thread::hardware_concurrency());
  std::size_t entry_ = 0;
  std::int64_t offset_ = 0;
  std::shared_ptr<SharedFile> file_;
  BlockPool pool_{threads_};
  std::deque<std::future<BlockPool::Result>> made_;
};
