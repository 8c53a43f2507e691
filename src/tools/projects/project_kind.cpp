#include "tools/projects/project_kind.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <string>
#include <unordered_set>

#include "platform/folder_listing.h"

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kKinds = {
    ProjectKindText{ProjectKind::swift, "swift"_L1, "SW"_L1, 0xC8401F},
    ProjectKindText{ProjectKind::javascript, "javascript"_L1, "JS"_L1, 0x8A6D00},
    ProjectKindText{ProjectKind::typescript, "typescript"_L1, "TS"_L1, 0x2F6DB5},
    ProjectKindText{ProjectKind::python, "python"_L1, "PY"_L1, 0x35668F},
    ProjectKindText{ProjectKind::rust, "rust"_L1, "RS"_L1, 0xA2452A},
    ProjectKindText{ProjectKind::go, "go"_L1, "Go"_L1, 0x007D9C},
    ProjectKindText{ProjectKind::ruby, "ruby"_L1, "RB"_L1, 0xB11E12},
    ProjectKindText{ProjectKind::java, "java"_L1, "Jv"_L1, 0xA95A10},
    ProjectKindText{ProjectKind::kotlin, "kotlin"_L1, "Kt"_L1, 0x7A4FD6},
    ProjectKindText{ProjectKind::php, "php"_L1, "PHP"_L1, 0x5F6699},
    ProjectKindText{ProjectKind::elixir, "elixir"_L1, "Ex"_L1, 0x6B4A82},
    ProjectKindText{ProjectKind::dotnet, "dotnet"_L1, "C#"_L1, 0x512BD4},
    ProjectKindText{ProjectKind::cpp, "cpp"_L1, "C++"_L1, 0x3A5FA0},
    ProjectKindText{ProjectKind::web, "web"_L1, "WEB"_L1, 0xC2401E},
    ProjectKindText{ProjectKind::docker, "docker"_L1, "DKR"_L1, 0x1D6FA8},
    ProjectKindText{ProjectKind::folder, "folder"_L1, ""_L1, 0x6A707A},
};

/// The names in one folder, files and folders alike.
class Names {
 public:
  explicit Names(const QString& path) {
    listFolder(
        QFile::encodeName(path).toStdString(), ListingDetail::namesOnly, [](const char*) { return true; },
        [this](FolderEntry&& entry) { names_.insert(std::move(entry.name)); });
  }

  bool hasAny(std::initializer_list<const char*> wanted) const {
    return std::ranges::any_of(wanted, [this](const char* name) { return names_.contains(name); });
  }
  bool anyEndsIn(std::initializer_list<const char*> suffixes) const {
    return std::ranges::any_of(names_, [&](const std::string& name) {
      return std::ranges::any_of(suffixes, [&](const char* suffix) { return name.ends_with(suffix); });
    });
  }

 private:
  std::unordered_set<std::string> names_;
};

struct Rule {
  ProjectKind kind;
  bool (*applies)(const Names&);
};

bool usesGradleOrMaven(const Names& names) { return names.hasAny({"pom.xml", "build.gradle", "build.gradle.kts"}); }

/// The first that applies decides: what a project is stands above what it uses for its tooling.
constexpr std::array kRules = {
    Rule{ProjectKind::swift,
         [](const Names& n) { return n.hasAny({"Package.swift"}) || n.anyEndsIn({".xcodeproj", ".xcworkspace"}); }},
    Rule{ProjectKind::rust, [](const Names& n) { return n.hasAny({"Cargo.toml"}); }},
    Rule{ProjectKind::go, [](const Names& n) { return n.hasAny({"go.mod"}); }},
    Rule{ProjectKind::python,
         [](const Names& n) { return n.hasAny({"pyproject.toml", "requirements.txt", "setup.py", "Pipfile"}); }},
    Rule{ProjectKind::elixir, [](const Names& n) { return n.hasAny({"mix.exs"}); }},
    Rule{ProjectKind::ruby, [](const Names& n) { return n.hasAny({"Gemfile"}) || n.anyEndsIn({".gemspec"}); }},
    Rule{ProjectKind::php, [](const Names& n) { return n.hasAny({"composer.json"}); }},
    Rule{ProjectKind::kotlin,
         [](const Names& n) {
           return usesGradleOrMaven(n) && (n.hasAny({"build.gradle.kts"}) || n.anyEndsIn({".kt"}));
         }},
    Rule{ProjectKind::java, usesGradleOrMaven},
    Rule{ProjectKind::dotnet, [](const Names& n) { return n.anyEndsIn({".csproj", ".sln"}); }},
    Rule{ProjectKind::typescript,
         [](const Names& n) { return n.hasAny({"package.json"}) && n.hasAny({"tsconfig.json"}); }},
    Rule{ProjectKind::javascript, [](const Names& n) { return n.hasAny({"package.json"}); }},
    Rule{ProjectKind::cpp,
         [](const Names& n) { return n.hasAny({"CMakeLists.txt"}) || n.anyEndsIn({".cpp", ".cc", ".hpp"}); }},
    Rule{ProjectKind::docker, [](const Names& n) { return n.hasAny({"Dockerfile"}); }},
    Rule{ProjectKind::web, [](const Names& n) { return n.hasAny({"index.html"}); }},
};

}  // namespace

const ProjectKindText& text(ProjectKind kind) { return kKinds[static_cast<std::size_t>(kind)]; }

ProjectKind detectProjectKind(const QString& path) {
  const Names names(path);
  const auto rule = std::ranges::find_if(kRules, [&](const Rule& candidate) { return candidate.applies(names); });
  return rule == kRules.end() ? ProjectKind::folder : rule->kind;
}
