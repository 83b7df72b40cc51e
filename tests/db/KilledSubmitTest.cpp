#include "GenerationWorm.h"
#include "PlainSqlite.h"
#include "db/BulkRead.h"
#include "model/Morphology.h"
#include "support/TemporaryLibrary.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QTest>
#include <QThread>

using namespace Planaria;

namespace {

/// Runs the program that writes worms until it has told of some generations, and then a while
/// longer, and kills it.
class KilledWriter final
{
public:
    KilledWriter(const QString &fileName, int generations, int delay)
    {
        writer.start(KILLED_SUBMIT_WRITER, {fileName});
        while (reports <= generations && readReport()) {
        }
        QThread::usleep(delay);
        writer.kill();
        writer.waitForFinished();
        while (readReport()) {
        }
    }

    /// The last generation that was written for sure.
    [[nodiscard]] int generation() const { return lastReport; }

    /// Why it ended, where it did so by itself.
    QString trouble()
    {
        if (reports > 0 && writer.exitStatus() == QProcess::CrashExit)
            return {};
        return "the writer ended by itself: " + writer.errorString() + ' ' +
               writer.readAllStandardError();
    }

private:
    bool readReport()
    {
        while (!writer.canReadLine()) {
            if (!writer.waitForReadyRead())
                return false;
        }
        lastReport = writer.readLine().toInt();
        ++reports;
        return true;
    }

    QProcess writer;
    int reports = 0;
    int lastReport = 0;
};

/// What a killed writer left beside the file in the middle of a transaction.
bool hasJournal(const QString &fileName)
{
    return QFileInfo(fileName + "-journal").size() > 0;
}

/// @param generation set to that of row 1
QStringList wormFaults(const QString &fileName, int *generation)
{
    DB db;
    if (db.connect(fileName, false) != DB::Opened)
        return {"cannot be opened"};
    QStringList faults;
    const BulkRead job(&db);
    const std::unique_ptr<QSqlQuery> query = db.newTableQuery("Morphology");
    while (query->next()) {
        const Morphology worm(query->value(0).toInt(), &db, true);
        faults += generationFault(worm);
        if (worm.id() == 1)
            *generation = generationOf(worm);
    }
    faults.removeAll(QString());
    return faults;
}

/// Rows of organs that belong to no organ: their references run the other way.
QStringList strayOrgans(PlainSqlite *file)
{
    QStringList stray;
    for (const QString table : {"SpotOrgan", "LineOrgan"}) {
        stray += file->texts(QStringLiteral("SELECT '%1 ' || Id FROM %1 WHERE Id NOT IN "
                                            "(SELECT %1 FROM Organ WHERE %1 NOT NULL)")
                                 .arg(table));
    }
    return stray;
}

QStringList faultsOf(const QString &fileName, int *generation)
{
    QStringList faults = wormFaults(fileName, generation);
    PlainSqlite file(fileName);
    faults += file.texts("PRAGMA integrity_check");
    faults.removeOne("ok");
    return faults + file.texts("PRAGMA foreign_key_check") + strayOrgans(&file);
}

} // namespace

class KilledSubmitTest final : public QObject
{
    Q_OBJECT

private slots:
    void tellsAPartOfAWormFromAWholeOne();
    void leavesAllOrNothingOfEachSubmit();
};

void KilledSubmitTest::tellsAPartOfAWormFromAWholeOne()
{
    TemporaryLibrary library;
    newGenerationWorm(7)->submit(library.db());
    int generation = 0;
    QCOMPARE(faultsOf(library.fileName(), &generation), QStringList());
    QCOMPARE(generation, 7);

    for (const QString sql :
         {"DELETE FROM RegionParam WHERE Id = 100", "UPDATE RegionParam SET Value = 6 WHERE Id = 9",
          "DELETE FROM Organ WHERE Id = 100", "DELETE FROM RegionsLink WHERE Id = 50",
          "UPDATE RegionsLink SET Dist = 8 WHERE Id = 50", "DELETE FROM MorphologyImage",
          "UPDATE MorphologyImage SET Data = '6'", "UPDATE Morphology SET Name = 'worm 8'",
          "INSERT INTO Region VALUES(9999, 1, 2)", "UPDATE SpotOrgan SET Rot = 8 WHERE Id = 30",
          "UPDATE LineOrgan SET VecEnd2Y = 8 WHERE Id = 30",
          "INSERT INTO SpotOrgan VALUES(999, 1, 7)", "INSERT INTO Region VALUES(9999, 2, 2)"}) {
        const QString damaged = library.filePath("damaged.edb");
        QFile::remove(damaged);
        QVERIFY(QFile::copy(library.fileName(), damaged));
        QCOMPARE(PlainSqlite(damaged).run(sql), 0);
        QVERIFY2(!faultsOf(damaged, &generation).isEmpty(), qPrintable(sql));
    }
}

void KilledSubmitTest::leavesAllOrNothingOfEachSubmit()
{
    constexpr quint32 seed = 20;
    constexpr int kills = 50;
    constexpr int longestDelay = 80000; // microseconds
    const TemporaryLibrary library;
    QRandomGenerator random(seed);
    int interrupted = 0;
    int generation = 0;
    for (int kill = 1; kill <= kills; ++kill) {
        const int generations = random.bounded(3);
        const int delay = random.bounded(longestDelay);
        const QByteArray step = QStringLiteral("seed %1, kill %2, %3 us after generation %4: ")
                                    .arg(seed)
                                    .arg(kill)
                                    .arg(delay)
                                    .arg(generations)
                                    .toUtf8();
        KilledWriter writer(library.fileName(), generations, delay);
        QVERIFY2(writer.trouble().isEmpty(), step + writer.trouble().toUtf8());
        interrupted += hasJournal(library.fileName()) ? 1 : 0;

        const QStringList faults = faultsOf(library.fileName(), &generation);
        QVERIFY2(faults.isEmpty(), step + faults.join("; ").toUtf8());
        // What was told of is there, and at most the one that it was about to tell of.
        QVERIFY2(generation == writer.generation() || generation == writer.generation() + 1, step);
    }
    qInfo("%d of %d kills within a submit, %d generations", interrupted, kills, generation);
    QVERIFY(interrupted > 0);
    QVERIFY(generation > 0);
}

QTEST_GUILESS_MAIN(KilledSubmitTest)
#include "KilledSubmitTest.moc"
