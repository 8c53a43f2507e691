#pragma once

#include <sys/resource.h>

#include <csignal>

/// No file of this process may grow, or not beyond some bytes, while this lives: what a full disk does, without one.
class SmallestFiles {
 public:
  explicit SmallestFiles(rlim_t bytes = 0) {
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit small{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
  }
  ~SmallestFiles() { setrlimit(RLIMIT_FSIZE, &before_); }
  SmallestFiles(const SmallestFiles&) = delete;
  SmallestFiles& operator=(const SmallestFiles&) = delete;

 private:
  rlimit before_{};
};
