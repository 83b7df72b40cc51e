#include "browse/DataTableView.h"

#include "support/TemporaryLibrary.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QLineEdit>
#include <QPointer>
#include <QSignalSpy>
#include <QSqlQueryModel>
#include <QStandardItemModel>
#include <QtTest>

#include <memory>

namespace Planaria {

/// The table of all lists, over models of a real library.
class DataTableViewTest final : public QObject
{
    Q_OBJECT

private slots:
    // Shape
    void startsWithoutRows();
    void showsAModelInItsShape();
    void showsAllRowsOfAModelThatIsReadInBatches();
    void sortsByTheColumnAndOrderItIsGiven();
    void showsNothingOfANullModel();
    void deletesTheModelItHoldsAtItsEnd();
    void leavesAModelThatWasTakenAwayToItsOwner();
    void showsAnotherModelInTheSameShape();

    // Order
    void sortsNaturallyInAnyColumn_data();
    void sortsNaturallyInAnyColumn();
    void sortsYearsAsNumbersAfterThoseThatAreMissing();
    void keepsRowsThatCompareEqualInTheirOrder();
    void sortsByTheColumnWhoseHeaderIsClicked();
    void numbersTheRowsFromTheTop();
    void headsTheColumnsWithTheirNamesAlone();

    // Updates
    void comesUpToDateAfterItsQueryRanAgain();
    void keepsOrderAndShapeAfterItsQueryRanAgain();
    void writesEachChangeOfDataToTheDebugOutput();

    // Current row
    void selectsByAnIndexOfTheModel();
    void selectsByARowOfTheModel();
    void selectsTheRowOnTop();
    void selectsNothingWithoutAModel();
    void findsTheModelsIndexOfARow();
    void selectsWholeRowsByAClick();

    void isASoundModel();
};

namespace {

/// A view of the table Drug, with the names in the order of their ids.
class DrugView final
{
public:
    explicit DrugView(const QStringList &names)
    {
        add(names);
        model = library.db()->newTableModel("Drug").release();
        view.setModel(model, 1, Qt::AscendingOrder);
    }

    void add(const QStringList &names)
    {
        library.run("BEGIN");
        for (const QString &name : names)
            if (library.db()->insertRow("Drug", {{"Name", name}}, false) < 1)
                qFatal("cannot add %s", qUtf8Printable(name));
        library.run("COMMIT");
    }

    /// What a list does when its table has changed.
    void update()
    {
        model->setQuery(std::move(*library.db()->newQuery(model->query().lastQuery())));
        view.modelUpdated();
    }

    /// From top to bottom.
    [[nodiscard]] QStringList shown() const
    {
        QStringList names;
        for (int row = 0; row < view.model()->rowCount(); ++row)
            names += view.model()->index(row, 1).data().toString();
        return names;
    }

