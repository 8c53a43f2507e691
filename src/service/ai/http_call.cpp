#include "service/ai/http_call.h"

#include <fcntl.h>

#include <algorithm>

#include "service/ai/loopback.h"
#include "service/log.h"

using namespace Qt::StringLiterals;

namespace {

constexpr long kConnectMilliseconds = 10'000;
/// The library's own clock may be a little ahead.
constexpr auto kClockSlack = std::chrono::milliseconds(200);

struct EndList {
  void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
using HeaderList = std::unique_ptr<curl_slist, EndList>;

/// One call under way.
struct Transfer {
  CURL* handle;
  const HttpCall& call;
  const AICall& context;
  HttpAnswer answer = {};
  bool isTooLong = false;

  void readHead() {
    if (answer.status != 0) return;
    long status = 0;
    const char* type = nullptr;
    curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &status);
    curl_easy_getinfo(handle, CURLINFO_CONTENT_TYPE, &type);
    answer.status = static_cast<int>(status);
    answer.isStream = call.onEvents && answer.isSuccess() && QByteArray(type).startsWith("text/event-stream");
  }

  bool take(QByteArrayView bytes) {
    readHead();
    if (answer.isStream) {
      answer.isBroken = !call.onEvents(bytes);
      return !answer.isBroken;
    }
    answer.body.append(bytes);
    isTooLong = answer.body.size() > call.longest;
    return !isTooLong;
  }
};

std::size_t onBytes(char* bytes, std::size_t one, std::size_t count, void* transfer) {
  const QByteArrayView view(bytes, static_cast<qsizetype>(one * count));
  return static_cast<Transfer*>(transfer)->take(view) ? one * count : 0;
}

int onProgress(void* transfer, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
  return static_cast<Transfer*>(transfer)->context.gone.stop_requested() ? 1 : 0;
}

/// Programs that are started as providers get none of these sockets.
int onSocket(void*, curl_socket_t socket, curlsocktype) {
  fcntl(socket, F_SETFD, FD_CLOEXEC);
  return CURL_SOCKOPT_OK;
}

HeaderList headerList(const HttpCall& call) {
  HeaderList list(curl_slist_append(nullptr, "Expect:"));
  for (const QByteArray& header : call.headers) curl_slist_append(list.get(), header.constData());
  return list;
}

void prepare(CURL* handle, Transfer& transfer, std::chrono::milliseconds left) {
  const HttpCall& call = transfer.call;
  curl_easy_setopt(handle, CURLOPT_URL, call.url.toEncoded().constData());
  curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(handle, CURLOPT_FOLLOWLOCATION, 0L);
  curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(handle, CURLOPT_USERAGENT, "vantle-service");
  curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT_MS, kConnectMilliseconds);
  curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, static_cast<long>(left.count()));
  // A proxy named by the environment is for the world outside.
  if (isLoopback(call.url)) curl_easy_setopt(handle, CURLOPT_PROXY, "");
  if (!call.body.isEmpty()) {
    curl_easy_setopt(handle, CURLOPT_POSTFIELDS, call.body.constData());
    curl_easy_setopt(handle, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(call.body.size()));
  }
  curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, onBytes);
  curl_easy_setopt(handle, CURLOPT_WRITEDATA, &transfer);
  curl_easy_setopt(handle, CURLOPT_NOPROGRESS, 0L);
  curl_easy_setopt(handle, CURLOPT_XFERINFOFUNCTION, onProgress);
  curl_easy_setopt(handle, CURLOPT_XFERINFODATA, &transfer);
  curl_easy_setopt(handle, CURLOPT_SOCKOPTFUNCTION, onSocket);
}

AIError late(const AICall& context) {
  return {.text = u"The AI provider did not answer within %1 seconds."_s.arg(context.limit.count())};
}

/// Why a call that ended with `code` has no answer.
AIError failure(CURLcode code, const Transfer& transfer) {
  if (transfer.context.gone.stop_requested()) return {AIError::Reason::abandoned, {}};
  if (transfer.isTooLong) return {.text = u"The AI provider's answer is too long."_s};
  const bool isConnecting = transfer.answer.status == 0;
  const auto left = transfer.context.deadline - std::chrono::steady_clock::now();
  if (code == CURLE_OPERATION_TIMEDOUT && (!isConnecting || left < kClockSlack)) return late(transfer.context);
  if (transfer.answer.status != 0) return {.text = u"The AI provider's answer was cut off."_s};
  return {.text = u"The AI provider cannot be reached: %1."_s.arg(QString::fromUtf8(curl_easy_strerror(code)))};
}

}  // namespace

HttpCaller::Handle HttpCaller::take() {
  const std::lock_guard lock(mutex_);
  if (idle_.empty()) return Handle(curl_easy_init());
  Handle handle = std::move(idle_.back());
  idle_.pop_back();
  return handle;
}

void HttpCaller::giveBack(Handle handle) {
  // Forgets the call, keeps its connection.
  curl_easy_reset(handle.get());
  const std::lock_guard lock(mutex_);
  idle_.push_back(std::move(handle));
}

Answered<HttpAnswer> HttpCaller::send(const HttpCall& call, const AICall& context) {
  const auto now = std::chrono::steady_clock::now();
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(context.deadline - now);
  if (left.count() <= 0) return std::unexpected(late(context));
  Handle handle = take();
  Transfer transfer{handle.get(), call, context};
  const HeaderList headers = headerList(call);
  prepare(handle.get(), transfer, left);
  curl_easy_setopt(handle.get(), CURLOPT_HTTPHEADER, headers.get());
  const CURLcode code = curl_easy_perform(handle.get());
  // Also for an answer without a body.
  if (code == CURLE_OK) transfer.readHead();
  giveBack(std::move(handle));
  if (code == CURLE_OK) return std::move(transfer.answer);
  logLine("ai: no answer from the provider, %s", curl_easy_strerror(code));
  if (transfer.answer.isBroken) return std::move(transfer.answer);
  return std::unexpected(failure(code, transfer));
}
