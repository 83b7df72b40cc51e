#include "BenchLibrary.h"

#include "BenchWorms.h"
#include "db/DBExp.h"
#include "model/Morphology.h"

#include <QRandomGenerator>
#include <QSqlError>

namespace Planaria {

namespace {

/// Rows of one table on their way into a file, each with the id that follows the last.
class TableWriter final
{
public:
    TableWriter(DB *db, const char *table, int columns) : query(db->newQuery())
    {
        const QStringList marks(columns + 1, QStringLiteral("?"));
        query->prepare(QStringLiteral("INSERT INTO %1 VALUES (%2)")
                           .arg(QLatin1String(table), marks.join(QLatin1Char(','))));
    }

    int add(const QList<QVariant> &values)
    {
        query->bindValue(0, ++lastId);
        for (int i = 0; i < values.size(); ++i)
            query->bindValue(i + 1, values[i]);
        if (!query->exec())
            qFatal("%s", qUtf8Printable(query->lastError().text()));
        return lastId;
    }

private:
    std::unique_ptr<QSqlQuery> query;
    int lastId = 0;
};

/// Fills a file by fixed rules and fixed random numbers.
class Filler final
{
public:
    Filler(DB *database, const LibrarySize &librarySize) : db(database), size(librarySize) {}

    void fill()
    {
        addNamed("Drug", kinds(), 0);
        addNamed("RNAi", kinds(), 1);
        addNamed("Species", kinds(), 0);
        addPublications();
        for (int i = 1; i <= size.morphologies; ++i)
            addMorphology(i);
        for (int i = 1; i <= size.manipulations; ++i)
            addManipulation(i);
        for (int i = 1; i <= size.experiments; ++i)
            addExperiment(i);
    }

private:
    [[nodiscard]] int kinds() const { return 10 + size.experiments / 100; }
    [[nodiscard]] int publicationCount() const { return 10 + size.experiments / 10; }
    int oneOf(int count) { return random.bounded(1, count + 1); }

    void addNamed(const char *table, int count, int nulls)
    {
        TableWriter rows(db, table, 1 + nulls);
        for (int i = 1; i <= count; ++i)
            rows.add(QList<QVariant>{QStringLiteral("%1 no. %2").arg(QLatin1String(table)).arg(i)} +
                     QList<QVariant>(nulls));
    }

    void addPublications()
    {
        TableWriter rows(db, "Publication", 3);
        for (int i = 1; i <= publicationCount(); ++i)
            rows.add(
                {QStringLiteral("On regeneration, part %1").arg(i), QVariant(), 1900 + i % 120});
    }

    /// A worm of three to six regions in a row.
    void addMorphology(int n)
    {
        const int morphology = morphologies.add({QStringLiteral("Worm with mark %1").arg(n)});
        int former = 0;
        for (int i = oneOf(4) + 2; i > 0; --i) {
            const int type = former == 0 ? 1 : (i == 1 ? 3 : 2);
            const int region = regions.add({morphology, type});
            for (int param = 0; param < (type == 2 ? 2 : 3); ++param)
                params.add({region, param, 60.0});
            if (former != 0)
                links.add({former, region, 200.0, 0.5, 4.7});
            addOrgans(region, type);
            former = region;
        }
    }

    void addOrgans(int region, int type)
    {
        const int spots = type == 1 ? 4 : (type == 2 ? 1 : 0);
        for (int i = 0; i < spots; ++i)
            organs.add({region, 10.0 * i, 5.0, spotOrgans.add({oneOf(3), 0.0}), QVariant()});
        for (int i = 0; i < (type == 2 ? 2 : 0); ++i)
            organs.add({region, 10.0, 5.0, QVariant(), lineOrgans.add({1, 0.0, 9.0, 0.0, -9.0})});
    }

    /// A tree of two or three leaves: joined from the left, each product cut before.
    void addManipulation(int n)
    {
        int product = addCut();
        for (int i = oneOf(2); i > 0; --i)
            product = addAction(4, joinActions.add({product, addCut(), 10.0, 0.0, 0.5}));
        manipulations.add({QStringLiteral("Cut and join %1").arg(n), product});
    }

