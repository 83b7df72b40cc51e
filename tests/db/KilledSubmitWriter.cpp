// Writes worms into the library that it is called with, without end, and tells the generation that
// it has written. The test kills it.

#include "GenerationWorm.h"
#include "db/BulkRead.h"
#include "db/DB.h"
#include "db/ExperimentFactory.h"
#include "model/Morphology.h"

#include <QCoreApplication>

#include <cstdio>
#include <memory>
#include <vector>

using namespace Planaria;

namespace {

using Worms = std::vector<std::unique_ptr<Morphology>>;

Worms storedWorms(DB *db)
{
    Worms worms;
    const BulkRead job(db);
    const std::unique_ptr<QSqlQuery> query = db->newTableQuery("Morphology");
    while (query->next())
        worms.push_back(std::make_unique<Morphology>(query->value(0).toInt(), db, true));
    return worms;
}

void tell(int generation)
{
    std::printf("%d\n", generation);
    std::fflush(stdout);
}

/// The first worm is edited, a copy of it comes, and the oldest copy goes: three transactions.
bool writeGeneration(DB *db, Worms *worms, int generation)
{
    Morphology *worm = worms->front().get();
    turnIntoGeneration(worm, generation);
    if (worm->submit(db) <= 0)
        return false;
    tell(generation);

    worms->push_back(std::make_unique<Morphology>(*worm, false));
    nameByGeneration(worms->back().get(), "copy", generation);
    if (worms->back()->submit(db) <= 0)
        return false;

    if (worms->size() <= 3)
        return true;
    const bool erased = worms->at(1)->erase();
    worms->erase(worms->begin() + 1);
    return erased;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    DB db;
    if (arguments.size() != 2 || db.connect(arguments.at(1), false) != DB::Opened)
        return 1;
    ExperimentFactory::instance(nullptr)->load(&db);

    Worms worms = storedWorms(&db);
    if (worms.empty())
        worms.push_back(newGenerationWorm(0));
    int generation = generationOf(*worms.front());
    tell(generation);
    while (writeGeneration(&db, &worms, ++generation)) {
    }
    std::fputs(qPrintable(db.lastError()), stderr);
    return 1;
}
