#pragma once

#include <QDialog>
#include <QList>
#include <QString>

#include <functional>

class QBoxLayout;
class QLineEdit;

namespace Planaria {

class CropDesigner;
class DB;
class IrradiationDesigner;
class JoinDesigner;
class Manipulation;
class ManipulationAction;
class ManipulationGraphView;
class ManipulationView;
class MorphologyActionDesigner;
class RemoveDesigner;

/// The dialog in which a manipulation is made or edited: its name, its tree, and beside the tree
/// either the product or, while an action is selected, what designs that action.
///
/// All editing is done on the manipulation itself, at once, and it is not written to the file: the
/// caller submits it when the form is accepted, and throws it away when not. Morphologies that are
/// made or edited on the way are stored, since they stand for themselves.
class ManipulationForm final : public QDialog
{
    Q_OBJECT
    Q_MOC_INCLUDE("model/ManipulationAction.h")

public:
    /// @param edited must outlive the form
    ManipulationForm(Manipulation *edited, DB *database, QWidget *parent = nullptr);
    ~ManipulationForm() override;

signals:
    /// The morphology in row @p id was stored.
    void morphologyChanged(int id);

public slots:
    void morphologyHasChanged(int id);
    /// @param action null for none
    void actionSelecChanged(ManipulationAction *action);
    void nameChanged();
    void formAccepted();

private:
    struct Panel
    {
        QWidget *widget;
        std::function<void()> clear;
    };

    void createWidgets();
    QBoxLayout *createMiddle();
    void createPanels(QBoxLayout *row);
    /// Hidden at first, with @p title above the content.
    template <typename Content>
    Content *addPanel(QBoxLayout *row, const QString &title, Content *content);
    /// Shows the panel of @p content in place of all others, which are cleared.
    void showPanel(const QWidget *content);
    void showProduct();
    void readSettings();
    void writeSettings() const;

    Manipulation *manipulation;
    DB *db;
    QLineEdit *nameEdit = nullptr;
    QString originalName; // of a stored manipulation
    ManipulationGraphView *graphView = nullptr;
    QList<Panel> panels; // one of them is visible
    ManipulationView *product = nullptr;
    MorphologyActionDesigner *morphologyDesigner = nullptr;
    RemoveDesigner *removeDesigner = nullptr;
    CropDesigner *cropDesigner = nullptr;
    JoinDesigner *joinDesigner = nullptr;
    IrradiationDesigner *irradiationDesigner = nullptr;
};

} // namespace Planaria
