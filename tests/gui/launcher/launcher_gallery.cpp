// Renders the launcher in its states, both appearances, at 1x and 2x (QT_SCALE_FACTOR), into a folder of PNGs.
#include <QApplication>
#include <QDir>
#include <QStyleFactory>

#include "core/ui/theme.h"
#include "core/ui/theme_palette.h"
#include "launcher_stage.h"

using namespace Qt::StringLiterals;

namespace {

struct Stage : LauncherStage {
  Stage(PanelWindow& nativeSide, QString out) : LauncherStage(nativeSide), folderOut(std::move(out)) {}

  void shot(const QString& name) {
    QCoreApplication::processEvents();
    panel->window().grab().save(folderOut + u'/' + name + u".png"_s);
  }

  QString folderOut;
};

void renderAll(const QString& folder) {
  FakePanelWindow native;
  Stage stage(native, folder);
  stage.controller.show();
  stage.shot(u"grid"_s);
  stage.controller.highlight(4);
  stage.shot(u"grid-middle"_s);
  stage.controller.turnPage(1);
  stage.shot(u"page-2"_s);
  stage.controller.show();
  stage.type(u"image"_s);
  stage.shot(u"filtered"_s);
  stage.type(u" x"_s);
  stage.shot(u"empty"_s);
  stage.controller.show();
  stage.key(keycode::kE, true);
  stage.shot(u"arrange"_s);
  stage.setOnline(false);
  stage.controller.show();
  stage.shot(u"offline"_s);
  stage.controller.highlight(1);
  stage.shot(u"offline-selected"_s);
  stage.setOnline(true);
  for (const QString& id : {u"open-project"_s, u"feedback"_s}) stage.registry.togglePin(id);
  stage.registry.setEnabled(u"promptify"_s, false);
  stage.controller.show();
  stage.controller.highlight(1);
  stage.shot(u"pinned"_s);
}

}  // namespace

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
  const QString out = argc > 1 ? QString::fromLocal8Bit(argv[1]) : u"."_s;
  for (const auto& [theme, name] :
       {std::pair{&Theme::light(), u"light"_s}, std::pair{&Theme::darkTheme(), u"dark"_s}}) {
    QApplication::setPalette(themePalette(*theme));
    const QString folder = u"%1/%2-%3x"_s.arg(out, name).arg(app.devicePixelRatio());
    QDir().mkpath(folder);
    renderAll(folder);
  }
}
