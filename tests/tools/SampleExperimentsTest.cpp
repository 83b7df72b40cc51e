#include "SampleExperiments.h"

#include "SampleManipulations.h"
#include "SampleWorms.h"
#include "db/DB.h"
#include "model/Drug.h"
#include "model/Experiment.h"
#include "model/ExperimentDrug.h"
#include "model/ExperimentRNAi.h"
#include "model/Manipulation.h"
#include "model/Morphology.h"
#include "model/Publication.h"
#include "model/RNAi.h"
#include "model/ResultSet.h"
#include "model/ResultantMorphology.h"
#include "model/Species.h"
#include "support/TemporaryLibrary.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <vector>

using namespace Planaria;

namespace {

/// Runs the writer of the sample library.
void writeSamples(const QString &fileName, bool sameHashes)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("QT_HASH_SEED");
    if (sameHashes)
        environment.insert("QT_HASH_SEED", "0");
    QProcess writer;
    writer.setProcessEnvironment(environment);
    writer.start(SAMPLE_LIBRARY_WRITER, {fileName});
    QVERIFY(writer.waitForFinished(60000));
    QCOMPARE(writer.exitStatus(), QProcess::NormalExit);
    QCOMPARE(writer.exitCode(), 0);
}

QByteArray bytesOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// What is wrong with the results of @p set; empty if nothing is.
QString faultOf(const ResultSet &set)
{
    double sum = 0.0;
    for (const ResultantMorphology *result : set.resultantMorphologies()) {
        sum += result->frequency();
        if (result->frequency() <= 0.0 || result->morphology()->regions().isEmpty())
            return "a result without share or body";
    }
    if (sum != 1.0)
        return QStringLiteral("frequencies that make %1").arg(sum);
    return set.num() > 0 ? QString() : "no worms";
}

/// The same for a whole experiment.
QString faultOf(const Experiment &experiment)
{
    if (!experiment.manipulation() || !experiment.publication() || !experiment.species())
        return "something missing";
    double period = 0.0;
    for (const ResultSet *set : experiment.resultSets()) {
        if (set->regenPeriod() <= period)
            return "periods that do not grow";
        period = set->regenPeriod();
        if (const QString fault = faultOf(*set); !fault.isEmpty())
            return fault;
    }
    for (const ExperimentDrug *treatment : experiment.experimentDrugs()) {
        if (treatment->startTime() < 0.0 || treatment->endTime() <= treatment->startTime())
            return "a drug without a time";
    }
    return period > 0.0 ? QString() : "no results";
}

} // namespace

/// The experiments of the sample library, in the library as it is delivered.
class SampleExperimentsTest final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { library.disconnect(); }

    void tellOfClassicWorkAndOfGenes();
    void areComplete();
    void citeTheirPublications();
    void leaveNothingUnused_data();
    void leaveNothingUnused();
    void referToNothingMissing();
    void areTheSameEachTime();
    void takeManipulationsByName();
    void needTheirWorms();
    void needTheirManipulations();

private:
    QVariant value(const QString &sql)
    {
        const std::unique_ptr<QSqlQuery> query = library.newQuery(sql);
        return query->next() ? query->value(0) : QVariant();
    }
    std::vector<std::unique_ptr<Experiment>> experiments();

    QTemporaryDir folder;
    DB library;
};

void SampleExperimentsTest::initTestCase()
{
    const QString fileName = folder.filePath("sample.edb");
    writeSamples(fileName, false);
    QCOMPARE(library.connect(fileName, false), int(DB::Opened));
}

std::vector<std::unique_ptr<Experiment>> SampleExperimentsTest::experiments()
{
    std::vector<std::unique_ptr<Experiment>> all;
    const std::unique_ptr<QSqlQuery> query = library.newTableQuery("Experiment");
    while (query->next())
        all.push_back(std::make_unique<Experiment>(query->value(0).toInt(), &library));
    return all;
}

