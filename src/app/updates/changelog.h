#pragma once

#include <QDate>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>
#include <vector>

/// What is new in each version, read from the changelog that ships with the program: "## [1.2.0] - 2026-11-21" opens a
/// version, "### Added" a group, "- " an entry. What does not fit is skipped. A plain value without widgets.
class Changelog {
 public:
  struct Group {
    /// Empty for entries before the first heading.
    QString title;
    QStringList entries;
  };
  struct Version {
    QString name;
    /// Null when it has none.
    QDate date;
    /// The words above the first group; empty when there are none.
    QString summary;
    std::vector<Group> groups;
  };

  static Changelog parse(QStringView text);

  /// Every version up to the one that runs, the newest first. When that has no section of its own, the unreleased one
  /// stands for it; otherwise nobody sees what is not released.
  std::vector<Version> upTo(const QString& running) const;
  /// What is new to someone who had `earlier`: the versions after it. Coming from a newer version, or from one that is
  /// no version number, only the running version's own section.
  std::vector<Version> since(const QString& earlier, const QString& running) const;

 private:
  std::vector<Version> versions_;
  std::optional<Version> unreleased_;
};