    TemporaryLibrary library;
    DataTableView view{nullptr};
    QSqlQueryModel *model = nullptr; // of the view
};

QString current(const DataTableView &view)
{
    const QModelIndex index = view.currentIndex();
    return index.isValid() ? index.siblingAtColumn(1).data().toString() : QString();
}

QStringList numbered(int count)
{
    QStringList names;
    for (int i = 1; i <= count; ++i)
        names += QStringLiteral("drug %1").arg(i);
    return names;
}

std::unique_ptr<QStandardItemModel> textModel(const QStringList &texts)
{
    auto model = std::make_unique<QStandardItemModel>(0, 3);
    for (const QString &text : texts)
        model->appendRow({new QStandardItem("1"), new QStandardItem(text), new QStandardItem("x")});
    return model;
}

} // namespace

// --- Shape ---

void DataTableViewTest::startsWithoutRows()
{
    const DataTableView view(nullptr);
    QVERIFY(view.model() != nullptr);
    QCOMPARE(view.model()->rowCount(), 0);
    QCOMPARE(view.model()->columnCount(), 0);
}

void DataTableViewTest::showsAModelInItsShape()
{
    const DrugView drugs({"b", "a"});
    const DataTableView &view = drugs.view;
    QVERIFY(view.isColumnHidden(0));
    QVERIFY(!view.isColumnHidden(1));
    QCOMPARE(view.selectionBehavior(), QAbstractItemView::SelectRows);
    QCOMPARE(view.editTriggers(),
             QAbstractItemView::EditTriggers(QAbstractItemView::NoEditTriggers));
    QCOMPARE(view.horizontalHeader()->sectionResizeMode(1), QHeaderView::Stretch);
    QVERIFY(view.isSortingEnabled());
    QCOMPARE(view.horizontalHeader()->sortIndicatorSection(), 1);
    QCOMPARE(view.horizontalHeader()->sortIndicatorOrder(), Qt::AscendingOrder);
    QCOMPARE(drugs.shown(), QStringList({"a", "b"}));
}

void DataTableViewTest::showsAllRowsOfAModelThatIsReadInBatches()
{
    DrugView drugs({});
    drugs.add(numbered(700));
    auto *lazy = new QSqlQueryModel;
    lazy->setQuery(std::move(*drugs.library.db()->newTableQuery("Drug")));
    QVERIFY(lazy->rowCount() < 700);
    delete drugs.model;
    drugs.view.setModel(lazy, 1, Qt::AscendingOrder);
    QCOMPARE(drugs.shown(), numbered(700));
}

void DataTableViewTest::sortsByTheColumnAndOrderItIsGiven()
{
    DrugView drugs({"b", "c", "a"});
    drugs.view.setModel(drugs.model, 1, Qt::DescendingOrder);
    QCOMPARE(drugs.shown(), QStringList({"c", "b", "a"}));
    drugs.view.setModel(drugs.model, 0, Qt::AscendingOrder);
    QCOMPARE(drugs.shown(), QStringList({"b", "c", "a"}));
}

void DataTableViewTest::showsNothingOfANullModel()
{
    DrugView drugs({"a"});
    drugs.view.setModel(nullptr, 1, Qt::AscendingOrder);
    QCOMPARE(drugs.view.model()->rowCount(), 0);
    delete drugs.model;
    DataTableView empty(nullptr);
    empty.setModel(nullptr, 1, Qt::AscendingOrder);
    QCOMPARE(empty.model()->rowCount(), 0);
}

void DataTableViewTest::deletesTheModelItHoldsAtItsEnd()
{
    auto view = std::make_unique<DataTableView>(nullptr);
    const QPointer<QStandardItemModel> model = textModel({"a"}).release();
    view->setModel(model, 1, Qt::AscendingOrder);
    view.reset();
    QVERIFY(model.isNull());
}

void DataTableViewTest::leavesAModelThatWasTakenAwayToItsOwner()
{
    const auto first = textModel({"a"});
    const auto second = textModel({"b"});
    {
        DataTableView view(nullptr);
        view.setModel(first.get(), 1, Qt::AscendingOrder);
        view.setModel(second.get(), 1, Qt::AscendingOrder);
        view.setModel(nullptr, 1, Qt::AscendingOrder);
    }
    QCOMPARE(first->rowCount() + second->rowCount(), 2);
}

void DataTableViewTest::showsAnotherModelInTheSameShape()
{
    DataTableView view(nullptr);
    const auto first = textModel({"b", "a"});
    view.setModel(first.get(), 1, Qt::AscendingOrder);
    view.sortByColumn(2, Qt::DescendingOrder);
    view.setModel(textModel({"d", "c"}).release(), 1, Qt::AscendingOrder);
    QVERIFY(view.isColumnHidden(0));
    QVERIFY(!view.isColumnHidden(1));
    QCOMPARE(view.horizontalHeader()->sortIndicatorSection(), 1);
    QCOMPARE(view.model()->index(0, 1).data().toString(), QStringLiteral("c"));
}

// --- Order ---

void DataTableViewTest::sortsNaturallyInAnyColumn_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QStringList>("sorted");
    QTest::newRow("numbers in names")
        << QStringList({"item10", "item9"}) << QStringList({"item9", "item10"});
    QTest::newRow("numbers before letters")
        << QStringList({"a", "10", "9"}) << QStringList({"9", "10", "a"});
    QTest::newRow("whatever the case")
        << QStringList({"B", "a", "C"}) << QStringList({"a", "B", "C"});
    QTest::newRow("cases alike in their order")
        << QStringList({"b", "ABC", "abc", "a"}) << QStringList({"a", "ABC", "abc", "b"});
}

void DataTableViewTest::sortsNaturallyInAnyColumn()
{
    QFETCH(const QStringList, names);
    const DrugView drugs(names);
    QTEST(drugs.shown(), "sorted");

    // Ids are numbers, and are sorted by the text that they show.
    DrugView ids(numbered(12));
    ids.view.sortByColumn(0, Qt::DescendingOrder);
    QCOMPARE(ids.shown().first(), QStringLiteral("drug 12"));
    QCOMPARE(ids.shown().last(), QStringLiteral("drug 1"));
}

