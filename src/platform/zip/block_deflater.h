#pragma once

#include <zlib.h>

#include <cstdint>
#include <span>
#include <vector>

/// One block of a file, compressed on its own.
struct DeflatedBlock {
  std::vector<unsigned char> bytes;
  /// Of the uncompressed bytes.
  std::uint32_t crc = 0;
  std::int64_t size = 0;
};

/// Compresses the blocks of a raw deflate stream independently of each other: the blocks of one file put one behind the
/// other are one stream, whichever threads made them. One for each thread.
class BlockDeflater {
 public:
  /// How far back deflate can refer.
  static constexpr std::size_t kWindow = 32 * 1024;

  BlockDeflater();
  ~BlockDeflater();
  BlockDeflater(const BlockDeflater&) = delete;
  BlockDeflater& operator=(const BlockDeflater&) = delete;

  /// `before` is what stands before the block in its file, at most `kWindow` bytes of it.
  DeflatedBlock deflate(std::span<const unsigned char> before, std::span<const unsigned char> block, bool isLast);

 private:
  bool isWorthwhile(std::span<const unsigned char> block);

  z_stream compressing_{};
  z_stream sampling_{};
  z_stream storing_{};
  std::vector<unsigned char> sample_;
};
