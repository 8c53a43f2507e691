#pragma once

#include <filesystem>
#include <memory>

class FolderLock;

/// The copy that grows under a temporary name beside its target; gone when it goes, unless it was put in place.
/// Copies that a killed process left in the same place are removed when a new one is made there: each is locked by
/// the process that fills it, and the system lets go of the lock whichever way that process ends.
class HalfMade {
 public:
  explicit HalfMade(const std::filesystem::path& target);
  ~HalfMade();
  HalfMade(const HalfMade&) = delete;
  HalfMade& operator=(const HalfMade&) = delete;

  const std::filesystem::path& path() const { return path_; }
  /// False with `errno`.
  bool make();
  /// False with `errno`. A folder that has come there meanwhile is replaced only if it is empty.
  bool putInPlace();

 private:
  std::filesystem::path target_;
  std::filesystem::path path_;
  std::unique_ptr<FolderLock> lock_;
};
