#pragma once

#include <QColor>
#include <QString>

#include <span>
#include <vector>

/// What a project folder seems to hold, in the order of badges in lists.
enum class ProjectKind {
  swift,
  javascript,
  typescript,
  python,
  rust,
  go,
  ruby,
  java,
  kotlin,
  php,
  elixir,
  dotnet,
  cpp,
  web,
  docker,
  folder,
};

struct ProjectKindText {
  ProjectKind kind;
  QLatin1StringView rawValue;
  /// On the badge; empty for none.
  QLatin1StringView tag;
  /// The badge's ground, 0xRRGGBB: the colour each language goes by, dark enough for white text.
  QRgb color;
};

const ProjectKindText& text(ProjectKind kind);

/// The kind of a folder by the names in it; `folder` when it cannot be listed. No file is opened. Blocking.
ProjectKind detectProjectKind(const QString& path);
