#include <QLineEdit>
#include <QPainter>
#include <QVBoxLayout>

#include "core/ui/card_frame.h"
#include "core/ui/theme.h"
#include "support/cli_world.h"
#include "support/gallery/pieces.h"
#include "tools/frequent_clis/cli_palette_view.h"
#include "tools/frequent_clis/focused_command.h"
#include "tools/frequent_clis/frequent_clis_settings_view.h"
#include "tools/frequent_clis/icon_picker_grid.h"

using namespace Qt::StringLiterals;

namespace {

class NoPanel final : public CLIPalettePanel {
 public:
  void present() override {}
  void warmUp() override {}
  void dismiss() override {}
};

CLIWorld& sampleWorld() {
  static CLIWorld world([](CLIPaletteController&) { return std::make_unique<NoPanel>(); });
  if (world.store.commands().size() > 2) return world;
  world.add(u"Gemini, one question"_s, u"gemini -p 'what changed since yesterday?'"_s, true);
  world.add(u"Ollama"_s, u"ollama run qwen3-coder:30b --verbose"_s, true);
  world.add(u"Tests, watching"_s, u"cmake --build build && ctest --test-dir build --output-on-failure -j4"_s);
  world.add(u"Two lines"_s, u"git status\ngit log --oneline\t-5"_s, true);
  world.add(
      u"A title that is far too long for the one line that it has in the palette, so it is cut short at its end"_s,
      u"aws s3 sync . s3://bucket/a/very/long/prefix/that/does/not/fit --delete --exclude '*.tmp' --dryrun"_s);
  world.add(u"日本語のコマンド 🚀"_s, u"echo こんにちは"_s);
  world.add(u"Copilot"_s, u"copilot"_s);
  world.add(u"Cursor agent"_s, u"cursor-agent"_s);
  return world;
}

/// The palette's card on a desktop.
class PaletteStage : public QWidget {
 public:
  explicit PaletteStage(const QString& query) {
    resize(716, 476);
    model_.reset(sampleWorld().store.commands());
    model_.setQuery(query);
    auto* card = new CardFrame(Theme::kPanelMargin, true, this);
    card->setGeometry(rect());
    card->setContent(new CLIPaletteView(model_));
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter(this).fillRect(rect(), themeOf(*this).dark ? QColor(0x2B3350) : QColor(0xC9D8F0));
  }

 private:
  PaletteModel model_;
};

/// The settings page as wide as the settings window gives it.
std::unique_ptr<QWidget> settingsPage() {
  static FocusedCommand focused;
  focused.set(sampleWorld().store.commands()[3].id);
  auto window = std::make_unique<QWidget>();
  auto* layout = new QVBoxLayout(window.get());
  layout->addWidget(new FrequentCLIsSettingsView(sampleWorld().store, focused));
  window->setFixedWidth(472);
  return window;
}

std::unique_ptr<QWidget> iconPicker(const QString& query) {
  auto picker = std::make_unique<IconPickerGrid>(u"cohere"_s, nullptr);
  picker->findChild<QLineEdit*>()->setText(query);
  return picker;
}

}  // namespace

void addCLIPieces(std::vector<Piece>& pieces) {
  pieces.push_back({u"clis-palette"_s, std::make_unique<PaletteStage>(QString())});
  pieces.push_back({u"clis-palette-filtered"_s, std::make_unique<PaletteStage>(u"cod"_s)});
  pieces.push_back({u"clis-palette-empty"_s, std::make_unique<PaletteStage>(u"no such thing"_s)});
  pieces.push_back({u"clis-settings"_s, settingsPage()});
  pieces.push_back({u"clis-icons"_s, iconPicker({})});
  pieces.push_back({u"clis-icons-filtered"_s, iconPicker(u"ai"_s)});
  pieces.push_back({u"clis-icons-empty"_s, iconPicker(u"nothing like it"_s)});
}
