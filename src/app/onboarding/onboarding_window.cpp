#include "app/onboarding/onboarding_window.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "app/onboarding/onboarding_steps.h"
#include "app/onboarding/step_fade.h"
#include "core/ui/launcher/page_dots.h"
#include "core/ui/primary_button.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kSize(560, 640);

}  // namespace

OnboardingWindow::OnboardingWindow(AppContext& context)
    : TitledWindow(u"Welcome"_s),
      context_(context),
      model_(context.settings, *context.platform.permissions, context.clock),
      steps_(new QStackedWidget(this)),
      pages_{new WelcomeStep(context), new PrivacyStep(context), new PermissionsStep(context, model_),
             new TryItStep(context, model_), new DoneStep(context)},
      fade_(new StepFade(*steps_)),
      back_(new QPushButton(u"Back"_s)),
      dots_(new PageDots(this)),
      next_(new PrimaryButton) {
  setFixedSize(kSize);
  for (OnboardingPage* page : pages_) steps_->addWidget(page);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(5 * Theme::kGrid, 6 * Theme::kGrid, 5 * Theme::kGrid, 3 * Theme::kGrid);
  column->setSpacing(2 * Theme::kGrid);
  column->addWidget(steps_, 1);
  column->addWidget(makeFooter());
  connect(&model_, &OnboardingModel::stepChanged, this, &OnboardingWindow::showStep);
  connect(&model_, &OnboardingModel::trialChanged, this, &OnboardingWindow::followButtons);
  connect(&model_.permissions(), &PermissionList::changed, this, &OnboardingWindow::followButtons);
  connect(&model_, &OnboardingModel::finished, this, &QWidget::close);
}

QWidget* OnboardingWindow::makeFooter() {
  auto* footer = new QWidget;
  auto* row = new QGridLayout(footer);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(back_, 0, 0, Qt::AlignLeft);
  row->addWidget(dots_, 0, 1, Qt::AlignCenter);
  row->addWidget(next_, 0, 2, Qt::AlignRight);
  row->setColumnStretch(0, 1);
  row->setColumnStretch(2, 1);
  back_->setAutoDefault(true);
  back_->setAccessibleName(back_->text());
  QSizePolicy keepsPlace = back_->sizePolicy();
  keepsPlace.setRetainSizeWhenHidden(true);
  back_->setSizePolicy(keepsPlace);
  connect(back_, &QPushButton::clicked, &model_, &OnboardingModel::back);
  connect(next_, &QPushButton::clicked, &model_, &OnboardingModel::next);
  return footer;
}

void OnboardingWindow::open() {
  if (!isVisible()) model_.begin();
  TitledWindow::open();
}

void OnboardingWindow::showEvent(QShowEvent* event) {
  model_.setVisible(true);
  TitledWindow::showEvent(event);
}

void OnboardingWindow::hideEvent(QHideEvent* event) {
  model_.setVisible(false);
  TitledWindow::hideEvent(event);
}

void OnboardingWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) return TitledWindow::keyPressEvent(event);
  defaultButton().click();
}

void OnboardingWindow::showStep() {
  if (isVisible() && !context_.platform.systemInfo->isMotionReduced()) fade_->start();
  page().arrive();
  steps_->setCurrentWidget(&page());
  back_->setVisible(model_.canGoBack());
  dots_->setPages(static_cast<int>(model_.step()), model_.isRepair() ? 1 : OnboardingModel::kStepCount);
  dots_->setAccessibleName(
      u"Step %1 of %2"_s.arg(static_cast<int>(model_.step()) + 1).arg(OnboardingModel::kStepCount));
  followButtons();
  QWidget* first = page().firstFocus();
  (first ? first : &defaultButton())->setFocus();
}

QPushButton& OnboardingWindow::defaultButton() const {
  QPushButton* own = page().defaultButton();
  return own ? *own : *next_;
}

void OnboardingWindow::followButtons() {
  const bool isAsking = page().defaultButton() != nullptr;
  const bool isMissing = model_.step() == OnboardingStep::permissions && isAsking;
  next_->setProminent(!isAsking);
  if (model_.isLast())
    next_->setText(model_.isRepair() ? u"Done"_s : u"Finish"_s);
  else
    next_->setText(isMissing ? u"Not Now"_s : u"Continue"_s);
  next_->setAccessibleName(next_->text());
}
