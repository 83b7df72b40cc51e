#include "db/DB.h"
#include "db/DBExp.h"
#include "model/Morphology.h"
#include "morphology/MorphologyForm.h"

#include <QApplication>
#include <QTemporaryDir>

#include <cstdio>

// Opens the editor on a new worm of a new library, and prints the row in which the worm is stored
// and the number of its regions as they are read back; "rejected" where it was given up.

using namespace Planaria;

namespace {

int edit(DB *db)
{
    Morphology worm;
    MorphologyForm form(&worm, db, nullptr);
    if (form.exec() != QDialog::Accepted) {
        std::puts("rejected");
        return 0;
    }
    const int id = worm.submit(db);
    const Morphology stored(id, db, true);
    std::printf("%d %s %lld\n", id, qUtf8Printable(stored.name()),
                static_cast<long long>(stored.regions().size()));
    return stored == worm ? 0 : 1;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    application.setOrganizationName(QStringLiteral("MorphologyFormProgram"));
    const QTemporaryDir folder;
    DB db;
    if (!db.createEmptyDB(folder.filePath(QStringLiteral("worms.edb"))) || !DBExp::buildDB(&db))
        return 1;
    return edit(&db);
}
