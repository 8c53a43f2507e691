#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>
#include <unordered_map>

/// Ends the connections that are slower than their deadline: silence alone is no measure, since one byte every few
/// seconds would hold a connection for ever. Any thread.
class ConnectionWatch {
 public:
  using Clock = std::chrono::steady_clock;

  /// One connection.
  class Line {
   public:
    Line(int socket, std::chrono::seconds patience) : socket_(socket), patience_(patience) { expectHead(); }

    /// Until the next request's head is whole.
    void expectHead();
    /// `received` bytes of the body are there since `begun`.
    void expectBody(Clock::time_point begun, long long received);
    /// An answer of `size` bytes goes out.
    void expectDelivery(long long size);
    /// The service itself is at work.
    void wait();
    /// Asked to stop when the client goes away meanwhile.
    std::stop_token gone() const { return gone_.get_token(); }
    void giveUp() { gone_.request_stop(); }

   private:
    friend class ConnectionWatch;
    void set(Clock::time_point deadline) { deadline_ = deadline.time_since_epoch().count(); }

    const int socket_;
    const std::chrono::seconds patience_;
    std::atomic<Clock::rep> deadline_ = 0;
    std::stop_source gone_;
  };

  /// `patience`: for a head, between two requests, and before a body or an answer has to have reached 1 KB a second.
  explicit ConnectionWatch(std::chrono::seconds patience);

  Line* open(int socket);
  /// Before the socket is closed.
  void close(const Line* line);
  /// Nobody is to work for any of the clients any longer.
  void giveUp();

 private:
  void work(const std::stop_token& stop);
  /// With the lock held.
  void endOverdue();
  /// With the lock held: of those that wait for the service, since the server itself does not listen to them then.
  void findGone();

  const std::chrono::seconds patience_;
  std::mutex mutex_;
  std::condition_variable_any opened_;
  std::unordered_map<const Line*, std::unique_ptr<Line>> lines_;
  std::jthread thread_;
};
