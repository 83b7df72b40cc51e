#include "LibraryJson.h"
#include "LibraryPair.h"
#include "db/PlainSqlite.h"
#include "support/TestData.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>
#include <QThread>

using namespace Planaria;

using Outcome = LibraryImporter::Outcome;

namespace {

/// The destination after a merge of all that differs, or of what is ticked at the start.
QJsonObject merged(bool all)
{
    LibraryPair pair("import/src.edb", "import/dst.edb");
    pair.compare();
    if (all)
        pair.tickAll(true);
    if (pair.import() != Outcome::Done)
        qFatal("cannot merge");
    return libraryJson(pair.destination.db());
}

/// Two libraries of which all that differs is ticked.
class TickedPair final
{
public:
    TickedPair() : pair("import/src.edb", "import/dst.edb")
    {
        pair.compare();
        pair.tickAll(true);
        before = dumpOf(pair.destination.db());
    }

    LibraryImporter *importer() { return pair.importer.get(); }
    TemporaryLibrary *destination() { return &pair.destination; }

    /// What an import that did not come to its end has left behind; empty for nothing at all.
    QStringList traces()
    {
        QStringList faults = pair.faults();
        if (dumpOf(pair.destination.db()) != before)
            faults += "the content differs";
        if (pair.destination.db()->inTransaction())
            faults += "a transaction is open";
        return faults;
    }

    /// Whether all arrives, by one more attempt.
    bool arrives()
    {
        static const QJsonObject whole = merged(true);
        return pair.import() == Outcome::Done && libraryJson(pair.destination.db()) == whole &&
               pair.faults().isEmpty();
    }

    LibraryPair pair;

private:
    QStringList before;
};

/// Overwrites the start of the first page of @p table, as a failing disk may.
void damage(TemporaryLibrary *library, const QString &table)
{
    const int page =
        library
            ->value(
                QStringLiteral("SELECT rootpage FROM sqlite_master WHERE name = '%1'").arg(table))
            .toInt();
    const int size = library->value("PRAGMA page_size").toInt();
    library->db()->disconnect(); // it holds pages in memory
    const QByteArray rubbish(64, '\xFF');
    QFile file(library->fileName());
    if (page < 1 || !file.open(QIODevice::ReadWrite) || !file.seek(qint64{page - 1} * size) ||
        file.write(rubbish) != rubbish.size())
        qFatal("cannot damage %s", qUtf8Printable(table));
    file.close();
    if (library->db()->connect(library->fileName(), false) != DB::Opened)
        qFatal("cannot open the damaged file");
}

void addPartsOfElements()
{
    QTest::addColumn<QString>("table");
    for (const char *table : {"RegionParam", "MorphologyImage", "ResultSet"})
        QTest::newRow(table) << table;
}

/// Runs the program that imports, and kills it: at @p row, or @p delay microseconds after it has
/// told of the first, where no row is given.
/// @return why it ended, where it did so by itself
QString runAndKill(const TickedPair &libraries, int row, int delay)
{
    QProcess program;
    program.start(KILLED_IMPORTER, {libraries.pair.source.fileName(),
                                    libraries.pair.destination.fileName(), QString::number(row)});
    int rows = 0;
    while (rows < std::max(row, 1)) {
        while (!program.canReadLine()) {
            if (!program.waitForReadyRead())
                return "ended by itself: " + program.errorString();
        }
        rows = program.readLine().toInt();
    }
    QThread::usleep(delay);
    program.kill();
    program.waitForFinished();
    return {};
}

} // namespace

/// Imports that do not come to their end leave the destination as it was.
class InterruptedImportsTest final : public QObject
{
    Q_OBJECT

private slots:
    void leavesNothingWhereverItIsCanceled();
    void takesTheSecondAttemptForTheFirst();
    void leavesNothingWhereAWriteFails_data();
    void leavesNothingWhereAWriteFails();
    void leavesNothingWhereTheDiskIsFull_data();
    void leavesNothingWhereTheDiskIsFull();
    void writesNothingToALockedDestination_data();
    void writesNothingToALockedDestination();
    void readsNothingFromALockedSource();
    void comparesNothingWithADamagedSource_data() { addPartsOfElements(); }
    void comparesNothingWithADamagedSource();
    void comparesNothingWithADamagedDestination_data() { addPartsOfElements(); }
    void comparesNothingWithADamagedDestination();
    void leavesNothingWhereTheSourceIsDamagedLater_data() { addPartsOfElements(); }
    void leavesNothingWhereTheSourceIsDamagedLater();
    void leavesATransactionOfOthersAlone();
    void asksForAnotherComparisonWhereElementsHaveChanged_data();
    void asksForAnotherComparisonWhereElementsHaveChanged();
    void leavesNothingWhereItIsKilled();
    void leavesAllOrNothingWhereItIsKilledAtAnyTime();
};