    int addCut()
    {
        const int leaf = addAction(1, morphologyActions.add({oneOf(size.morphologies)}));
        const bool crop = oneOf(2) == 1;
        const int cut = (crop ? cropActions : removeActions).add({leaf});
        for (int point = 0; point < 4; ++point)
            (crop ? cropPoints : removePoints).add({cut, point, 10.0 * point, 5.0});
        return addAction(crop ? 3 : 2, cut);
    }

    int addAction(int column, int row)
    {
        QList<QVariant> references(5);
        references[column - 1] = row;
        return actions.add(references);
    }

    /// With up to three drugs and RNAi, one or two result sets and one to three worms in each.
    void addExperiment(int n)
    {
        const int experiment =
            experiments.add({QStringLiteral("Experiment %1").arg(n), oneOf(size.manipulations),
                             oneOf(publicationCount()), oneOf(kinds())});
        for (int i = random.bounded(3); i > 0; --i)
            experimentDrugs.add({experiment, oneOf(kinds()), 0.0, 7.0});
        for (int i = random.bounded(3); i > 0; --i)
            experimentRNAi.add({experiment, oneOf(kinds())});
        for (int i = oneOf(2); i > 0; --i) {
            const int set = resultSets.add({experiment, 20, 7.0});
            const int count = oneOf(3);
            for (int worm = 0; worm < count; ++worm)
                results.add({set, oneOf(size.morphologies), 1.0 / count});
        }
    }

    DB *db;
    LibrarySize size;
    QRandomGenerator random{20};

    TableWriter morphologies{db, "Morphology", 1};
    TableWriter regions{db, "Region", 2};
    TableWriter params{db, "RegionParam", 3};
    TableWriter links{db, "RegionsLink", 5};
    TableWriter organs{db, "Organ", 5};
    TableWriter spotOrgans{db, "SpotOrgan", 2};
    TableWriter lineOrgans{db, "LineOrgan", 5};
    TableWriter manipulations{db, "Manipulation", 2};
    TableWriter actions{db, "ManipulationAction", 5};
    TableWriter morphologyActions{db, "MorphologyAction", 1};
    TableWriter cropActions{db, "CropAction", 1};
    TableWriter cropPoints{db, "CropActionAreaPoint", 4};
    TableWriter removeActions{db, "RemoveAction", 1};
    TableWriter removePoints{db, "RemoveActionAreaPoint", 4};
    TableWriter joinActions{db, "JoinAction", 5};
    TableWriter experiments{db, "Experiment", 4};
    TableWriter experimentDrugs{db, "ExperimentDrug", 4};
    TableWriter experimentRNAi{db, "ExperimentRNAi", 2};
    TableWriter resultSets{db, "ResultSet", 3};
    TableWriter results{db, "ResultantMorphology", 3};
};

std::unique_ptr<Morphology> anyWildType(int /*number*/)
{
    return BenchWorms::wildType();
}

} // namespace

BenchLibrary::BenchLibrary(int count) : BenchLibrary(count, anyWildType) {}

BenchLibrary::BenchLibrary(int count, std::unique_ptr<Morphology> (*make)(int number))
{
    create();
    database.beginTransaction(); // one for all worms: a file of thousands is made in seconds
    for (int i = 1; i <= count; ++i) {
        const std::unique_ptr<Morphology> worm = make(i);
        worm->setName(QStringLiteral("Worm %1").arg(i));
        worm->submit(&database);
    }
    if (!database.endTransaction())
        qFatal("cannot fill %s", qUtf8Printable(fileName()));
}

BenchLibrary::BenchLibrary(Morphology *worm)
{
    create();
    if (worm->submit(&database) < 1)
        qFatal("cannot fill %s", qUtf8Printable(fileName()));
}

BenchLibrary::BenchLibrary(const LibrarySize &size)
{
    create();
    database.beginTransaction();
    Filler(&database, size).fill();
    if (!database.endTransaction())
        qFatal("cannot fill %s", qUtf8Printable(fileName()));
}

void BenchLibrary::create()
{
    if (!database.createEmptyDB(fileName()) || !DBExp::buildDB(&database))
        qFatal("cannot make %s", qUtf8Printable(fileName()));
}

} // namespace Planaria
