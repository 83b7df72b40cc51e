#pragma once

#include <QWidget>

#include <memory>

class QSqlQueryModel;

namespace Planaria {

class DB;
class MorphologyAction;
class MorphologyChooser;

/// Chooses the worm of a leaf among those in the file, and edits, copies and makes worms on the
/// way, which are stored at once. The action belongs to somebody else and must stay while it is
/// shown.
class MorphologyActionDesigner final : public QWidget
{
    Q_OBJECT
    Q_MOC_INCLUDE("model/MorphologyAction.h")

public:
    explicit MorphologyActionDesigner(DB *database, QWidget *parent = nullptr);
    ~MorphologyActionDesigner() override;

signals:
    /// The morphology in row @p id was stored.
    void morphologyChanged(int id);
    /// Another stored morphology was chosen.
    void morphologySelectedChanged();

public slots:
    /// @param action null for none
    void setMorphologyAction(MorphologyAction *action);
    /// Takes the drawing away; the action and the choice stay.
    void clear();
    void editMorphology();
    void copyMorphology();
    void newMorphology();
    void morphologyComboBoxChanged(int index);

private:
    void createWidgets();
    /// Gives what was stored to the action.
    void takeOver();
    /// Other leaves of the tree that show the morphology in row @p id must not write its former
    /// state back.
    void reloadOtherLeaves(int id);

    DB *db;
    MorphologyAction *morphologyAction = nullptr;
    std::unique_ptr<QSqlQueryModel> model;
    MorphologyChooser *chooser = nullptr;
};

} // namespace Planaria
