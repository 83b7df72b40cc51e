#pragma once

#include <QGroupBox>
#include <QHash>
#include <QList>
#include <QString>

#include <memory>

class QComboBox;
class QSqlQueryModel;
class QTableWidget;
class QTableWidgetItem;

namespace Planaria {

class DB;
class Drug;
class Experiment;
class ExperimentDrug;
class ExperimentRNAi;
class RNAi;

/// A column of times in a table of treatments.
template <typename Treatment> struct TimeColumn
{
    QString header;
    double (Treatment::*time)() const;
    void (Treatment::*setTime)(double);
};

/// What tells one kind of treatment from another.
/// @tparam Given what the worms were treated with, out of the table `Given::table`
template <typename Treatment, typename Given> struct TreatmentKind
{
    QString title;
    QList<TimeColumn<Treatment>> times;

    QString noneTitle;
    QString noneText;
    QString newTitle;
    QString editTitle;
    QString nameLabel;
    QString takenTitle;
    QString takenText;

    const QList<Treatment *> &(Experiment::*all)() const;
    Treatment *(Experiment::*add)(Given *);
    bool (Experiment::*remove)(Treatment *);
    Given *(Treatment::*given)() const;
    void (Treatment::*give)(Given *);
};

/// The treatments of one kind in an experiment: a table with a row for each, in which what was
/// given is chosen, and times are typed. The experiment is edited in memory; what is given is
/// stored at once when it is made or named here.
template <typename Treatment, typename Given> class TreatmentsWidget : public QGroupBox
{
protected:
    using Kind = TreatmentKind<Treatment, Given>;

    TreatmentsWidget(const Kind &newKind, Experiment *edited, DB *database, QWidget *parent);
    ~TreatmentsWidget() override;

private:
    void createTable();
    void createLayout();
    void populateTable();

    /// A new last row; the table must not sort meanwhile.
    void appendRow(Treatment *treatment);
    [[nodiscard]] int rowOf(const QWidget *box) const;
    /// As wide as all columns need.
    void limitWidth();
    /// A new treatment with @p given, which it takes over.
    void insertNewRow(std::unique_ptr<Given> given);
    QComboBox *createComboBox(Treatment *treatment);
    void comboChanged(Treatment *treatment, int id);
    void itemChanged(QTableWidgetItem *item);

    void addTreatment();
    void removeTreatment();
    void createGiven();
    void editGiven();

    /// Null without a current row.
    [[nodiscard]] Treatment *currentTreatment() const;
    Given *givenBy(const Treatment *treatment) const { return (treatment->*kind.given)(); }
    /// Asks for a name that nothing in the table has yet; empty where the user gives up.
    QString askForName(const QString &title, const QString &start);
    /// Reads what can be given anew; each row stays with its own.
    void updateModel();

    Kind kind;
    Experiment *experiment;
    DB *db;
    std::shared_ptr<QSqlQueryModel> model; // all that can be given, for all rows
    QTableWidget *table;
    QHash<const QWidget *, Treatment *> treatmentOfBox;
    QHash<const QTableWidgetItem *, Treatment *> treatmentOfItem;
};

extern template class TreatmentsWidget<ExperimentDrug, Drug>;
extern template class TreatmentsWidget<ExperimentRNAi, RNAi>;

} // namespace Planaria
