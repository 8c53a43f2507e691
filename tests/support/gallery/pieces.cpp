#include "support/gallery/pieces.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QSpinBox>
#include <QStandardItemModel>
#include <QSvgRenderer>
#include <QVBoxLayout>

#include "core/ui/card_frame.h"
#include "core/ui/footer_hints.h"
#include "core/ui/icon.h"
#include "core/ui/icon_tile.h"
#include "core/ui/key_caps.h"
#include "core/ui/palette_list.h"
#include "core/ui/row_delegate.h"
#include "core/ui/search_field.h"
#include "core/ui/theme.h"
#include "core/ui/toggle_switch.h"
#include "support/gallery/toasts.h"

using namespace Qt::StringLiterals;

void paintDesktop(QWidget& widget) {
  const bool dark = themeOf(widget).dark;
  QPainter painter(&widget);
  QLinearGradient sky(0, 0, widget.width(), widget.height());
  sky.setColorAt(0, dark ? QColor(0x2B3350) : QColor(0xC9D8F0));
  sky.setColorAt(1, dark ? QColor(0x101418) : QColor(0xE9E2D8));
  painter.fillRect(widget.rect(), sky);
}

namespace {

/// A desktop for cards to stand on.
class Desktop : public QWidget {
 public:
  using QWidget::QWidget;

 protected:
  void paintEvent(QPaintEvent*) override { paintDesktop(*this); }
};

class SampleDelegate : public RowDelegate {
 public:
  using RowDelegate::RowDelegate;

