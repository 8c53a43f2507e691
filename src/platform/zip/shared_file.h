#pragma once

#include <cstdint>
#include <expected>
#include <string>
#include <vector>

/// A file that is open for reading by several threads at a time.
class SharedFile {
 public:
  explicit SharedFile(const std::string& path);
  ~SharedFile();
  SharedFile(const SharedFile&) = delete;
  SharedFile& operator=(const SharedFile&) = delete;

  /// As much of `length` bytes as the file has at `offset`; else the error number.
  std::expected<std::vector<unsigned char>, int> read(std::int64_t offset, std::int64_t length) const;

 private:
  int descriptor_;
  int error_;
};
