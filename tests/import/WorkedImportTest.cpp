#include "LibraryJson.h"
#include "LibraryPair.h"
#include "support/JsonDifference.h"
#include "support/TestData.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace Planaria;

namespace {

QJsonObject readJson(const QString &name)
{
    return QJsonDocument::fromJson(readTestData("import/" + name)).object();
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

QStringList texts(const QJsonValue &array)
{
    return sorted(array.toVariant().toStringList());
}

/// Compared.
std::unique_ptr<LibraryPair> workedPair()
{
    auto pair = std::make_unique<LibraryPair>("import/src.edb", "import/dst.edb");
    pair->compare();
    return pair;
}

void tickListed(LibraryPair *pair, const QJsonObject &ticks)
{
    pair->tickAll(false);
    for (const auto &[kind, key] : allKinds) {
        const QJsonObject lists = ticks[QLatin1String(key)].toObject();
        for (const QString &name : texts(lists["modified"]))
            pair->tick(kind, ImportList::Modified, name);
        for (const QString &name : texts(lists["new"]))
            pair->tick(kind, ImportList::Added, name);
        for (const QString &name : texts(lists["deleted"]))
            pair->tick(kind, ImportList::Deleted, name);
    }
}

} // namespace

/// One library merged into another, whose outcome was worked out by another program.
class WorkedImportTest final : public QObject
{
    Q_OBJECT

private slots:
    void listsWhereTheLibrariesDiffer_data();
    void listsWhereTheLibrariesDiffer();
    void ticksWhatTheSourceHas();
    void leavesTheDestinationInTheWorkedState_data();
    void leavesTheDestinationInTheWorkedState();
};

void WorkedImportTest::listsWhereTheLibrariesDiffer_data()
{
    QTest::addColumn<int>("kind");
    for (const KindKey &kind : allKinds)
        QTest::newRow(kind.key) << static_cast<int>(kind.kind);
}

void WorkedImportTest::listsWhereTheLibrariesDiffer()
{
    QFETCH(const int, kind);
    const std::unique_ptr<LibraryPair> pair = workedPair();
    const QJsonObject expected = readJson("diff.json")[QTest::currentDataTag()].toObject();
    const auto names = [&](ImportList list) {
        return sorted(pair->names(static_cast<ImportKind>(kind), list));
    };
    QCOMPARE(names(ImportList::Modified), texts(expected["modified"]));
    QCOMPARE(names(ImportList::Added), texts(expected["new"]));
    QCOMPARE(names(ImportList::Deleted), texts(expected["deleted"]));
    const int total = pair->importer->lists(static_cast<ImportKind>(kind)).total();
    QVERIFY(expected["tab"].toString().endsWith(QStringLiteral("(%1)").arg(total)));
}

void WorkedImportTest::ticksWhatTheSourceHas()
{
    const std::unique_ptr<LibraryPair> pair = workedPair();
    int rows = 0;
    for (const KindKey &kind : allKinds) {
        for (const ImportList list : allImportLists) {
            for (const ImportRow &row : pair->rows(kind.kind, list)) {
                QCOMPARE(row.checked, list != ImportList::Deleted);
                ++rows;
            }
        }
    }
    QCOMPARE(rows, 47);
    QCOMPARE(pair->importer->total(), rows);
}

void WorkedImportTest::leavesTheDestinationInTheWorkedState_data()
{
    QTest::addColumn<QString>("expected");
    QTest::newRow("the ticks at the start") << "expected_default.json";
    QTest::newRow("all ticked") << "expected_all.json";
    QTest::newRow("none ticked") << "expected_none.json";
    QTest::newRow("some ticked") << "expected_ticks.json";
}

void WorkedImportTest::leavesTheDestinationInTheWorkedState()
{
    QFETCH(const QString, expected);
    const std::unique_ptr<LibraryPair> pair = workedPair();
    if (expected.contains("all") || expected.contains("none"))
        pair->tickAll(expected.contains("all"));
    if (expected.contains("ticks"))
        tickListed(pair.get(), readJson("ticks.json"));
    QCOMPARE(pair->import(), LibraryImporter::Outcome::Done);

    QJsonObject worked = readJson(expected);
    QCOMPARE(worked.take("orphan_rows"), QJsonValue(QJsonObject()));
    QCOMPARE(jsonDifference(libraryJson(pair->destination.db()), worked, "library"), QString());
    QCOMPARE(pair->faults(), QStringList());

    QFile source(pair->source.fileName());
    QVERIFY(source.open(QIODevice::ReadOnly));
    QCOMPARE(source.readAll(), readTestData("import/src.edb"));
}

QTEST_GUILESS_MAIN(WorkedImportTest)
#include "WorkedImportTest.moc"
