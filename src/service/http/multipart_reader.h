#pragma once

#include <QByteArray>

#include <optional>
#include <string>
#include <string_view>

/// The head of one part of a form.
struct PartHead {
  QByteArray name;
  /// As sent, any bytes; nothing: a text field.
  std::optional<QByteArray> fileName;
  /// As sent; empty: none.
  QByteArray type;
};

/// Takes the parts of a form as they come.
class PartReceiver {
 public:
  virtual ~PartReceiver() = default;

  virtual void beginPart(const PartHead& head) = 0;
  virtual void takePart(std::string_view bytes) = 0;
  virtual void endPart() = 0;
};

/// Reads the body of a "multipart/form-data" request in pieces of any size. It holds a part's head and a few bytes that
/// may be the beginning of a delimiter, never a part. What is not exactly of the form is an error, after which nothing
/// is handed on.
class MultipartReader {
 public:
  /// From a Content-Type header; nothing: it is no form or its boundary is not one.
  static std::optional<QByteArray> boundary(const QByteArray& contentType);

  MultipartReader(const QByteArray& boundary, PartReceiver& receiver);

  void feed(std::string_view bytes);
  /// The closing delimiter has come.
  bool isComplete() const { return state_ == State::end; }
  /// Null: none.
  const char* error() const { return error_; }

 private:
  enum class State { delimiter, afterDelimiter, head, body, end };

  void step(std::string_view& bytes);
  void readDelimiter(std::string_view& bytes);
  void readAfterDelimiter(std::string_view& bytes);
  void readHead(std::string_view& bytes);
  void readBody(std::string_view& bytes);
  void continueMatch(std::string_view& bytes);
  void beginPart(std::string_view head);
  void endPart();
  void fail(const char* error) { error_ = error; }

  PartReceiver& receiver_;
  /// CR LF, two hyphens, the boundary.
  std::string delimiter_;
  State state_ = State::delimiter;
  /// How much of the delimiter has come; of the first one the line break is taken as read.
  std::size_t matched_ = 2;
  std::string held_;
  int parts_ = 0;
  const char* error_ = nullptr;
};
