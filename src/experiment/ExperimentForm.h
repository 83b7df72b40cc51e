#pragma once

#include <QDialog>
#include <QString>

#include <memory>

class QBoxLayout;
class QComboBox;
class QDialogButtonBox;
class QFormLayout;
class QGroupBox;
class QLabel;
class QLineEdit;

namespace Planaria {

class DB;
class ElementChoice;
class Experiment;
class Manipulation;
class ManipulationView;
class Publication;
class ResultSetsWidget;
class Species;

/// The dialog in which an experiment is composed: its name, what it refers to, its treatments and
/// its results.
///
/// All editing is done on the experiment itself, at once, and it is not written to the file: the
/// caller submits it when the form is accepted, and throws it away when not. What stands for
/// itself, such as publications, manipulations, drugs and morphologies, is stored at once when it
/// is made or edited on the way.
class ExperimentForm final : public QDialog
{
    Q_OBJECT

public:
    /// @param edited must outlive the form
    ExperimentForm(Experiment *edited, DB *database, QWidget *parent);
    ~ExperimentForm() override;

public slots:
    /// The manipulation may use the morphology that was stored, and is shown afresh.
    void morphologyHasChanged(int morphologyId);
    void nameChanged();
    void publicationComboChanged(int index);
    void editPublication();
    void newPublication();
    void speciesComboChanged(int index);
    void editSpecies();
    void newSpecies();
    void manipulationComboChanged(int index);
    void editActionsManipulation();
    void copyActionsManipulation();
    void newActionsManipulation();
    void formAccepted();

protected:
    /// The form is left by its buttons only: Escape loses no long composition.
    void keyPressEvent(QKeyEvent *e) override;

private:
    using Slot = void (ExperimentForm::*)();

    void createWidgets();
    QBoxLayout *createUpperPart();
    QFormLayout *createHead();
    /// The list, and beside it the buttons to edit and to make what it chooses.
    QBoxLayout *createRow(QComboBox *box, Slot editSlot, Slot newSlot);
    QGroupBox *createManipulationBox();
    QDialogButtonBox *createButtons();
    /// A list of all rows of @p table, in a new @p box. @param role what the choice is for
    ElementChoice *createChoice(const QString &table, const QString &column, const QString &role,
                                QComboBox **box);
    void addButton(QBoxLayout *layout, const QString &text, const QString &role, Slot slot);

    // Each lets the user work on a new object of its own, and stores it and takes it over where the
    // user accepts.

    void runPublicationForm(std::unique_ptr<Publication> publication);
    void runSpeciesForm(std::unique_ptr<Species> species);
    void runManipulationForm(std::unique_ptr<Manipulation> manipulation);

    void updatePublicationLabel();
    /// Gives @p manipulation to the experiment and shows it.
    void takeManipulation(std::unique_ptr<Manipulation> manipulation);
    /// Warns that the experiment lacks something, and leads to where it is chosen.
    void refuse(const QString &title, const QString &text, QWidget *place);
    /// Whether the experiment refers to all that it must.
    bool hasReferences();
    bool hasOwnName();
    void readSettings();

    QLineEdit *nameEdit = nullptr;
    QString oldName; // of a stored experiment
    QLabel *publicationLabel = nullptr;
    QComboBox *publicationComboBox = nullptr;
    QComboBox *speciesComboBox = nullptr;
    QComboBox *manipulationComboBox = nullptr;
    ElementChoice *publicationChoice = nullptr;
    ElementChoice *speciesChoice = nullptr;
    ElementChoice *manipulationChoice = nullptr;
    ManipulationView *manipulationView = nullptr;
    ResultSetsWidget *resultSetsWidget = nullptr;
    QDialogButtonBox *buttons = nullptr;
    DB *db;
    Experiment *experiment;
};

} // namespace Planaria
