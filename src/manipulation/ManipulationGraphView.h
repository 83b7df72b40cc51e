#pragma once

#include "widgets/ZoomGraphicsView.h"

#include <QHash>
#include <QList>
#include <QMap>

namespace Planaria {

class DB;
class EDGAction;
class Manipulation;
class ManipulationAction;

/// The editor of a manipulation as a tree: the product, in red, at the bottom, and above each
/// action what goes into it, up to the worms that come in. It edits in place, does not own the
/// manipulation, and draws the whole tree afresh after each edit.
class ManipulationGraphView final : public ZoomGraphicsView
{
    Q_OBJECT
    Q_MOC_INCLUDE("model/Manipulation.h")

public:
    ManipulationGraphView(Manipulation *shown, DB *database, QWidget *parent = nullptr);
    /// @param database has the worm that a new join begins with
    explicit ManipulationGraphView(DB *database, QWidget *parent = nullptr);
    ~ManipulationGraphView() override;

    /// Null for an action that is not shown.
    [[nodiscard]] EDGAction *node(ManipulationAction *action) const { return items_.value(action); }
    /// The one node that is selected; null for none or several.
    [[nodiscard]] EDGAction *selectedAction() const;
    void selectAction(ManipulationAction *action);
    void clearSelection();

    /// Follows a change of the manipulation's name.
    void updateAccessibleName();

signals:
    void signManipulationGraphChanged();
    /// The selection has become one node, of @p action, or none: null. Also in the midst of an
    /// edit, whose new tree stands by then.
    void signActionSelecChanged(ManipulationAction *action);

public slots:
    void clear();
    void setManipulation(Manipulation *manipulation);
    /// Offers in the context menu what the selection allows.
    void updateActions();

    // The commands.

    void addRemoveAction2SelecNode();
    void addCropAction2SelecNode();
    void addJoinAction2SelecNode();
    void addIrradiationAction2SelecNode();
    void deleteSelection();

private:
    using WeighMap = QMap<const ManipulationAction *, int>;

    void initWidget();
    void createActions();
    QAction *createAction(const QString &text, const QString &icon,
                          void (ManipulationGraphView::*command)());

    template <typename Action>
    void addAreaAction(Action *(Manipulation::*addBehind)(ManipulationAction *));
    /// Shows the edited tree with @p added selected.
    void showAdded(ManipulationAction *added);

    void clearScene();
    void buildFullManipulation();
    /// Makes a node for @p root and all that lies before it.
    /// @return those actions, each ahead of its inputs
    QList<ManipulationAction *> buildActionTree(ManipulationAction *root);
    void buildNode(ManipulationAction *action);
    /// The number of leaves beneath each of @p tree, itself included.
    static WeighMap calcWeighMap(const QList<ManipulationAction *> &tree);
    void locateActionTree(const QList<ManipulationAction *> &tree, const WeighMap &weights);
    /// Puts @p input, where it is there, above the node of @p action and @p side steps to the
    /// right.
    void locateInput(ManipulationAction *action, ManipulationAction *input, int side);
    void createLink(const QPointF &from, const QPointF &to);

    QAction *addRemoveAction = nullptr;
    QAction *addCropAction = nullptr;
    QAction *addJoinAction = nullptr;
    QAction *addIrradiationAction = nullptr;
    QAction *deleteAction = nullptr;

    Manipulation *manipulation = nullptr;
    DB *db;
    QHash<ManipulationAction *, EDGAction *> items_; // owned by the scene
};

} // namespace Planaria
