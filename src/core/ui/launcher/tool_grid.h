#pragma once

#include <QTimer>
#include <QWidget>

#include <map>
#include <memory>
#include <optional>

#include "core/ui/launcher/glide.h"
#include "core/ui/launcher/tool_tile.h"

class SystemInfo;
class ToolGridController;

/// The pages of tiles side by side, seen through a window of one page, with the highlight that glides below them.
/// Clicks and drags go to the controller.
class ToolGrid : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kWidth = 3 * ToolTile::kSize.width() + 6 * 8;

  ToolGrid(ToolGridController& controller, const SystemInfo& system, QWidget* parent);
  ~ToolGrid() override;

  /// Height of a grid with that many rows of tiles; the empty one has room for its sentence.
  static int heightFor(int rows);
  /// Takes over what the model says.
  void refresh();
  /// The highlight says which tile the keys are meant for: it can be put away while they go elsewhere.
  void setHighlightShown(bool shown);
  ToolTile* tile(const QString& toolID) const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  class Plate;
  struct Piece {
    ToolTile* tile;
    std::unique_ptr<Glide> glide;
  };
  struct Drag {
    QString toolID;
    QPoint grip;
    QPoint pointer;
  };

  Piece& piece(const QString& toolID);
  ToolTileFace face(int index) const;
  void wire(ToolTile& tile, const QString& toolID);
  int indexOf(const QString& toolID) const;
  void point(const QString& toolID, QPoint globalPosition);
  void lift(const QString& toolID, QPoint grip);
  void carry(QPoint globalPosition);
  void drop();
  void followPointer();
  void turnAtEdge();

  ToolGridController& controller_;
  const SystemInfo& system_;
  QWidget* strip_;
  Plate* plate_;
  Glide stripGlide_;
  Glide plateGlide_;
  std::map<QString, Piece> pieces_;
  QStringList shownIDs_;
  int shownPage_ = 0;
  std::optional<Drag> drag_;
  QTimer edgeTimer_;
  bool isHighlightShown_ = true;
  QPoint lastPointer_;
};
