#include "tools/session_history/transcript_files.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::string_view kExtension = ".jsonl";
constexpr std::string_view kSubAgentPrefix = "agent-";
/// Codex nests by year, month and day; more than this is none of its folders.
constexpr int kDeepest = 16;

bool isTranscriptName(std::string_view name) { return name.size() > kExtension.size() && name.ends_with(kExtension); }

void keep(const std::string& folder, FolderEntry&& entry, std::vector<TranscriptFile>& files) {
  if (entry.kind == FolderEntry::Kind::file && entry.size >= kSmallestTranscript)
    files.push_back({folder + '/' + entry.name, entry.modified});
}

void listProject(const std::string& folder, std::vector<TranscriptFile>& files) {
  const auto wanted = [](std::string_view name) {
    return isTranscriptName(name) && !name.starts_with(kSubAgentPrefix);
  };
  listFolder(folder, ListingDetail::sizesOfFiles, wanted,
             [&](FolderEntry&& entry) { keep(folder, std::move(entry), files); });
}

void listTree(const std::string& folder, int depth, std::vector<TranscriptFile>& files) {
  std::vector<std::string> subfolders;
  // A name without a dot can be a folder's; what else there is need not be looked at.
  const auto wanted = [](std::string_view name) { return isTranscriptName(name) || !name.ends_with(".json"); };
  listFolder(folder, ListingDetail::sizesOfFiles, wanted, [&](FolderEntry&& entry) {
    if (entry.kind == FolderEntry::Kind::folder)
      subfolders.push_back(folder + '/' + entry.name);
    else if (isTranscriptName(entry.name))
      keep(folder, std::move(entry), files);
  });
  if (depth == kDeepest) return;
  for (const std::string& subfolder : subfolders) listTree(subfolder, depth + 1, files);
}

void sortNewestFirst(std::vector<TranscriptFile>& files) {
  std::ranges::sort(files, [](const TranscriptFile& left, const TranscriptFile& right) {
    return left.modified != right.modified ? left.modified > right.modified : left.path < right.path;
  });
}

}  // namespace

std::string TranscriptFile::stem() const {
  const std::size_t slash = path.rfind('/');
  return path.substr(slash + 1, path.size() - slash - 1 - kExtension.size());
}

std::string TranscriptFile::folderName() const {
  const std::size_t end = path.rfind('/');
  const std::size_t start = path.rfind('/', end - 1);
  return path.substr(start + 1, end - start - 1);
}

std::vector<TranscriptFile> claudeCandidates(const std::string& home) {
  const std::string base = home + "/.claude/projects";
  std::vector<std::string> projects;
  listFolder(
      base, ListingDetail::kindOfAll, [](const char*) { return true; },
      [&](FolderEntry&& entry) {
        if (entry.kind != FolderEntry::Kind::file) projects.push_back(base + '/' + entry.name);
      });
  std::vector<TranscriptFile> files;
  for (const std::string& project : projects) listProject(project, files);
  sortNewestFirst(files);
  return files;
}

std::vector<TranscriptFile> codexCandidates(const std::string& home) {
  std::vector<TranscriptFile> files;
  listTree(home + "/.codex/sessions", 0, files);
  sortNewestFirst(files);
  return files;
}
