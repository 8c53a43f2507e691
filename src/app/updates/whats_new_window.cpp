#include "app/updates/whats_new_window.h"

#include <QFile>
#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <QLocale>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QStyle>

#include "core/ui/reading_area.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"
#include "platform/updater.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kSize(560, 600);
constexpr QSize kSmallest(440, 400);
constexpr int kLogo = 64;
/// Empty edge inside of the logo, so that what shows of it stands in line with the rest.
constexpr int kLogoEdge = 4;
constexpr int kBulletColumn = 16;

/// What stands below a line, under which the versions scroll away.
class Footer final : public QWidget {
 protected:
  void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(0, 0, width(), 1, themeOf(*this).hairline); }
};

QLabel* makeText(const QString& text) {
  auto* label = new QLabel(text);
  label->setTextFormat(Qt::PlainText);
  QFont font = Theme::rowFont();
  font.setWeight(QFont::Normal);
  label->setFont(font);
  label->setWordWrap(true);
  return label;
}

/// "Added" and its entries, each behind a bullet.
QWidget* makeGroup(const Changelog::Group& group) {
  auto* block = new QWidget;
  auto* grid = new QGridLayout(block);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setVerticalSpacing(6);
  grid->setHorizontalSpacing(0);
  grid->setColumnMinimumWidth(0, kBulletColumn);
  grid->setColumnStretch(1, 1);
  if (!group.title.isEmpty()) grid->addWidget(makeDetailLabel(group.title), 0, 0, 1, 2);
  for (const QString& entry : group.entries) {
    const int row = grid->rowCount();
    grid->addWidget(makeText(u"•"_s), row, 0, Qt::AlignTop);
    grid->addWidget(makeText(entry), row, 1);
  }
  return block;
}

QWidget* makeVersionHeading(const Changelog::Version& version) {
  auto* line = new QWidget;
  auto* row = new QHBoxLayout(line);
  row->setContentsMargins(0, Theme::kGrid, 0, 0);
  row->addWidget(makeHeading(u"Version %1"_s.arg(version.name)), 1);
  if (version.date.isValid()) {
    QLabel* date = makeDetailLabel(QLocale().toString(version.date, u"d MMMM yyyy"_s));
    date->setWordWrap(false);
    row->addWidget(date);
  }
  return line;
}

QWidget* makeVersions(const std::vector<Changelog::Version>& versions) {
  auto* all = new QWidget;
  auto* column = new QVBoxLayout(all);
  // The scroll bar stands in the margin.
  const int bar = all->style()->pixelMetric(QStyle::PM_ScrollBarExtent);
  column->setContentsMargins(4 * Theme::kGrid, 0, 4 * Theme::kGrid - bar, 2 * Theme::kGrid);
  column->setSpacing(Theme::kGrid);
  for (const Changelog::Version& version : versions) {
    column->addWidget(makeVersionHeading(version));
    auto* card = new SettingsSection;
    if (!version.summary.isEmpty()) card->addWide(makeText(version.summary));
    for (const Changelog::Group& group : version.groups) card->addWide(makeGroup(group));
    column->addWidget(card);
  }
  if (versions.empty()) column->addWidget(makeText(u"There is nothing to tell about this version."_s));
  column->addStretch(1);
  return all;
}

}  // namespace

WhatsNewWindow::WhatsNewWindow(UpdateNotice& notice, const Updater& updater, Changelog changelog)
    : TitledWindow(u"What's New"_s),
      notice_(notice),
      changelog_(std::move(changelog)),
      title_(new QLabel),
      subtitle_(makeDetailLabel({})),
      versions_(new ReadingArea(u"Versions"_s)),
      done_(new QPushButton(u"Done"_s)) {
  resize(kSize);
  versions_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  setMinimumSize(kSmallest);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(makeHeader());
  column->addWidget(versions_, 1);
  column->addWidget(makeFooter(updater));
}

Changelog WhatsNewWindow::shippedChangelog() {
  QFile file(u":/CHANGELOG.md"_s);
  return file.open(QIODevice::ReadOnly) ? Changelog::parse(QString::fromUtf8(file.readAll())) : Changelog();
}

QWidget* WhatsNewWindow::makeHeader() {
  auto* header = new QWidget;
  auto* row = new QHBoxLayout(header);
  row->setContentsMargins(4 * Theme::kGrid - kLogoEdge, 3 * Theme::kGrid, 4 * Theme::kGrid, Theme::kGrid);
  row->setSpacing(2 * Theme::kGrid);
  auto* logo = new QLabel;
  logo->setPixmap(QIcon(u":/icons/vantle.svg"_s).pixmap(QSize(kLogo, kLogo), devicePixelRatioF()));
  row->addWidget(logo);
  QFont font = Theme::fieldFont();
  font.setWeight(QFont::DemiBold);
  title_->setFont(font);
  auto* texts = new QVBoxLayout;
  texts->setSpacing(2);
  texts->addStretch(1);
  texts->addWidget(title_);
  texts->addWidget(subtitle_);
  texts->addStretch(1);
  row->addLayout(texts, 1);
  return header;
}

QWidget* WhatsNewWindow::makeFooter(const Updater& updater) {
  auto* footer = new Footer;
  auto* row = new QHBoxLayout(footer);
  row->setContentsMargins(4 * Theme::kGrid, 2 * Theme::kGrid, 4 * Theme::kGrid, 2 * Theme::kGrid);
  row->addWidget(makeDetailLabel(updater.description()), 1);
  done_->setAccessibleName(done_->text());
  connect(done_, &QPushButton::clicked, this, &QWidget::close);
  row->addWidget(done_);
  return footer;
}

void WhatsNewWindow::open() {
  fill();
  TitledWindow::open();
  done_->setFocus();
}

void WhatsNewWindow::fill() {
  const auto earlier = notice_.takeEarlier();
  const QString& running = notice_.running();
  title_->setText(earlier ? u"Vantle %1 is installed"_s.arg(running) : u"What's new in Vantle"_s);
  subtitle_->setText(earlier ? u"You had %1 before."_s.arg(*earlier) : u"You have version %1."_s.arg(running));
  QWidget* content = makeVersions(earlier ? changelog_.since(*earlier, running) : changelog_.upTo(running));
  content->setAutoFillBackground(false);
  versions_->setWidget(content);
  content->setAutoFillBackground(false);
}
