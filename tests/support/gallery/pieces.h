#pragma once

#include <QString>
#include <QWidget>

#include <memory>
#include <vector>

/// One picture of the gallery.
struct Piece {
  QString name;
  std::unique_ptr<QWidget> widget;
};

std::vector<Piece> makePieces();

/// The windows of Frequent CLIs.
void addCLIPieces(std::vector<Piece>& pieces);
