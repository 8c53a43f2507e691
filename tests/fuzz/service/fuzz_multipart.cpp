#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "service/http/multipart_reader.h"

namespace {

constexpr std::string_view kDelimiter = "\r\n--b0";

/// What the reader hands on, and that it does so in order.
class Recorder final : public PartReceiver {
 public:
  struct Part {
    PartHead head;
    std::string content;
  };

  void beginPart(const PartHead& head) override {
    require(!isInPart_);
    isInPart_ = true;
    parts.push_back({head, {}});
  }
  void takePart(std::string_view bytes) override {
    require(isInPart_ && !bytes.empty());
    parts.back().content += bytes;
  }
  void endPart() override {
    require(isInPart_);
    isInPart_ = false;
  }

  static void require(bool holds) {
    if (!holds) std::abort();
  }

  std::vector<Part> parts;

 private:
  bool isInPart_ = false;
};

struct Reading {
  Recorder recorder;
  MultipartReader reader{"b0", recorder};
};

/// In pieces whose sizes follow from the bytes themselves.
void feedInPieces(MultipartReader& reader, std::string_view bytes) {
  std::uint32_t state = static_cast<std::uint32_t>(bytes.size()) + 1;
  while (!bytes.empty()) {
    state = state * 1664525 + 1013904223 + static_cast<unsigned char>(bytes.front());
    const std::string_view piece = bytes.substr(0, 1 + (state >> 24) % 9);
    // A copy of its own, so that reading beyond it is noticed.
    const std::vector<char> copy(piece.begin(), piece.end());
    reader.feed({copy.data(), copy.size()});
    bytes.remove_prefix(piece.size());
  }
}

bool isSame(const PartHead& left, const PartHead& right) {
  return left.name == right.name && left.fileName == right.fileName && left.type == right.type;
}

/// Errors are found where the bytes are: how they were cut changes nothing, but for what came of a part before one.
void compare(const Reading& whole, const Reading& pieces) {
  Recorder::require(whole.reader.isComplete() == pieces.reader.isComplete());
  Recorder::require((whole.reader.error() == nullptr) == (pieces.reader.error() == nullptr));
  Recorder::require(whole.recorder.parts.size() == pieces.recorder.parts.size());
  for (std::size_t i = 0; i < whole.recorder.parts.size(); ++i) {
    Recorder::require(isSame(whole.recorder.parts[i].head, pieces.recorder.parts[i].head));
    Recorder::require(whole.recorder.parts[i].content == pieces.recorder.parts[i].content);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  Reading whole;
  Reading pieces;
  whole.reader.feed(bytes);
  feedInPieces(pieces.reader, bytes);
  compare(whole, pieces);
  std::size_t content = 0;
  for (const Recorder::Part& part : whole.recorder.parts) {
    Recorder::require(part.content.find(kDelimiter) == std::string::npos);
    content += part.content.size();
  }
  Recorder::require(content <= size && !(whole.reader.isComplete() && whole.reader.error()));
  // The same bytes as a header say nothing that is not a boundary.
  const auto boundary = MultipartReader::boundary(QByteArray(bytes.data(), static_cast<qsizetype>(size)));
  Recorder::require(!boundary || (!boundary->isEmpty() && boundary->size() <= 70));
  return 0;
}