void SampleExperimentsTest::tellOfClassicWorkAndOfGenes()
{
    const QString papers =
        "FROM Experiment JOIN Publication ON Publication = Publication.Id WHERE ";
    QVERIFY(value("SELECT COUNT(*) " + papers + "Year < 1960").toInt() >= 10);
    QVERIFY(value("SELECT COUNT(*) " + papers +
                  "Year BETWEEN 1999 AND 2010 AND Experiment.Id IN "
                  "(SELECT Experiment FROM ExperimentRNAi)")
                .toInt() >= 2);
    QCOMPARE(value("SELECT COUNT(*) " + papers +
                   "Year < 1998 AND Experiment.Id IN (SELECT Experiment FROM ExperimentRNAi)"),
             QVariant(0));
    QVERIFY(library.getNumRows("ExperimentDrug") >= 3);
}

void SampleExperimentsTest::areComplete()
{
    const auto all = experiments();
    QVERIFY(!all.empty());
    for (const std::unique_ptr<Experiment> &experiment : all)
        QCOMPARE(experiment->name() + ": " + faultOf(*experiment), experiment->name() + ": ");
}

void SampleExperimentsTest::citeTheirPublications()
{
    const QRegularExpression citation("^\\S.+ \\([A-Z]\\. .+, .+\\)$");
    for (const std::unique_ptr<Experiment> &experiment : experiments()) {
        const Publication *publication = experiment->publication();
        QVERIFY2(citation.match(publication->title()).hasMatch(), qPrintable(publication->title()));
        QVERIFY(publication->year() >= 1890 && publication->year() <= 2010);
        QVERIFY(publication->url().isEmpty() || publication->url().startsWith("https://"));
    }
}

void SampleExperimentsTest::leaveNothingUnused_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("user");

    QTest::newRow("drugs") << "Drug"
                           << "ExperimentDrug";
    QTest::newRow("RNAi") << "RNAi"
                          << "ExperimentRNAi";
    QTest::newRow("species") << "Species"
                             << "Experiment";
    QTest::newRow("publications") << "Publication"
                                  << "Experiment";
}

void SampleExperimentsTest::leaveNothingUnused()
{
    QFETCH(const QString, table);
    QFETCH(const QString, user);
    QVERIFY(library.getNumRows(table) > 0);
    QCOMPARE(value(QStringLiteral("SELECT COUNT(*) FROM %1 WHERE Id NOT IN (SELECT %1 FROM %2)")
                       .arg(table, user)),
             QVariant(0));
}

void SampleExperimentsTest::referToNothingMissing()
{
    QCOMPARE(value("PRAGMA foreign_key_check"), QVariant());
    QCOMPARE(value("PRAGMA integrity_check"), QVariant("ok"));
}

void SampleExperimentsTest::areTheSameEachTime()
{
    // Containers that order by hashes have another order in each process.
    const QByteArray bytes = bytesOf(folder.filePath("sample.edb"));
    QVERIFY(!bytes.isEmpty());
    for (const bool sameHashes : {true, false}) {
        const QString again = folder.filePath("again.edb");
        writeSamples(again, sameHashes);
        QVERIFY(bytesOf(again) == bytes);
    }
}

void SampleExperimentsTest::takeManipulationsByName()
{
    QVERIFY(value("SELECT COUNT(*) FROM Experiment JOIN Manipulation "
                  "ON Manipulation = Manipulation.Id WHERE Manipulation.Name = 'Trunk fragment'")
                .toInt() > 2);
    QCOMPARE(value("SELECT COUNT(Name) FROM Manipulation WHERE Name <> ''"),
             QVariant(int(SampleManipulations::all(&library).size())));
}

void SampleExperimentsTest::needTheirWorms()
{
    TemporaryLibrary other;
    QVERIFY(!SampleExperiments::write(other.db()));
    QCOMPARE(other.count("Experiment"), 0);
}

void SampleExperimentsTest::needTheirManipulations()
{
    TemporaryLibrary other;
    for (const std::unique_ptr<Morphology> &worm : SampleWorms::all())
        worm->submit(other.db());
    QVERIFY(!SampleExperiments::write(other.db()));
    QCOMPARE(other.count("Experiment"), 0);
}

QTEST_MAIN(SampleExperimentsTest)
#include "SampleExperimentsTest.moc"
