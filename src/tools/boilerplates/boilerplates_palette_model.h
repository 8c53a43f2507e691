#pragma once

#include <vector>

#include "core/palette/palette_list_model.h"
#include "tools/boilerplates/boilerplate_settings.h"

/// The questions on the way to a project, in their order.
enum class BoilerplateStep { boilerplate, name, place, copying };

/// The rows of the step that the user is at; while the name is asked for, the query is the name. Main thread only.
class BoilerplatesPaletteModel final : public PaletteListModel {
  Q_OBJECT

 public:
  enum Role { TitleRole = Qt::DisplayRole, DetailRole = Qt::UserRole, SymbolRole };
  /// What choosing a row does.
  enum class Action { useBoilerplate, openSettings, useName, usePlace, chooseFolder };

  using PaletteListModel::PaletteListModel;

  void askForBoilerplate(std::vector<Boilerplate> boilerplates);
  /// `name`: as it was typed before.
  void askForName(const Boilerplate& boilerplate, const QString& name = {});
  void askForPlace(const QString& name);
  void setPlaces(const QStringList& places);
  void showProgress(const QString& progress);

  BoilerplateStep step() const { return step_; }
  const Boilerplate& boilerplate() const { return boilerplate_; }
  const QString& name() const { return name_; }
  /// None in an empty list.
  std::optional<Action> selectedAction() const;
  /// The selected boilerplate or place; the action says which it is.
  const Boilerplate& selectedBoilerplate() const { return boilerplates_[selectedRow().index]; }
  QString selectedPlace() const { return places_[static_cast<qsizetype>(selectedRow().index)]; }

  QString emptyText() const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 protected:
  void collectRows() override;

 private:
  struct Row {
    Action action;
    QString symbol;
    QString title;
    QString detail;
    /// Of the boilerplate or the place.
    std::size_t index = 0;
  };

  const Row& selectedRow() const { return rows_[static_cast<std::size_t>(selectionIndex())]; }
  void enter(BoilerplateStep step);
  bool matches(const QString& text) const;
  void collectBoilerplates();
  void collectName();
  void collectPlaces();

  BoilerplateStep step_ = BoilerplateStep::boilerplate;
  std::vector<Boilerplate> boilerplates_;
  Boilerplate boilerplate_;
  QString name_;
  QStringList places_;
  QString progress_;
  std::vector<Row> rows_;
};
