#include "fuzz/transcripts/transcript_under_test.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  readAsTranscript(data, size, SessionAgent::claude, parseClaude);
  return 0;
}