void InterruptedImportsTest::leavesNothingWhereverItIsCanceled()
{
    TickedPair libraries;
    RecordedProgress whole;
    QCOMPARE(TickedPair().importer()->importElements(whole), Outcome::Done);
    QVERIFY(whole.questions >= 47 + 14);
    for (int question = 1; question <= whole.questions; ++question) {
        const QByteArray place = QByteArray::number(question);
        RecordedProgress progress(question);
        QVERIFY2(libraries.importer()->importElements(progress) == Outcome::Canceled, place);
        // After it is asked for, nothing more is done but to look once more at the end of a step.
        QVERIFY2(progress.questions <= question + 2, place);
        QCOMPARE(libraries.traces(), QStringList());
    }
    QVERIFY(libraries.arrives());
}

void InterruptedImportsTest::takesTheSecondAttemptForTheFirst()
{
    TickedPair libraries;
    RecordedProgress whole;
    QCOMPARE(TickedPair().importer()->importElements(whole), Outcome::Done);
    RecordedProgress progress(whole.questions); // all is written, and taken back
    QCOMPARE(libraries.importer()->importElements(progress), Outcome::Canceled);
    // What others refer to has to come along once more.
    for (const ImportKind kind : {ImportKind::Publications, ImportKind::Species, ImportKind::Drugs,
                                  ImportKind::RNAi, ImportKind::Morphologies}) {
        for (ImportRow &row : libraries.pair.rows(kind, ImportList::Added))
            row.checked = false;
    }
    QCOMPARE(libraries.pair.import(), Outcome::Done);
    QCOMPARE(libraries.pair.faults(), QStringList());
    const QJsonObject arrived = libraryJson(libraries.destination()->db());
    QVERIFY(elementsByName(arrived, "species").contains("Dugesia nova 1"));
    QVERIFY(elementsByName(arrived, "experiments").contains("New experiment 1"));
}

void InterruptedImportsTest::leavesNothingWhereAWriteFails_data()
{
    QTest::addColumn<QString>("trigger");
    const auto row = [](const QString &event, const QString &table, const QString &reaction) {
        QTest::addRow("%s %s, %s", qPrintable(event), qPrintable(table), qPrintable(reaction))
            << QStringLiteral("CREATE TEMP TRIGGER Fault BEFORE %1 ON main.%2 BEGIN "
                              "SELECT RAISE(%3, 'a fault'); END")
                   .arg(event, table, reaction);
    };
    // The last one ends the transaction by itself, as a full disk may.
    for (const QString reaction : {"ABORT", "ROLLBACK"}) {
        for (const QString table : {"Publication",
                                    "Species",
                                    "Drug",
                                    "RNAi",
                                    "Morphology",
                                    "Region",
                                    "RegionParam",
                                    "Organ",
                                    "SpotOrgan",
                                    "LineOrgan",
                                    "RegionsLink",
                                    "MorphologyImage",
                                    "Manipulation",
                                    "ManipulationAction",
                                    "MorphologyAction",
                                    "RemoveAction",
                                    "CropAction",
                                    "JoinAction",
                                    "CropActionAreaPoint",
                                    "Experiment",
                                    "ExperimentDrug",
                                    "ExperimentRNAi",
                                    "ResultSet",
                                    "ResultantMorphology"})
            row("INSERT", table, reaction);
        for (const QString table : {"Region", "RegionParam", "MorphologyImage", "ResultSet",
                                    "ManipulationAction", "Experiment", "Species"})
            row("DELETE", table, reaction);
        row("UPDATE", "Experiment", reaction);
        row("UPDATE", "Morphology", reaction);
    }
}

void InterruptedImportsTest::leavesNothingWhereAWriteFails()
{
    QFETCH(const QString, trigger);
    TickedPair libraries;
    libraries.destination()->run(trigger);
    QCOMPARE(libraries.pair.import(), Outcome::Failed);
    QVERIFY(!libraries.importer()->failedElement().isEmpty());
    QCOMPARE(libraries.traces(), QStringList());
    libraries.destination()->run("DROP TRIGGER Fault");
    QVERIFY(libraries.arrives());
}

