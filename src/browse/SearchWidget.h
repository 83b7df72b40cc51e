#pragma once

#include "browse/SearchStatement.h"

#include <QList>
#include <QPoint>
#include <QWidget>

#include <memory>

class QAction;
class QBoxLayout;
class QComboBox;
class QLineEdit;
class QMenu;
class QModelIndex;
class QPushButton;
class QSqlQueryModel;

namespace Planaria {

class DataTableView;
class DB;
class ElementCommands;

/// The tab that asks the library one question and shows the elements found.
///
/// It changes no element itself: new, copy, edit and delete go out as signals, one for each type,
/// and whoever answers must have made the change when the signal returns; a deletion that fails
/// ends the transaction. Then the question is asked again, by what the controls hold at that
/// moment. The same happens at each updateModel() as long as a question was asked since the type
/// was chosen.
class SearchWidget final : public QWidget
{
    Q_OBJECT

public:
    /// @param database must outlive the widget
    SearchWidget(DB *database, QWidget *parent);
    ~SearchWidget() override;

    /// Lets go of the rows, but not of the question; for when the file is closed.
    void clear();
    /// Asks again, if something was asked. @param id the element to select; 0 for none
    void updateModel(int id);
    /// Makes the element with this @p id the current one, if it was found.
    void selectId(int id);

public slots:
    /// Sets the controls, and searches. The indexes are positions in their lists.
    void search(int typeIndex, int fieldIndex, int op, const QString &text);

signals:
    void newExperiment();
    void newManipulation();
    void newMorphology();
    void newDrug();
    void newRNAi();
    void newSpecies();
    void newPublication();

    void copyExperiment(int id);
    void copyManipulation(int id);
    void copyMorphology(int id);
    void copyDrug(int id);
    void copyRNAi(int id);
    void copySpecies(int id);
    void copyPublication(int id);

    void editExperiment(int id);
    void editManipulation(int id);
    void editMorphology(int id);
    void editDrug(int id);
    void editRNAi(int id);
    void editSpecies(int id);
    void editPublication(int id);

    void deleteExperiment(int id);
    void deleteManipulation(int id);
    void deleteMorphology(int id);
    void deleteDrug(int id);
    void deleteRNAi(int id);
    void deleteSpecies(int id);
    void deletePublication(int id);

    /// There are no rows to be had.
    void databaseCorrupted();
    /// How many rows are shown, and what they are; no words where nothing is shown.
    void nEleChanged(int n, const QString &eleName, const QString &eleNameP);

private slots:
    void selectionChanged();
    void typeChanged(int index);
    void newElement();
    void copySelected();
    void editSelected();
    void deleteSelected();
    /// Return searches from anywhere in the tab.
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuCalled(QPoint pos);
    /// Asks what the controls hold.
    void search();

    // To the elements of another type that have the current one.

    void searchExperimentsFromResult();
    void searchManipulationsFromResult();
    void searchMorphologiesFromResult();
    void searchDrugsFromResult();
    void searchRNAiFromResult();
    void searchSpeciesFromResult();
    void searchPublicationsFromResult();

private:
    using Step = void (SearchWidget::*)();
    using IdSignal = void (SearchWidget::*)(int id);

    void createWidgets();
    QBoxLayout *createControls();
    void createActions();

    void searchExperiments();
    void searchManipulations();
    void searchMorphologies();
    void searchDrugs();
    void searchRNAi();
    void searchSpecies();
    void searchPublications();
    /// Asks for elements of a type by what the other controls hold.
    void searchElements(int typeIndex);
    void tellNotImplemented();
    /// Shows the rows that answer the statement.
    void queryChanged();
    void updateNumEle();

    /// The index in the model of the row that the user is at.
    [[nodiscard]] QModelIndex currentSourceIndex() const;
    /// The id in the row of @p index, be it of the model or of the view.
    [[nodiscard]] static int idAt(const QModelIndex &index);
    void deleteElements(const QList<int> &ids);
    void focusView();
    /// By the menu's entry for @p typeIndex.
    void searchFromResult(int typeIndex);
    /// For what the row that the user is at has in @p column.
    void searchFromResult(int typeIndex, int fieldIndex, int column);

    QComboBox *typeCombo = nullptr;
    QComboBox *fieldCombo = nullptr;
    QComboBox *operatorCombo = nullptr;
    QLineEdit *valueEdit = nullptr;
    QPushButton *searchButton = nullptr;

    DB *db;
    std::unique_ptr<QSqlQueryModel> model; // null while there is no result
    DataTableView *view = nullptr;
    SearchStatement query; // the last question; unknown as long as there was none

    QMenu *menu = nullptr;
    QList<QAction *> actions; // by type

    ElementCommands *commands = nullptr;
};

} // namespace Planaria
