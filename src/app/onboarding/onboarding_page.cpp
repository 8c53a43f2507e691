#include "app/onboarding/onboarding_page.h"

#include <QIcon>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include "core/ui/theme.h"
#include "core/ui/toned_label.h"
#include "core/ui/wrapped_text.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kSign = 64;
constexpr int kTextWidth = 480;
constexpr int kTextLines = 3;

/// A large tile, or the logo for a tile without a symbol.
class Sign final : public QWidget {
 public:
  explicit Sign(const IconTile& tile) : tile_(tile) { setFixedSize(kSign, kSign); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    if (tile_.symbol.isEmpty())
      QIcon(u":/icons/vantle.svg"_s).paint(&painter, rect().adjusted(-kLogoRim, -kLogoRim, kLogoRim, kLogoRim));
    else
      tile_.paint(painter, rect(), themeOf(*this));
  }

 private:
  /// The logo's drawing has room around it.
  static constexpr int kLogoRim = 4;

  IconTile tile_;
};

QFont titleFont() {
  QFont font = Theme::fieldFont();
  font.setPointSizeF(font.pointSizeF() * 24 / 17);
  font.setWeight(QFont::DemiBold);
  return font;
}

QFont textFont() {
  QFont font = Theme::rowFont();
  font.setWeight(QFont::Normal);
  return font;
}

}  // namespace

OnboardingPage::OnboardingPage(const IconTile& sign, const QString& title, const QString& text)
    : column_(new QVBoxLayout(this)), title_(new QLabel(this)), text_(new TonedLabel(&Theme::secondary, {}, this)) {
  column_->setContentsMargins(0, 0, 0, 0);
  column_->setSpacing(2 * Theme::kGrid);
  auto* head = new QVBoxLayout;
  head->setSpacing(Theme::kGrid);
  title_->setFont(titleFont());
  text_->setFont(textFont());
  for (QLabel* label : {title_, text_}) {
    label->setAlignment(Qt::AlignHCenter);
    label->setWordWrap(true);
    head->addWidget(label, 0, Qt::AlignHCenter);
  }
  column_->addWidget(new Sign(sign), 0, Qt::AlignHCenter);
  column_->addLayout(head);
  column_->addSpacing(Theme::kGrid);
  setTexts(title, text);
}

void OnboardingPage::setTexts(const QString& title, const QString& text) {
  title_->setText(title);
  title_->setFixedWidth(kTextWidth);
  text_->setText(text);
  text_->setFixedWidth(balancedWidth(text, text_->font(), kTextWidth, kTextLines) + 2);
  setAccessibleName(title);
}
