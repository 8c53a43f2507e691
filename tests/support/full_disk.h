#pragma once

#include <sys/resource.h>

#include <csignal>

/// No file of this process may grow while this lives: what a full disk does, without one.
class SmallestFiles {
 public:
  SmallestFiles() {
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit none{0, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &none);
  }
  ~SmallestFiles() { setrlimit(RLIMIT_FSIZE, &before_); }
  SmallestFiles(const SmallestFiles&) = delete;
  SmallestFiles& operator=(const SmallestFiles&) = delete;

 private:
  rlimit before_{};
};
