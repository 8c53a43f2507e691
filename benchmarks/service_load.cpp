#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

// service_load PORT TOKEN UPLOADS UPLOAD_BYTES REQUESTS_PER_SECOND SECONDS
//
// Drives a running service for so many seconds: UPLOADS connections each send one upload after another, and beside them
// small requests (a link's HEAD, the quota, a usage event, the health check) go out at a fixed rate whether or not the
// earlier ones are answered. Prints what came back as JSON; what is not answered by 2xx has failed.

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::duration;

constexpr int kSmallConnections = 64;

struct Plan {
  std::uint16_t port = 0;
  std::string token;
  int uploads = 0;
  std::size_t uploadBytes = 0;
  int perSecond = 0;
  int seconds = 0;
};

struct Tally {
  long done = 0;
  long failed = 0;
  std::vector<double> milliseconds;

  void add(int status, Clock::time_point begun) {
    ++done;
    if (status < 200 || status >= 300) ++failed;
    milliseconds.push_back(duration<double, std::milli>(Clock::now() - begun).count());
  }
  double quantile(double part) {
    if (milliseconds.empty()) return 0;
    const auto at =
        milliseconds.begin() + static_cast<std::ptrdiff_t>(part * static_cast<double>(milliseconds.size() - 1));
    std::nth_element(milliseconds.begin(), at, milliseconds.end());
    return *at;
  }
};

/// One connection with at most one request under way.
class Line {
 public:
  explicit Line(std::uint16_t port) : port_(port) { connect(); }

  bool isFree() const { return pending_.empty(); }
  int socket() const { return socket_; }
  short events() const { return static_cast<short>(POLLIN | (sent_ < pending_.size() ? POLLOUT : 0)); }
  Clock::time_point begun() const { return begun_; }
  std::string_view body() const { return std::string_view(received_).substr(received_.find("\r\n\r\n") + 4); }

  void send(std::string request, Clock::time_point due, bool hasBody) {
    pending_ = std::move(request);
    sent_ = 0;
    received_.clear();
    begun_ = due;
    hasBody_ = hasBody;
    write();
  }

  void write() {
    while (sent_ < pending_.size()) {
      const ssize_t count =
          ::send(socket_, pending_.data() + sent_, pending_.size() - sent_, MSG_NOSIGNAL | MSG_DONTWAIT);
      if (count <= 0) return;
      sent_ += static_cast<std::size_t>(count);
    }
  }

  /// The status of the answer once it is whole, 0 before; -1: the connection broke, and is opened anew.
  int read() {
    char buffer[65536];
    const ssize_t count = recv(socket_, buffer, sizeof buffer, MSG_DONTWAIT);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) return 0;
    if (count <= 0) {
      const bool wasIdle = isFree();
      connect();
      return wasIdle ? 0 : -1;
    }
    received_.append(buffer, static_cast<std::size_t>(count));
    if (!isWhole()) return 0;
    pending_.clear();
    return std::atoi(received_.c_str() + sizeof "HTTP/1.1");
  }

 private:
  void connect() {
    if (socket_ >= 0) close(socket_);
    socket_ = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port_);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int on = 1;
    setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    if (::connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) std::perror("connect");
    pending_.clear();
    received_.clear();
    sent_ = 0;
  }

  bool isWhole() const {
    const auto end = received_.find("\r\n\r\n");
    if (end == std::string::npos) return false;
    const auto length = received_.find("Content-Length: ");
    const bool counts = hasBody_ && length < end;
    const std::size_t size =
        counts ? std::strtoul(received_.c_str() + length + sizeof "Content-Length:", nullptr, 10) : 0;
    return received_.size() >= end + 4 + size;
  }

  std::uint16_t port_;
  int socket_ = -1;
  std::string pending_;
  std::size_t sent_ = 0;
  std::string received_;
  bool hasBody_ = true;
  Clock::time_point begun_;
};

class Load {
 public:
  explicit Load(Plan plan) : plan_(std::move(plan)) {
    for (int i = 0; i < plan_.uploads; ++i) uploads_.emplace_back(plan_.port);
    for (int i = 0; i < kSmallConnections; ++i) small_.emplace_back(plan_.port);
    content_.resize(plan_.uploadBytes);
    std::uint32_t state = 1;
    for (char& byte : content_) byte = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
    link_ = upload();
  }

  int run() {
    const auto begun = Clock::now();
    const auto end = begun + std::chrono::seconds(plan_.seconds);
    while (Clock::now() < end || isBusy()) {
      if (Clock::now() < end) startUploads();
      if (Clock::now() < end) startSmall(begun);
      turn();
      if (Clock::now() > end + std::chrono::seconds(30)) break;
    }
    report(duration<double>(Clock::now() - begun).count());
    return smallTally_.failed + uploadTally_.failed == 0 && !isBusy() ? 0 : 1;
  }

 private:
  std::string head(const std::string& line, std::size_t size, const std::string& type) const {
    return line + " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(plan_.port) + "\r\nAuthorization: Bearer " +
           plan_.token + "\r\n" +
           (size ? "Content-Type: " + type + "\r\nContent-Length: " + std::to_string(size) + "\r\n" : "") + "\r\n";
  }

