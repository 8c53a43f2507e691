#include "platform/zip/block_deflater.h"

#include <algorithm>

namespace {

constexpr int kRawDeflate = -15;
constexpr int kMemoryLevel = 8;
constexpr std::size_t kSample = 8 * 1024;

void begin(z_stream& stream, int level) {
  deflateInit2(&stream, level, Z_DEFLATED, kRawDeflate, kMemoryLevel, Z_DEFAULT_STRATEGY);
}

/// Runs all of `bytes` through the stream, which starts anew.
void run(z_stream& stream, std::span<const unsigned char> before, std::span<const unsigned char> bytes, bool isLast,
         std::vector<unsigned char>& out) {
  deflateReset(&stream);
  if (!before.empty()) deflateSetDictionary(&stream, before.data(), static_cast<uInt>(before.size()));
  // A block that is not the last ends at a byte, by an empty stored block.
  out.resize(deflateBound(&stream, static_cast<uLong>(bytes.size())) + 16);
  stream.next_in = const_cast<Bytef*>(bytes.data());
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = out.data();
  stream.avail_out = static_cast<uInt>(out.size());
  deflate(&stream, isLast ? Z_FINISH : Z_SYNC_FLUSH);
  out.resize(out.size() - stream.avail_out);
}

}  // namespace

BlockDeflater::BlockDeflater() {
  begin(compressing_, Z_DEFAULT_COMPRESSION);
  begin(sampling_, Z_BEST_SPEED);
  begin(storing_, Z_NO_COMPRESSION);
}

BlockDeflater::~BlockDeflater() {
  for (z_stream* stream : {&compressing_, &sampling_, &storing_}) deflateEnd(stream);
}

/// Pictures, films and archives do not get smaller; a sample from the middle tells in a fraction of the time.
bool BlockDeflater::isWorthwhile(std::span<const unsigned char> block) {
  if (block.size() < 4 * kSample) return true;
  const auto middle = block.subspan(block.size() / 2, kSample);
  run(sampling_, {}, middle, true, sample_);
  return sample_.size() < kSample - kSample / 32;
}

DeflatedBlock BlockDeflater::deflate(std::span<const unsigned char> before, std::span<const unsigned char> block,
                                     bool isLast) {
  DeflatedBlock made;
  made.size = static_cast<std::int64_t>(block.size());
  made.crc = static_cast<std::uint32_t>(crc32(0, block.data(), static_cast<uInt>(block.size())));
  run(isWorthwhile(block) ? compressing_ : storing_, before, block, isLast, made.bytes);
  return made;
}
