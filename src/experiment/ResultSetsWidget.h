#pragma once

#include <QList>
#include <QScrollArea>

#include <memory>

class QSqlQueryModel;

namespace Planaria {

class DB;
class Experiment;
class ResultSet;
class ResultSetWidget;

/// All that came of an experiment: a scrolling column of result sets, which opens in the order of
/// their periods and is never empty.
class ResultSetsWidget final : public QScrollArea
{
    Q_OBJECT

public:
    /// @param edited must outlive the widget
    ResultSetsWidget(Experiment *edited, DB *database, QWidget *parent);
    ~ResultSetsWidget() override;

    /// Whether the results may be stored; tells the user why not.
    [[nodiscard]] bool isDataCorrect();

signals:
    /// The morphology in row @p morphologyId was stored.
    void morphologyChanged(int morphologyId);

public slots:
    /// For morphologies that are stored elsewhere: shows their present state wherever they stand.
    void morphologyHasChanged(int morphologyId);
    void newResultSet();
    void copyResultSet(ResultSetWidget *resultSetWidget);
    void removeResultSet(ResultSetWidget *resultSetWidget);
    void updateResultsWidgets();
    void scrollToBottom();

private:
    void createResultSetWidget(ResultSet *set);
    /// Shows a set that was added last.
    void showNew(ResultSet *set);
    /// Brings the head of a set into sight.
    void scrollTo(const ResultSetWidget *resultSetWidget);
    void spreadChange(int morphologyId);

    Experiment *experiment;
    DB *db;
    std::unique_ptr<QSqlQueryModel> model; // all morphologies, for all lists
    QWidget *container;
    QList<ResultSetWidget *> resultSetWidgets; // as they are shown
    bool changing = false;                     // it tells of a change
};

} // namespace Planaria