  /// Each differs from the last, so that each is stored.
  std::string uploadRequest() {
    const std::string number = std::to_string(++made_);
    const std::string before =
        "--load\r\nContent-Disposition: form-data; name=\"files\"; filename=\"a\"\r\nContent-Type: a/b\r\n\r\n" +
        number;
    const std::string after = "\r\n--load--\r\n";
    const std::size_t size = before.size() + content_.size() + after.size();
    return head("POST /v1/upload", size, "multipart/form-data; boundary=load") + before + content_ + after;
  }

  std::string smallRequest(long number) const {
    static const std::string event = R"({"event":"e","installId":"i","appVersion":"1","osVersion":"o"})";
    switch (number % 4) {
      case 0:
        return head("HEAD " + link_, 0, {});
      case 1:
        return head("GET /v1/quota", 0, {});
      case 2:
        return head("POST /v1/events", event.size(), "application/json") + event;
      default:
        return head("GET /health", 0, {});
    }
  }

  /// The path of the link to one upload.
  std::string upload() {
    Line line(plan_.port);
    line.send(uploadRequest(), Clock::now(), true);
    for (;;) {
      pollfd entry{line.socket(), line.events(), 0};
      poll(&entry, 1, 1000);
      line.write();
      if (line.read() != 0) break;
    }
    const std::string body(line.body());
    const auto begin = body.find("/l/");
    return begin == std::string::npos ? "/l/none" : body.substr(begin, body.find('"', begin) - begin);
  }

  void startUploads() {
    for (Line& line : uploads_)
      if (line.isFree()) line.send(uploadRequest(), Clock::now(), true);
  }

  void startSmall(Clock::time_point begun) {
    const double due = duration<double>(Clock::now() - begun).count() * plan_.perSecond;
    for (Line& line : small_) {
      if (static_cast<double>(started_) >= due) return;
      if (!line.isFree()) continue;
      // What had to wait for a free connection has waited since it was due.
      const auto planned = begun + std::chrono::duration_cast<Clock::duration>(
                                       duration<double>(static_cast<double>(started_) / plan_.perSecond));
      line.send(smallRequest(started_), planned, started_ % 4 != 0);
      ++started_;
    }
  }

  void turn() {
    entries_.clear();
    for (const auto* lines : {&uploads_, &small_})
      for (const Line& line : *lines) entries_.push_back({line.socket(), line.events(), 0});
    poll(entries_.data(), entries_.size(), 1);
    std::size_t at = 0;
    for (Line& line : uploads_) serve(line, entries_[at++], uploadTally_);
    for (Line& line : small_) serve(line, entries_[at++], smallTally_);
  }

  static void serve(Line& line, const pollfd& entry, Tally& tally) {
    if ((entry.revents & POLLOUT) != 0) line.write();
    if ((entry.revents & (POLLIN | POLLHUP | POLLERR)) == 0) return;
    if (const int status = line.read(); status != 0) tally.add(status, line.begun());
  }

  bool isBusy() const {
    const auto busy = [](const Line& line) { return !line.isFree(); };
    return std::ranges::any_of(uploads_, busy) || std::ranges::any_of(small_, busy);
  }

  void report(double seconds) {
    const double megabytes = static_cast<double>(uploadTally_.done) * static_cast<double>(plan_.uploadBytes) / 1e6;
    std::printf(
        "{\"requests\": %ld, \"requests_failed\": %ld, \"requests_per_second\": %.0f, \"median_ms\": %.2f, \"p99_ms\": "
        "%.2f,"
        " \"uploads\": %ld, \"uploads_failed\": %ld, \"uploads_per_second\": %.1f, \"upload_mb_per_second\": %.1f,"
        " \"upload_median_ms\": %.0f, \"upload_p99_ms\": %.0f}\n",
        smallTally_.done, smallTally_.failed, static_cast<double>(smallTally_.done) / seconds,
        smallTally_.quantile(0.5), smallTally_.quantile(0.99), uploadTally_.done, uploadTally_.failed,
        static_cast<double>(uploadTally_.done) / seconds, megabytes / seconds, uploadTally_.quantile(0.5),
        uploadTally_.quantile(0.99));
  }

  Plan plan_;
  std::vector<Line> uploads_;
  std::vector<Line> small_;
  std::vector<pollfd> entries_;
  std::string content_;
  std::string link_;
  long made_ = 0;
  long started_ = 0;
  Tally uploadTally_;
  Tally smallTally_;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 7) {
    std::fputs("usage: service_load PORT TOKEN UPLOADS UPLOAD_BYTES REQUESTS_PER_SECOND SECONDS\n", stderr);
    return 2;
  }
  const auto number = [&](int index) { return std::atoi(argv[index]); };
  Load load({.port = static_cast<std::uint16_t>(number(1)),
             .token = argv[2],
             .uploads = number(3),
             .uploadBytes = static_cast<std::size_t>(number(4)),
             .perSecond = number(5),
             .seconds = number(6)});
  return load.run();
}
