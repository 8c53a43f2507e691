#include "app/updates/changelog.h"

#include <QRegularExpression>
#include <QVersionNumber>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Hundreds of versions fit; what is longer is cut.
constexpr qsizetype kMaximumLength = 256 * 1024;
constexpr auto kUnreleased = "Unreleased"_L1;

QVersionNumber number(const QString& version) { return QVersionNumber::fromString(version); }

bool isVersion(const QString& name) { return number(name).segmentCount() >= 2; }

bool isEmpty(const Changelog::Version& version) { return version.summary.isEmpty() && version.groups.empty(); }

/// Without the marks that make text bold, code or a link.
QString plain(QString text) {
  static const QRegularExpression link(u"\\[([^\\]]*)\\]\\([^)]*\\)"_s);
  text.replace(link, u"\\1"_s);
  return text.remove(u"**"_s).remove(u'`').simplified();
}

void append(QString& text, QStringView line) {
  if (!text.isEmpty()) text += u' ';
  text += line;
}

/// Takes the lines one by one and builds the versions in the order of the text.
class Reader {
 public:
  void take(QStringView line) {
    const QStringView words = line.trimmed();
    if (line.startsWith("## "_L1))
      openVersion(words.mid(3).toString());
    else if (line.startsWith("### "_L1))
      openGroup(words.mid(4).toString());
    else if (words.startsWith("- "_L1) || words.startsWith("* "_L1))
      openEntry(words.mid(2));
    else if (words.isEmpty())
      entry_ = nullptr;
    else
      goOn(words);
  }

  std::vector<Changelog::Version> finish() {
    for (Changelog::Version& version : versions_) {
      version.summary = plain(version.summary);
      for (Changelog::Group& group : version.groups)
        for (QString& text : group.entries) text = plain(text);
      std::erase_if(version.groups, [](const Changelog::Group& group) { return group.entries.isEmpty(); });
    }
    std::erase_if(versions_, isEmpty);
    return std::move(versions_);
  }

 private:
  void openVersion(const QString& heading) {
    static const QRegularExpression form(u"^\\[?([^\\[\\]\\s]+)\\]?(?:\\s+[-–—]\\s+(\\S+))?\\s*$"_s);
    const QString name = form.match(heading).captured(1);
    const bool isKnown = std::ranges::find(versions_, name, &Changelog::Version::name) != versions_.end();
    entry_ = nullptr;
    reads_ = !isKnown && (isVersion(name) || name == kUnreleased);
    if (reads_) versions_.push_back({name, QDate::fromString(form.match(heading).captured(2), Qt::ISODate), {}, {}});
  }

  void openGroup(const QString& title) {
    entry_ = nullptr;
    if (reads_) versions_.back().groups.push_back({plain(title), {}});
  }

  void openEntry(QStringView words) {
    if (!reads_) return;
    auto& groups = versions_.back().groups;
    if (groups.empty()) groups.emplace_back();
    entry_ = &groups.back().entries.emplaceBack(words.toString());
  }

  void goOn(QStringView words) {
    if (isHidden(words))
      entry_ = nullptr;
    else if (entry_)
      append(*entry_, words);
    else if (reads_ && versions_.back().groups.empty())
      append(versions_.back().summary, words);
  }

  /// Comments, and the addresses at the foot of such files.
  static bool isHidden(QStringView words) {
    return words.startsWith("<!--"_L1) || (words.startsWith(u'[') && words.contains("]:"_L1));
  }

  std::vector<Changelog::Version> versions_;
  /// The entry that the next line continues; null when a line would begin something new.
  QString* entry_ = nullptr;
  bool reads_ = false;
};

}  // namespace

Changelog Changelog::parse(QStringView text) {
  Reader reader;
  for (const QStringView line : text.left(kMaximumLength).split(u'\n')) reader.take(line);
  Changelog changelog;
  for (Version& version : reader.finish()) {
    if (version.name == kUnreleased)
      changelog.unreleased_ = std::move(version);
    else
      changelog.versions_.push_back(std::move(version));
  }
  std::ranges::stable_sort(changelog.versions_, std::ranges::greater(),
                           [](const Version& version) { return number(version.name); });
  return changelog;
}

std::vector<Changelog::Version> Changelog::upTo(const QString& running) const {
  std::vector<Version> shown;
  const bool isReleased = std::ranges::find(versions_, running, &Version::name) != versions_.end();
  if (unreleased_ && !isReleased) {
    shown.push_back(*unreleased_);
    shown.back().name = running;
  }
  std::ranges::copy_if(versions_, std::back_inserter(shown),
                       [&](const Version& version) { return number(version.name) <= number(running); });
  return shown;
}

std::vector<Changelog::Version> Changelog::since(const QString& earlier, const QString& running) const {
  std::vector<Version> shown = upTo(running);
  const bool isUpdate = isVersion(earlier) && number(earlier) < number(running);
  std::erase_if(shown, [&](const Version& version) {
    return isUpdate ? number(version.name) <= number(earlier) : version.name != running;
  });
  return shown;
}
