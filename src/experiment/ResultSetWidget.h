#pragma once

#include <QGroupBox>
#include <QList>

class QBoxLayout;
class QFrame;
class QPushButton;
class QSqlQueryModel;

namespace Planaria {

class DB;
class ResultantMorphology;
class ResultantMorphologyWidget;
class ResultSet;

/// What came of an experiment after one period of regeneration: the period, the number of worms,
/// and the shapes that they had, the most frequent first.
class ResultSetWidget final : public QGroupBox
{
    Q_OBJECT

public:
    /// @param shown must outlive the widget
    /// @param morphologies all that are stored, by name; shared with others, and outlives them
    ResultSetWidget(ResultSet *shown, int index, DB *database, QSqlQueryModel *morphologies,
                    QWidget *parent);

    [[nodiscard]] ResultSet *set() const { return resultSet; }
    /// Puts the letter of the set into the title. @param index from 0; below 0 for no letter
    void setIndex(int index);
    /// Whether the set may be stored; tells the user why not.
    [[nodiscard]] bool isDataCorrect();

signals:
    /// The morphology in row @p morphologyId was stored.
    void morphologyChanged(int morphologyId);
    void copyMe(ResultSetWidget *widget);
    void removeMe(ResultSetWidget *widget);
    void newResultSet();

public slots:
    void morphologyHasChanged(int morphologyId);
    void nChanged(int value);
    void regPeriodChanged(double value);
    void copyResultSet();
    void removeResultSet();
    void addResultantMorphology();
    void removeResultantMorphology(ResultantMorphologyWidget *resMorWidget);

private:
    void createWidgets();
    QBoxLayout *createLeftColumn();
    QPushButton *createButton(const QString &text);
    void createMorphologies();
    void createResultantMorphologyWidget(ResultantMorphology *result);
    void updateMorWidgets();

    ResultSet *resultSet;
    DB *db;
    QSqlQueryModel *model;
    QFrame *morphologiesFrame = nullptr;
    QPushButton *addButton = nullptr;
    QPushButton *lastButton = nullptr; // before the morphologies in the order of the Tab key
    QList<ResultantMorphologyWidget *> morphologyWidgets; // as they are shown
    bool changing = false;                                // it tells of a change
};

} // namespace Planaria