 protected:
  void paintContents(QPainter& painter, const QModelIndex& index, const RowLook& look) const override {
    const QRect tile(look.area.left(), look.area.top() + 8, Theme::kIconTile, Theme::kIconTile);
    const IconTile icon{.symbol = index.row() % 2 ? QString() : u"terminal.fill"_s,
                        .monogram = index.row() % 2 ? u"C"_s : QString(),
                        .color = index.row() % 2 ? QColor(0xD97757) : QColor()};
    icon.paint(painter, tile, look.theme, look.selected ? IconTile::Ground::selection : IconTile::Ground::card);
    const KeyCapRow caps{{u"⌃"_s, u"⌥"_s, QString(QChar(u'A' + index.row()))}};
    const double width = caps.size().width();
    const QRect text = look.area.adjusted(Theme::kIconTile + 12, 0, -static_cast<int>(width) - 12, 0);
    paintTitleAndDetail(painter, text, index.data().toString(), u"claude --resume --dangerously"_s, look);
    caps.paint(painter, {look.area.right() + 1 - width, look.area.top() + 12.0}, look.theme,
               look.selected ? KeyCapGround::selection : KeyCapGround::card);
  }
};

QWidget* samplePalette() {
  auto* content = new QWidget;
  auto* layout = new QVBoxLayout(content);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  auto* field = new SearchField(u"Search commands"_s);
  field->setText(u"git"_s);
  field->setTrailingText(u"3 of 12"_s);
  auto* list = new PaletteList(u"Commands"_s);
  auto* model = new QStandardItemModel(content);
  for (const auto& name :
       {u"Git status"_s, u"Claude"_s, u"Git log, the last twenty commits"_s, u"Codex"_s, u"Git push"_s})
    model->appendRow(new QStandardItem(name));
  list->setModel(model);
  list->setItemDelegate(new SampleDelegate(list));
  list->setCurrentIndex(model->index(0, 0));
  auto* listArea = new QWidget;
  auto* listLayout = new QVBoxLayout(listArea);
  listLayout->setContentsMargins(8, 0, 8, 8);
  listLayout->addWidget(list);
  layout->addWidget(field);
  layout->addWidget(listArea, 1);
  layout->addWidget(
      new FooterHints({{{u"↑"_s, u"↓"_s}, u"navigate"_s}, {{u"↩"_s}, u"type it"_s}, {{u"⎋"_s}, u"close"_s}}));
  return content;
}

Piece palette() {
  auto desktop = std::make_unique<Desktop>();
  desktop->resize(640, 480);
  auto* card = new CardFrame(Theme::kPanelMargin, true, desktop.get());
  card->setGeometry(desktop->rect());
  card->setContent(samplePalette());
  return {u"palette"_s, std::move(desktop)};
}

Piece controls() {
  auto window = std::make_unique<QWidget>();
  auto* layout = new QVBoxLayout(window.get());
  for (const bool on : {true, false}) {
    auto* toggle = new ToggleSwitch(u"Enabled"_s);
    toggle->setChecked(on);
    layout->addWidget(toggle);
  }
  layout->addWidget(new KeyCaps({u"⌃"_s, u"⌥"_s, u"⇧"_s, u"⌘"_s, u"Space"_s, u"↩"_s, u"F12"_s}));
  layout->addWidget(new QPushButton(u"Record Shortcut"_s));
  layout->addWidget(new QLineEdit(u"Text"_s));
  auto* box = new QCheckBox(u"Check box"_s);
  box->setChecked(true);
  layout->addWidget(box);
  layout->addWidget(new QCheckBox(u"Another"_s));
  auto* choice = new QComboBox;
  choice->addItems({u"System"_s, u"Dark"_s});
  layout->addWidget(choice);
  auto* number = new QSpinBox;
  number->setSuffix(u" s"_s);
  layout->addWidget(number);
  auto* disabled = new QPushButton(u"Not now"_s);
  disabled->setEnabled(false);
  layout->addWidget(disabled);
  auto* bar = new QScrollBar(Qt::Horizontal);
  bar->setRange(0, 100);
  bar->setPageStep(40);
  layout->addWidget(bar);
  return {u"controls"_s, std::move(window)};
}

/// Every symbol at 24 and 48 pixels with its name.
class ContactSheet : public QWidget {
 public:
  ContactSheet() { resize(kColumns * kCell.width(), (int(names_.size()) + kColumns - 1) / kColumns * kCell.height()); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    const Theme& theme = themeOf(*this);
    painter.setFont(Theme::detailFont());
    for (int i = 0; i < names_.size(); ++i) {
      const QPoint corner(i % kColumns * kCell.width(), i / kColumns * kCell.height());
      paintSymbol(painter, names_[i], QRectF(corner.x() + 20, corner.y() + 28, 24, 24), theme.text);
      paintSymbol(painter, names_[i], QRectF(corner.x() + 64, corner.y() + 16, 48, 48), theme.text);
      painter.setPen(theme.secondary);
      const QRect label(corner + QPoint(8, 72), QSize(kCell.width() - 16, 20));
      painter.drawText(label, Qt::AlignCenter,
                       painter.fontMetrics().elidedText(names_[i], Qt::ElideRight, label.width()));
    }
  }

 private:
  static constexpr int kColumns = 8;
  static constexpr QSize kCell{136, 100};
  QStringList names_ = symbolNames();
};

/// The application's and the tray's icons on panels of both kinds.
class AppIcons : public QWidget {
 public:
  AppIcons() { resize(480, 160); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    QSvgRenderer app(u":/icons/vantle.svg"_s);
    app.render(&painter, QRectF(16, 16, 128, 128));
    app.render(&painter, QRectF(160, 48, 64, 64));
    app.render(&painter, QRectF(240, 68, 24, 24));
    painter.fillRect(288, 0, 96, 160, QColor(0x2B2B2E));
    painter.fillRect(384, 0, 96, 160, QColor(0xE8E8EA));
    QSvgRenderer(u":/icons/vantle-tray-light.svg"_s).render(&painter, QRectF(325, 69, 22, 22));
    QSvgRenderer(u":/icons/vantle-tray-dark.svg"_s).render(&painter, QRectF(421, 69, 22, 22));
  }
};

}  // namespace

std::vector<Piece> makePieces() {
  std::vector<Piece> pieces;
  pieces.push_back(palette());
  pieces.push_back(toasts());
  pieces.push_back(controls());
  pieces.push_back({u"icons"_s, std::make_unique<ContactSheet>()});
  pieces.push_back({u"app-icons"_s, std::make_unique<AppIcons>()});
  addCLIPieces(pieces);
  return pieces;
}
