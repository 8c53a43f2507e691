#include "app/settings/usage_preview.h"

#include <QJsonDocument>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/settings/unfolding_row.h"
#include "core/net/analytics.h"
#include "core/ui/settings_form.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

/// Text of a fixed width on a ground of its own, to be selected and copied.
class CodeBlock final : public QLabel {
 public:
  CodeBlock() {
    setFont(Theme::monospacedFont());
    setTextFormat(Qt::PlainText);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    setFocusPolicy(Qt::NoFocus);
    setMargin(Theme::kGrid);
  }

 protected:
  void paintEvent(QPaintEvent* event) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(themeOf(*this).raised);
    painter.drawRoundedRect(rect(), Theme::kRowRadius, Theme::kRowRadius);
    painter.end();
    QLabel::paintEvent(event);
  }
};

QString example(const Analytics& analytics) {
  const QJsonObject event = analytics.event(UsageEvent::toolActivated, u"frequent-clis"_s);
  return QString::fromUtf8(QJsonDocument(event).toJson(QJsonDocument::Indented)).trimmed();
}

}  // namespace

QWidget* makeUsagePreview(const Analytics& analytics) {
  auto* code = new CodeBlock;
  auto* body = new QWidget;
  auto* column = new QVBoxLayout(body);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(Theme::kGrid);
  column->addWidget(code);
  column->addWidget(
      makeDetailLabel(u"One such message each time you start a tool, and one without “tool” each time Vantle starts. "
                      u"If you have entered "
                      u"a credential in General, the request carries it."_s));
  auto* toggle = new QPushButton(u"Show What Is Sent"_s);
  toggle->setAccessibleName(toggle->text());
  auto* row = new UnfoldingRow(u"What an event looks like"_s, u"Of this installation, as it would be sent now."_s,
                               toggle, body);
  QObject::connect(toggle, &QPushButton::clicked, row, [row, toggle, code, &analytics] {
    if (!row->isUnfolded()) code->setText(example(analytics));
    row->unfold(!row->isUnfolded());
    toggle->setText(row->isUnfolded() ? u"Hide"_s : u"Show What Is Sent"_s);
    toggle->setAccessibleName(row->isUnfolded() ? u"Hide what is sent"_s : toggle->text());
  });
  return row;
}
