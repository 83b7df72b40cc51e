#include "browse/ElementTab.h"

#include "support/TemporaryLibrary.h"

#include <QSignalSpy>
#include <QtTest>

namespace Planaria {

/// A tab reads its table when it is told to, and tells how many rows it found.
class ElementTabTest final : public QObject
{
    Q_OBJECT

private slots:
    void readsNothingUntilToldTo();
    void tellsItsWordsWithTheNumberOfRows();
    void countsMoreRowsThanTheDriverReadsAtOnce();
    void readsTheTableAnewEachTime();
    void staysSilentWithoutATable();
    void countsNoRowsOfATableThatIsMissing();
    void letsGoOfTheFile();
    void readsAgainAfterItWasCleared();
};

namespace {

/// A tab of the drugs of a library, and what it told.
class DrugsTab final
{
public:
    explicit DrugsTab(const QString &table = QStringLiteral("Drug"))
        : tab(library.db(), table, QStringLiteral("drug"), QStringLiteral("drugs"), nullptr),
          told(&tab, &ElementTab::nEleChanged), corrupted(&tab, &ElementTab::databaseCorrupted)
    {
    }

    void addDrug(int n)
    {
        library.run(QStringLiteral("INSERT INTO Drug (Name) VALUES('drug %1')").arg(n));
    }

    TemporaryLibrary library;
    ElementTab tab;
    QSignalSpy told;
    QSignalSpy corrupted;
};

QList<QVariant> drugs(int n)
{
    return {n, QStringLiteral("drug"), QStringLiteral("drugs")};
}

} // namespace

void ElementTabTest::readsNothingUntilToldTo()
{
    const DrugsTab drugsTab;
    QCOMPARE(drugsTab.told.size(), 0);
}

void ElementTabTest::tellsItsWordsWithTheNumberOfRows()
{
    DrugsTab drugsTab;
    drugsTab.addDrug(1);
    drugsTab.addDrug(2);
    drugsTab.tab.updateModel(0);
    QCOMPARE(drugsTab.told.size(), 1);
    QCOMPARE(drugsTab.told.first(), drugs(2));
    QCOMPARE(drugsTab.corrupted.size(), 0);
}

void ElementTabTest::countsMoreRowsThanTheDriverReadsAtOnce()
{
    DrugsTab drugsTab;
    drugsTab.library.run("BEGIN");
    for (int i = 1; i <= 700; ++i)
        drugsTab.addDrug(i);
    drugsTab.library.run("COMMIT");
    drugsTab.tab.updateModel(0);
    QCOMPARE(drugsTab.told.last(), drugs(700));
}

void ElementTabTest::readsTheTableAnewEachTime()
{
    DrugsTab drugsTab;
    drugsTab.tab.updateModel(0);
    drugsTab.addDrug(1);
    drugsTab.tab.updateModel(0);
    drugsTab.library.run("DELETE FROM Drug");
    drugsTab.tab.updateModel(0);
    QCOMPARE(drugsTab.told, QList<QList<QVariant>>({drugs(0), drugs(1), drugs(0)}));
}

void ElementTabTest::staysSilentWithoutATable()
{
    DrugsTab drugsTab{QString()};
    drugsTab.tab.updateModel(0);
    QCOMPARE(drugsTab.told.size(), 0);
    QCOMPARE(drugsTab.corrupted.size(), 0);
}

void ElementTabTest::countsNoRowsOfATableThatIsMissing()
{
    DrugsTab drugsTab;
    drugsTab.library.run("DROP TABLE Drug");
    drugsTab.tab.updateModel(0);
    QCOMPARE(drugsTab.told.last(), drugs(0));
    QCOMPARE(drugsTab.corrupted.size(), 0);
}

void ElementTabTest::letsGoOfTheFile()
{
    DrugsTab drugsTab;
    QVERIFY(!drugsTab.tab.holdsRows());
    drugsTab.tab.updateModel(0);
    QVERIFY(drugsTab.tab.holdsRows());
    drugsTab.tab.clear();
    QVERIFY(!drugsTab.tab.holdsRows());
}

void ElementTabTest::readsAgainAfterItWasCleared()
{
    DrugsTab drugsTab;
    drugsTab.tab.updateModel(0);
    drugsTab.tab.clear();
    drugsTab.tab.clear();
    drugsTab.addDrug(1);
    drugsTab.tab.updateModel(0);
    QCOMPARE(drugsTab.told.last(), drugs(1));
}

} // namespace Planaria

QTEST_MAIN(Planaria::ElementTabTest)
#include "ElementTabTest.moc"
