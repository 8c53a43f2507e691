#include "tools/boilerplates/boilerplates_palette_window.h"

#include <QPainter>

#include <array>

#include "core/ui/icon_tile.h"
#include "core/ui/palette_view.h"
#include "core/ui/row_delegate.h"
#include "core/ui/search_field.h"
#include "core/ui/theme.h"
#include "tools/boilerplates/boilerplates_palette_controller.h"

using namespace Qt::StringLiterals;

namespace {

using Model = BoilerplatesPaletteModel;

constexpr int kTileToText = 12;

/// Paints one row: its symbol, its title and what it leads to.
class RowOfSymbol final : public RowDelegate {
 public:
  using RowDelegate::RowDelegate;

 protected:
  void paintContents(QPainter& painter, const QModelIndex& index, const RowLook& look) const override {
    const int top = look.area.top() + (look.area.height() - Theme::kIconTile) / 2;
    const IconTile tile{.symbol = index.data(Model::SymbolRole).toString(), .monogram = {}, .color = {}};
    tile.paint(painter, QRect(look.area.left(), top, Theme::kIconTile, Theme::kIconTile), look.theme,
               look.selected ? IconTile::Ground::selection : IconTile::Ground::card);
    paintTitleAndDetail(painter, look.area.adjusted(Theme::kIconTile + kTileToText, 0, 0, 0),
                        index.data(Model::TitleRole).toString(), index.data(Model::DetailRole).toString(), look);
  }
};

struct StepText {
  BoilerplateStep step;
  QLatin1StringView symbol;
  /// In the empty field.
  QStringView placeholder;
  QStringView onReturn;
  QStringView onEscape;
};

constexpr std::array kSteps = {
    StepText{BoilerplateStep::boilerplate, "magnifyingglass"_L1, u"Choose a boilerplate…", u"choose", u"close"},
    StepText{BoilerplateStep::name, "pencil"_L1, u"Name of the project", u"continue", u"back"},
    StepText{BoilerplateStep::place, "magnifyingglass"_L1, u"Where? Type to filter…", u"create", u"back"},
    StepText{BoilerplateStep::copying, "shippingbox.fill"_L1, u"Creating the project…", u"", u"cancel"},
};

std::vector<KeyHint> hints(const StepText& text) {
  std::vector<KeyHint> hints;
  if (text.step == BoilerplateStep::boilerplate || text.step == BoilerplateStep::place)
    hints.push_back({{u"↑"_s, u"↓"_s}, u"move"_s});
  if (text.step != BoilerplateStep::copying) hints.push_back({{u"↩"_s}, text.onReturn.toString()});
  hints.push_back({{u"esc"_s}, text.onEscape.toString()});
  return hints;
}

void follow(PaletteView& view, BoilerplateStep step) {
  const StepText& text = kSteps.at(static_cast<std::size_t>(step));
  view.search().setSymbol(text.symbol);
  view.search().setPlaceholder(text.placeholder.toString());
  view.footer().setHints(hints(text));
}

PaletteView* makeView(BoilerplatesPaletteController& controller) {
  Model& model = controller.model();
  auto* view = new PaletteView(
      model, new RowOfSymbol,
      {.title = u"Boilerplates"_s, .placeholder = {}, .listName = u"Boilerplates and places"_s, .hints = {}});
  QObject::connect(&model, &PaletteListModel::changed, view, [view, &model] { follow(*view, model.step()); });
  QObject::connect(view, &PaletteView::chosen, view, [&controller](int row) {
    controller.model().select(row);
    controller.choose();
  });
  follow(*view, model.step());
  return view;
}

}  // namespace

BoilerplatesPaletteWindow::BoilerplatesPaletteWindow(PanelWindow& native, BoilerplatesPaletteController& controller)
    : PaletteWindow(native, makeView(controller), controller) {}