void InterruptedImportsTest::leavesNothingWhereTheDiskIsFull_data()
{
    QTest::addColumn<int>("cachePages");
    QTest::newRow("found out in memory") << 2000;
    QTest::newRow("found out while writing") << 1;
}

void InterruptedImportsTest::leavesNothingWhereTheDiskIsFull()
{
    QFETCH(const int, cachePages);
    TickedPair libraries;
    TemporaryLibrary *library = libraries.destination();
    library->run(QStringLiteral("PRAGMA cache_size = %1").arg(cachePages));
    int pages = library->value("PRAGMA page_count").toInt();
    int failures = 0;
    for (;; ++pages) {
        QVERIFY(pages < 1000);
        library->run(QStringLiteral("PRAGMA max_page_count = %1").arg(pages));
        const Outcome outcome = libraries.pair.import();
        if (outcome == Outcome::Done)
            break;
        QCOMPARE(outcome, Outcome::Failed);
        QCOMPARE(libraries.traces(), QStringList());
        ++failures;
    }
    QVERIFY(failures > 2);
    QCOMPARE(libraries.pair.faults(), QStringList());
}

void InterruptedImportsTest::writesNothingToALockedDestination_data()
{
    QTest::addColumn<QString>("statement");
    QTest::newRow("by a reader") << "BEGIN; SELECT * FROM Drug";
    QTest::newRow("by one about to write") << "BEGIN IMMEDIATE";
    QTest::newRow("by a writer") << "BEGIN IMMEDIATE; UPDATE Drug SET Name = 'x' WHERE Id = 0";
}

void InterruptedImportsTest::writesNothingToALockedDestination()
{
    QFETCH(const QString, statement);
    TickedPair libraries;
    PlainSqlite other(libraries.destination()->fileName());
    QCOMPARE(other.run(statement), 0);
    RecordedProgress progress;
    QCOMPARE(libraries.importer()->importElements(progress), Outcome::Locked);
    QCOMPARE(progress.rows, 0);
    QCOMPARE(other.run("ROLLBACK"), 0);
    QCOMPARE(libraries.traces(), QStringList());
    QVERIFY(libraries.arrives());
}

void InterruptedImportsTest::readsNothingFromALockedSource()
{
    TickedPair libraries;
    libraries.pair.source.run("PRAGMA busy_timeout = 10");
    PlainSqlite other(libraries.pair.source.fileName());
    QCOMPARE(other.run("BEGIN EXCLUSIVE"), 0);
    QCOMPARE(libraries.pair.import(), Outcome::Failed);
    QCOMPARE(libraries.traces(), QStringList());

    LibraryImporter importer(libraries.pair.source.db(), libraries.destination()->db());
    RecordedProgress progress;
    QVERIFY(!importer.populateElements(progress, [](ImportKind) {}));
    QCOMPARE(importer.total(), 0);
    QCOMPARE(progress.labels, QStringList()); // each further look would wait for the lock again
    QCOMPARE(other.run("ROLLBACK"), 0);
    QVERIFY(libraries.arrives());
}

namespace {

/// Compares two libraries, one of them damaged, and imports all the same.
/// @return what was found or written, and should not have been
QStringList tracesOfMerge(LibraryPair *pair)
{
    QStringList traces;
    pair->importer = std::make_unique<LibraryImporter>(pair->source.db(), pair->destination.db());
    RecordedProgress progress;
    if (pair->importer->populateElements(progress, [](ImportKind) {}))
        traces += "compared";
    traces += pair->listed();
    if (pair->importer->total() != 0)
        traces += "rows";
    if (pair->import() != Outcome::Failed)
        traces += "imported";
    return traces;
}

} // namespace

void InterruptedImportsTest::comparesNothingWithADamagedSource()
{
    QFETCH(const QString, table);
    LibraryPair pair("import/src.edb", "import/src.edb");
    damage(&pair.source, table);
    const QStringList before = dumpOf(pair.destination.db());
    QCOMPARE(tracesOfMerge(&pair), QStringList());
    QCOMPARE(dumpOf(pair.destination.db()), before);
    QCOMPARE(pair.faults(), QStringList());
}

void InterruptedImportsTest::comparesNothingWithADamagedDestination()
{
    QFETCH(const QString, table);
    LibraryPair pair("import/src.edb", "import/src.edb");
    damage(&pair.destination, table);
    const QStringList before = dumpOf(pair.destination.db());
    QCOMPARE(tracesOfMerge(&pair), QStringList());
    QCOMPARE(dumpOf(pair.destination.db()), before);
}

