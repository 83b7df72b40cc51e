#include "SampleWorms.h"
#include "db/DB.h"
#include "db/DBExp.h"
#include "db/ExperimentFactory.h"
#include "model/Morphology.h"

#include <QApplication>
#include <QFile>

#include <algorithm>
#include <cstdio>

// vermidex_sample_library FILE.edb: writes the sample library. The same worms give the same bytes.

using namespace Planaria;

namespace {

bool writeWorms(DB *db)
{
    ExperimentFactory::instance(nullptr)->load(db);
    const auto worms = SampleWorms::all();
    return std::all_of(worms.cbegin(), worms.cend(),
                       [db](const auto &worm) { return worm->submit(db) > 0; });
}

bool writeLibrary(const QString &fileName)
{
    DB db;
    return db.createEmptyDB(fileName) && DBExp::buildDB(&db) && writeWorms(&db);
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "minimal"); // worms are drawn without fonts, and never shown
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