void DataTableViewTest::sortsYearsAsNumbersAfterThoseThatAreMissing()
{
    TemporaryLibrary library;
    library.run("INSERT INTO Publication (Title, Year) VALUES('a', 10), ('b', 2), ('c', NULL), "
                "('d', 100)");
    DataTableView view(nullptr);
    view.setModel(library.db()->newTableModel("Publication").release(), 1, Qt::AscendingOrder);
    constexpr int year = 3;
    view.sortByColumn(year, Qt::AscendingOrder);
    QStringList years;
    for (int row = 0; row < view.model()->rowCount(); ++row)
        years += view.model()->index(row, year).data().toString();
    QCOMPARE(years, QStringList({"", "2", "10", "100"}));
}

void DataTableViewTest::keepsRowsThatCompareEqualInTheirOrder()
{
    const DrugView drugs({"8", "7", "007", "07", "0007"});
    QCOMPARE(drugs.shown(), QStringList({"7", "007", "07", "0007", "8"}));
}

void DataTableViewTest::sortsByTheColumnWhoseHeaderIsClicked()
{
    DrugView drugs({"b", "c", "a"});
    drugs.view.resize(400, 200);
    drugs.view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&drugs.view));
    QHeaderView *header = drugs.view.horizontalHeader();
    const QPoint middle(header->sectionViewportPosition(1) + header->sectionSize(1) / 2,
                        header->height() / 2);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, middle);
    QCOMPARE(drugs.shown(), QStringList({"c", "b", "a"}));
}

void DataTableViewTest::numbersTheRowsFromTheTop()
{
    DrugView drugs({"b", "c", "a"});
    const auto numbers = [&drugs] {
        QList<QVariant> shown;
        for (int row = 0; row < 3; ++row)
            shown += drugs.view.model()->headerData(row, Qt::Vertical);
        return shown;
    };
    const QList<QVariant> expected = {1, 2, 3};
    QCOMPARE(numbers(), expected);
    for (const auto order : {Qt::DescendingOrder, Qt::AscendingOrder}) {
        drugs.view.sortByColumn(1, order);
        QCOMPARE(numbers(), expected);
        drugs.view.sortByColumn(0, order);
        QCOMPARE(numbers(), expected);
    }
}

void DataTableViewTest::headsTheColumnsWithTheirNamesAlone()
{
    const DrugView drugs({"a"});
    const QAbstractItemModel *shown = drugs.view.model();
    QCOMPARE(shown->headerData(0, Qt::Horizontal).toString(), QStringLiteral("Id"));
    QCOMPARE(shown->headerData(1, Qt::Horizontal).toString(), QStringLiteral("Name"));
    for (const auto orientation : {Qt::Horizontal, Qt::Vertical})
        for (const int role : {Qt::ToolTipRole, Qt::EditRole, Qt::FontRole, Qt::DecorationRole})
            QVERIFY(!shown->headerData(1, orientation, role).isValid());
}

// --- Updates ---

void DataTableViewTest::comesUpToDateAfterItsQueryRanAgain()
{
    DrugView drugs(numbered(300));
    drugs.add({"another", "drug 1000"});
    drugs.update();
    QCOMPARE(drugs.shown(), QStringList("another") + numbered(300) + QStringList("drug 1000"));
    drugs.library.run("DELETE FROM Drug");
    drugs.update();
    QCOMPARE(drugs.shown(), QStringList());
    drugs.add({"new"});
    drugs.update();
    QCOMPARE(drugs.shown(), QStringList({"new"}));
}

void DataTableViewTest::keepsOrderAndShapeAfterItsQueryRanAgain()
{
    DrugView drugs(numbered(600));
    drugs.view.sortByColumn(1, Qt::DescendingOrder);
    drugs.update();
    QCOMPARE(drugs.shown().first(), QStringLiteral("drug 600"));
    QCOMPARE(drugs.shown().last(), QStringLiteral("drug 1"));
    QCOMPARE(drugs.shown().size(), 600);
    QVERIFY(drugs.view.isColumnHidden(0));
    QVERIFY(!drugs.view.isColumnHidden(1));
    QCOMPARE(drugs.view.model()->headerData(599, Qt::Vertical).toInt(), 600);
}

