#include "SampleExperiments.h"
#include "SampleManipulations.h"
#include "SampleWorms.h"
#include "db/DB.h"
#include "db/DBExp.h"
#include "db/ExperimentFactory.h"
#include "model/Manipulation.h"
#include "model/Morphology.h"

#include <QApplication>
#include <QFile>
#include <QHashSeed>

#include <algorithm>
#include <cstdio>

// vermidex_sample_library FILE.edb: writes the sample library. The same samples give the same
// bytes.

using namespace Planaria;

namespace {

template <typename Elements> bool write(const Elements &elements, DB *db)
{
    return std::all_of(elements.cbegin(), elements.cend(),
                       [db](const auto &element) { return element->submit(db) > 0; });
}

bool writeElements(DB *db)
{
    ExperimentFactory::instance(nullptr)->load(db);
    return write(SampleWorms::all(), db) && write(SampleManipulations::all(db), db) &&
           SampleExperiments::write(db);
}

bool writeLibrary(const QString &fileName)
{
    DB db;
    return db.createEmptyDB(fileName) && DBExp::buildDB(&db) && writeElements(&db);
}

} // namespace

int main(int argc, char *argv[])
{
    QHashSeed::setDeterministicGlobalSeed(); // hashes order the rows that a join refers to
    qputenv("QT_QPA_PLATFORM", "minimal");   // worms are drawn without fonts, and never shown
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 2) {
        std::fputs("usage: vermidex_sample_library FILE.edb\n", stderr);
        return 2;
    }
    if (writeLibrary(arguments.at(1)))
        return 0;
    std::fprintf(stderr, "cannot write %s\n", qUtf8Printable(arguments.at(1)));
    QFile::remove(arguments.at(1)); // no build takes half a library for a whole one
    return 1;
}
