#include "experiment/ResultSetsWidget.h"

#include "db/DB.h"
#include "experiment/ResultParts.h"
#include "experiment/ResultSetWidget.h"
#include "experiment/TabOrder.h"
#include "model/Experiment.h"
#include "model/ResultSet.h"

#include <QMessageBox>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSet>
#include <QTimer>
#include <QVBoxLayout>

#include <chrono>
#include <functional>

namespace Planaria {

namespace {

constexpr int gap = 5;
constexpr std::chrono::milliseconds timeToLayOut(100);

} // namespace

ResultSetsWidget::ResultSetsWidget(Experiment *edited, DB *database, QWidget *parent)
    : QScrollArea(parent), experiment(edited), db(database),
      model(db->newTableModel(QStringLiteral("Morphology"), QStringLiteral("Name"))),
      container(new QWidget)
{
    setWidget(container);
    setWidgetResizable(true);
    setFrameStyle(0);
    setAccessibleName(tr("Results"));
    for (ResultSet *set : sortedBy(experiment->resultSets(), std::mem_fn(&ResultSet::regenPeriod)))
        createResultSetWidget(set);
    updateResultsWidgets();
}

ResultSetsWidget::~ResultSetsWidget()
{
    delete takeWidget(); // the lists go before their model
}

// --- Sets ---

void ResultSetsWidget::createResultSetWidget(ResultSet *set)
{
    auto *widget = new ResultSetWidget(set, static_cast<int>(resultSetWidgets.size()), db,
                                       model.get(), nullptr);
    shareChanges(this, &ResultSetsWidget::spreadChange, widget);
    connect(widget, &ResultSetWidget::copyMe, this, &ResultSetsWidget::copyResultSet);
    connect(widget, &ResultSetWidget::removeMe, this, &ResultSetsWidget::removeResultSet);
    connect(widget, &ResultSetWidget::newResultSet, this, &ResultSetsWidget::newResultSet);
    resultSetWidgets.append(widget);
}

void ResultSetsWidget::updateResultsWidgets()
{
    if (resultSetWidgets.isEmpty()) {
        newResultSet();
        return;
    }
    delete container->layout();
    auto *layout = new QVBoxLayout(container);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(gap);
    QWidget *beforeInTabs = this;
    for (int i = 0; i < resultSetWidgets.size(); ++i) {
        layout->addWidget(resultSetWidgets[i]);
        resultSetWidgets[i]->setIndex(resultSetWidgets.size() > 1 ? i : -1);
        beforeInTabs = leadTabsThrough(beforeInTabs, resultSetWidgets[i]);
    }
}

void ResultSetsWidget::newResultSet()
{
    showNew(experiment->addResultSet());
}

void ResultSetsWidget::copyResultSet(ResultSetWidget *resultSetWidget)
{
    showNew(experiment->addResultSet(*resultSetWidget->set()));
}

void ResultSetsWidget::showNew(ResultSet *set)
{
    createResultSetWidget(set);
    updateResultsWidgets();
    QTimer::singleShot(timeToLayOut, this, &ResultSetsWidget::scrollToBottom);
}

void ResultSetsWidget::removeResultSet(ResultSetWidget *resultSetWidget)
{
    resultSetWidgets.removeOne(resultSetWidget);
    resultSetWidget->hide();
    resultSetWidget->deleteLater(); // it is its own button that asks
    disconnect(this, nullptr, resultSetWidget, nullptr);
    experiment->removeResultSet(resultSetWidget->set());
    updateResultsWidgets();
}

void ResultSetsWidget::scrollToBottom()
{
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

void ResultSetsWidget::scrollTo(const ResultSetWidget *resultSetWidget)
{
    horizontalScrollBar()->setValue(0);
    verticalScrollBar()->setValue(resultSetWidget->y());
}

// --- Changes of morphologies ---

void ResultSetsWidget::morphologyHasChanged(int morphologyId)
{
    if (changing)
        return;
    db->updateModel(model.get());
    spreadChange(morphologyId);
}

void ResultSetsWidget::spreadChange(int morphologyId)
{
    if (changing)
        return;
    const QScopedValueRollback guard(changing, true);
    emit morphologyChanged(morphologyId);
}

// --- Checks ---

bool ResultSetsWidget::isDataCorrect()
{
    if (resultSetWidgets.isEmpty()) {
        QMessageBox::warning(this, tr("No results defined"),
                             tr("The results of an experiment cannot be left blank. Please, "
                                "specify the results for the experiment."));
        return false;
    }
    QSet<double> periods;
    for (ResultSetWidget *widget : std::as_const(resultSetWidgets)) {
        scrollTo(widget); // a warning does not tell which set it means
        if (!widget->isDataCorrect())
            return false;
        const double period = widget->set()->regenPeriod();
        if (periods.contains(period)) {
            QMessageBox::warning(
                this, tr("Regeneration period duplicated"),
                tr("Two result sets cannot have the same regeneration period. Please, specify "
                   "different regeneration periods for every  result set."));
            return false;
        }
        periods.insert(period);
    }
    return true;
}

} // namespace Planaria