void DataTableViewTest::writesEachChangeOfDataToTheDebugOutput()
{
    DataTableView view(nullptr);
    QStandardItemModel *model = textModel({"a", "b"}).release();
    view.setModel(model, 1, Qt::AscendingOrder);
    QTest::ignoreMessage(QtDebugMsg, "dataChanged");
    model->item(0, 1)->setText("changed");
    QCOMPARE(view.model()->index(1, 1).data().toString(), QStringLiteral("changed"));
}

// --- Current row ---

void DataTableViewTest::selectsByAnIndexOfTheModel()
{
    DrugView drugs({"b", "c", "a"});
    drugs.view.setCurrentIndex(drugs.model->index(1, 1));
    QCOMPARE(current(drugs.view), QStringLiteral("c"));
    QCOMPARE(drugs.view.currentIndex().row(), 2);
    QCOMPARE(drugs.view.selectionModel()->selectedRows(0).size(), 1);
    drugs.view.setCurrentIndex({});
    QVERIFY(!drugs.view.currentIndex().isValid());
}

void DataTableViewTest::selectsByARowOfTheModel()
{
    DrugView drugs({"b", "c", "a"});
    drugs.view.selectRow(0);
    QCOMPARE(current(drugs.view), QStringLiteral("b"));
    QCOMPARE(drugs.view.currentIndex().column(), 1);
    drugs.view.selectRow(7);
    QVERIFY(!drugs.view.currentIndex().isValid());
}

void DataTableViewTest::selectsTheRowOnTop()
{
    DrugView drugs({"b", "c", "a"});
    drugs.view.selectFirstRow();
    QCOMPARE(current(drugs.view), QStringLiteral("a"));
    drugs.view.sortByColumn(1, Qt::DescendingOrder);
    drugs.view.selectFirstRow();
    QCOMPARE(current(drugs.view), QStringLiteral("c"));
}

void DataTableViewTest::selectsNothingWithoutAModel()
{
    DataTableView view(nullptr);
    view.selectRow(0);
    view.selectFirstRow();
    view.setCurrentIndex({});
    QVERIFY(!view.currentIndex().isValid());
    QVERIFY(!view.sourceIndex(view.currentIndex()).isValid());
}

void DataTableViewTest::findsTheModelsIndexOfARow()
{
    DrugView drugs({"b", "c", "a"});
    drugs.view.selectFirstRow();
    const QModelIndex index = drugs.view.sourceIndex(drugs.view.currentIndex());
    QCOMPARE(index.model(), static_cast<const QAbstractItemModel *>(drugs.model));
    QCOMPARE(index.row(), 2);
}

void DataTableViewTest::selectsWholeRowsByAClick()
{
    DrugView drugs({"b", "c", "a"});
    drugs.view.resize(400, 200);
    drugs.view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&drugs.view));
    const QSignalSpy changes(drugs.view.selectionModel(), &QItemSelectionModel::selectionChanged);
    const QRect cell = drugs.view.visualRect(drugs.view.model()->index(1, 1));
    QTest::mouseClick(drugs.view.viewport(), Qt::LeftButton, {}, cell.center());
    QCOMPARE(changes.size(), 1);
    QCOMPARE(current(drugs.view), QStringLiteral("b"));
    const QModelIndexList rows = drugs.view.selectionModel()->selectedRows(0);
    QCOMPARE(rows.size(), 1);
    QCOMPARE(rows.first().data().toInt(), 1);
    QTest::mouseDClick(drugs.view.viewport(), Qt::LeftButton, {}, cell.center());
    QVERIFY(!drugs.view.isPersistentEditorOpen(rows.first()));
    QVERIFY(drugs.view.findChildren<QLineEdit *>().isEmpty());
}

void DataTableViewTest::isASoundModel()
{
    DrugView drugs(numbered(300));
    QAbstractItemModelTester tester(drugs.view.model(),
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);
    tester.setUseFetchMore(false); // or it would fetch rows within a reset
    drugs.view.sortByColumn(1, Qt::DescendingOrder);
    drugs.add({"another"});
    drugs.update();
    drugs.view.setModel(nullptr, 1, Qt::AscendingOrder);
    drugs.view.setModel(drugs.model, 1, Qt::AscendingOrder);
    QCOMPARE(drugs.view.model()->rowCount(), 301);
}

} // namespace Planaria

QTEST_MAIN(Planaria::DataTableViewTest)
#include "DataTableViewTest.moc"
