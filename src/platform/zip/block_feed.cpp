#include "platform/zip/block_feed.h"

#include <algorithm>

namespace {

BlockPool::Result deflateAt(const SharedFile& file, std::int64_t offset, std::int64_t length, bool isLast,
                            BlockDeflater& deflater) {
  const std::int64_t window = std::min<std::int64_t>(offset, BlockDeflater::kWindow);
  const auto bytes = file.read(offset - window, window + length);
  if (!bytes) return std::unexpected(bytes.error());
  // A file that has become shorter ends here; its stream is closed by the last block all the same.
  const auto before = std::span(*bytes).first(std::min(bytes->size(), static_cast<std::size_t>(window)));
  return deflater.deflate(before, std::span(*bytes).subspan(before.size()), isLast);
}

}  // namespace

std::int64_t BlockFeed::blocksOf(const ZipEntry& file) {
  return std::max<std::int64_t>(1, (file.size + kBlock - 1) / kBlock);
}

BlockPool::Result BlockFeed::next() {
  const std::size_t ahead = 8 + 4 * std::size_t{threads_};
  while (made_.size() < ahead && addNext()) continue;
  std::future<BlockPool::Result> oldest = std::move(made_.front());
  made_.pop_front();
  return oldest.get();
}

bool BlockFeed::addNext() {
  while (entry_ < entries_.size() && entries_[entry_].kind != ZipEntry::Kind::file) ++entry_;
  if (entry_ == entries_.size()) return false;
  const ZipEntry& entry = entries_[entry_];
  if (offset_ == 0) file_ = std::make_shared<SharedFile>(entry.path);
  const std::int64_t length = std::min(kBlock, entry.size - offset_);
  const bool isLast = offset_ + length == entry.size;
  made_.push_back(pool_.add([file = file_, offset = offset_, length, isLast](BlockDeflater& deflater) {
    return deflateAt(*file, offset, length, isLast, deflater);
  }));
  offset_ = isLast ? 0 : offset_ + length;
  if (isLast) ++entry_;
  return true;
}
