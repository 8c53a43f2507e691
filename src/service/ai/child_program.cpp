#include "service/ai/child_program.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <mutex>
#include <optional>
#include <thread>

#include "service/storage/descriptor.h"

extern char** environ;

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// How often its end, the deadline and the client are looked at.
constexpr int kLookMilliseconds = 50;
/// For what it wants to put in order.
constexpr auto kGrace = 500ms;
constexpr qsizetype kLongestErrors = 16'000;

struct Pipe {
  Descriptor reading;
  Descriptor writing;
};

std::optional<Pipe> makePipe() {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) return {};
  for (const int end : ends) fcntl(end, F_SETFD, FD_CLOEXEC);
  return Pipe{Descriptor(ends[0]), Descriptor(ends[1])};
}

/// How it is started: signals as in a fresh program, since this one blocks and ignores some.
class Attributes {
 public:
  Attributes(const ChildProgram& program, const Pipe& in, const Pipe& out, const Pipe& errors) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_adddup2(&actions_, in.reading.number(), STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions_, out.writing.number(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions_, errors.writing.number(), STDERR_FILENO);
    posix_spawn_file_actions_addchdir_np(&actions_, program.folder.constData());
    posix_spawnattr_init(&attributes_);
    sigset_t none;
    sigset_t ignored;
    sigemptyset(&none);
    sigemptyset(&ignored);
    for (const int signal : {SIGPIPE, SIGXFSZ}) sigaddset(&ignored, signal);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setsigdefault(&attributes_, &ignored);
    posix_spawnattr_setpgroup(&attributes_, 0);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~Attributes() {
    posix_spawnattr_destroy(&attributes_);
    posix_spawn_file_actions_destroy(&actions_);
  }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;

  int spawn(pid_t& pid, const QByteArrayList& words) const {
    std::vector<char*> pointers;
    // The system takes them as writable and does not write.
    for (const QByteArray& word : words) pointers.push_back(const_cast<char*>(word.constData()));
    pointers.push_back(nullptr);
    return posix_spawn(&pid, pointers.front(), &actions_, &attributes_, pointers.data(), environ);
  }

 private:
  posix_spawn_file_actions_t actions_{};
  posix_spawnattr_t attributes_{};
};

class Child {
 public:
  Child(const ChildProgram& program, const std::function<void(QByteArrayView)>& onOutput)
      : program_(program), onOutput_(onOutput) {}
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  ~Child() {
    if (pid_ > 0) end();
  }

  /// 0, or an error number.
  int start() {
    // Or the pipes of one that is started at the same moment would be held open by this one.
    static std::mutex spawning;
    const std::lock_guard lock(spawning);
    auto in = makePipe();
    auto out = makePipe();
    auto errors = makePipe();
    if (!in || !out || !errors) return errno;
    const int failed = Attributes(program_, *in, *out, *errors).spawn(pid_, program_.words);
    if (failed != 0) pid_ = 0;
    in_ = std::move(in->writing);
    out_ = std::move(out->reading);
    errors_ = std::move(errors->reading);
    for (const Descriptor* end : {&in_, &out_, &errors_}) fcntl(end->number(), F_SETFL, O_NONBLOCK);
    return failed;
  }

  /// A look at it; true: it has ended.
  bool look() {
    const bool wantsInput = in_ && written_ < program_.input.size();
    if (!wantsInput) in_ = Descriptor();
    std::array<pollfd, 3> ends{pollfd{out_.number(), POLLIN, 0}, pollfd{errors_.number(), POLLIN, 0},
                               pollfd{in_.number(), POLLOUT, 0}};
    poll(ends.data(), ends.size(), kLookMilliseconds);
    // Looked at first: what it wrote before is there then.
    const bool hasEnded = isOver();
    if (ends[2].revents != 0) write();
    read(out_, [this](QByteArrayView bytes) {
      outcome_.output += bytes;
      onOutput_(bytes);
    });
    read(errors_, [this](QByteArrayView bytes) {
      outcome_.errors += bytes.first(std::min(bytes.size(), kLongestErrors - outcome_.errors.size()));
    });
    return hasEnded;
  }
  bool isTooLong() const { return outcome_.output.size() > program_.longest; }

  /// Ends what is left of it.
  ChildOutcome finish() {
    int status = 0;
    kill(-pid_, SIGKILL);
    waitpid(pid_, &status, 0);
    pid_ = 0;
    constexpr int kSignalled = 128;
    outcome_.status = WIFEXITED(status) ? WEXITSTATUS(status) : kSignalled + WTERMSIG(status);
    return std::move(outcome_);
  }

 private:
  bool isOver() const {
    siginfo_t info{};
    return waitid(P_PID, static_cast<id_t>(pid_), &info, WEXITED | WNOHANG | WNOWAIT) == 0 && info.si_pid == pid_;
  }

  void end() {
    kill(-pid_, SIGTERM);
    const auto until = std::chrono::steady_clock::now() + kGrace;
    while (!isOver() && std::chrono::steady_clock::now() < until) std::this_thread::sleep_for(10ms);
    finish();
  }

  void write() {
    const ssize_t count = ::write(in_.number(), program_.input.constData() + written_,
                                  static_cast<std::size_t>(program_.input.size() - written_));
    if (count > 0) written_ += count;
    // One that does not read what it is given may have an answer all the same.
    if (count < 0 && errno != EAGAIN && errno != EINTR) in_ = Descriptor();
  }

  template <class Take>
  void read(Descriptor& from, Take take) {
    std::array<char, 16'384> room{};
    while (from && !isTooLong()) {
      const ssize_t count = ::read(from.number(), room.data(), room.size());
      if (count == 0) from = Descriptor();
      if (count < 0 && errno != EINTR) return;
      if (count > 0) take(QByteArrayView(room.data(), count));
    }
  }

  const ChildProgram& program_;
  const std::function<void(QByteArrayView)>& onOutput_;
  Descriptor in_;
  Descriptor out_;
  Descriptor errors_;
  qsizetype written_ = 0;
  pid_t pid_ = 0;
  ChildOutcome outcome_;
};

}  // namespace

Answered<ChildOutcome> runProgram(const ChildProgram& program, const AICall& call,
                                  const std::function<void(QByteArrayView)>& onOutput) {
  Child child(program, onOutput);
  if (const int failed = child.start(); failed != 0)
    return std::unexpected(
        AIError{.text = u"The AI command does not start: %1."_s.arg(QString::fromLocal8Bit(std::strerror(failed)))});
  bool hasEnded = false;
  while (!hasEnded) {
    if (call.gone.stop_requested()) return std::unexpected(AIError{AIError::Reason::abandoned, {}});
    if (std::chrono::steady_clock::now() >= call.deadline)
      return std::unexpected(
          AIError{.text = u"The AI command did not answer within %1 seconds."_s.arg(call.limit.count())});
    hasEnded = child.look();
    if (child.isTooLong()) return std::unexpected(AIError{.text = u"The AI command's answer is too long."_s});
  }
  return child.finish();
}