void InterruptedImportsTest::leavesNothingWhereTheSourceIsDamagedLater()
{
    QFETCH(const QString, table);
    TickedPair libraries;
    damage(&libraries.pair.source, table);
    QCOMPARE(libraries.pair.import(), Outcome::Failed);
    QCOMPARE(libraries.importer()->failedElement(), QString());
    QCOMPARE(libraries.traces(), QStringList());
}

void InterruptedImportsTest::leavesATransactionOfOthersAlone()
{
    TickedPair libraries;
    TemporaryLibrary *library = libraries.destination();
    QVERIFY(library->db()->beginTransaction());
    const QVariant structure = library->value("PRAGMA schema_version");
    QCOMPARE(libraries.pair.import(), Outcome::Failed);
    QCOMPARE(library->value("PRAGMA schema_version"), structure); // no index came and went
    QVERIFY(library->db()->endTransaction());
    QCOMPARE(libraries.traces(), QStringList());
    QVERIFY(libraries.arrives());
}

void InterruptedImportsTest::asksForAnotherComparisonWhereElementsHaveChanged_data()
{
    QTest::addColumn<bool>("inSource");
    QTest::addColumn<QString>("statement");
    QTest::newRow("one has come") << false << "INSERT INTO Drug VALUES(NULL, 'new drug B')";
    QTest::newRow("one has gone") << false << "DELETE FROM RNAi WHERE Name = 'wnt1'";
    QTest::newRow("one has another name")
        << false << "UPDATE Morphology SET Name = 'renamed' WHERE Name = 'Worm body'";
    QTest::newRow("one has come to the source") << true << "INSERT INTO Drug VALUES(NULL, 'late')";
    QTest::newRow("ids of the source have changed")
        << true << "UPDATE Experiment SET Id = 99 WHERE Name = 'New experiment 1'";
}

void InterruptedImportsTest::asksForAnotherComparisonWhereElementsHaveChanged()
{
    QFETCH(const bool, inSource);
    QFETCH(const QString, statement);
    TickedPair libraries;
    LibraryPair &pair = libraries.pair;
    PlainSqlite other(inSource ? pair.source.fileName() : pair.destination.fileName());
    QCOMPARE(other.run(statement), 0);
    const QStringList before = dumpOf(pair.destination.db());
    QCOMPARE(pair.import(), Outcome::Failed);
    QCOMPARE(libraries.importer()->failedElement(), QString());
    QCOMPARE(dumpOf(pair.destination.db()), before);
    QCOMPARE(pair.merge(), Outcome::Done);
    QCOMPARE(pair.faults(), QStringList());
}

void InterruptedImportsTest::leavesNothingWhereItIsKilled()
{
    TickedPair libraries;
    const QString journal = libraries.destination()->fileName() + "-journal";
    int journals = 0;
    for (int row = 1; row <= 47; row += 3) {
        QCOMPARE(runAndKill(libraries, row, 0), QString());
        journals += QFileInfo(journal).size() > 0 ? 1 : 0;
        QCOMPARE(libraries.traces(), QStringList());
    }
    QVERIFY(journals > 0); // some were killed while a part of it was in the file
    QVERIFY(libraries.arrives());
}

void InterruptedImportsTest::leavesAllOrNothingWhereItIsKilledAtAnyTime()
{
    constexpr quint32 seed = 30;
    constexpr int kills = 20;
    constexpr int longestDelay = 400000; // microseconds
    const QJsonObject whole = merged(false);
    QRandomGenerator random(seed);
    int nothing = 0;
    for (int kill = 1; kill <= kills; ++kill) {
        TickedPair libraries;
        const int delay = random.bounded(longestDelay);
        const QByteArray place =
            QStringLiteral("seed %1, kill %2 after %3 us").arg(seed).arg(kill).arg(delay).toUtf8();
        QVERIFY2(runAndKill(libraries, -1, delay).isEmpty(), place);
        QCOMPARE(libraries.pair.faults(), QStringList());
        if (libraries.traces().isEmpty())
            ++nothing;
        else
            QVERIFY2(libraryJson(libraries.destination()->db()) == whole, place);
    }
    qInfo("%d of %d killed before the end", nothing, kills);
}

QTEST_GUILESS_MAIN(InterruptedImportsTest)
#include "InterruptedImportsTest.moc"
