#include "db/DB.h"
#include "db/DBExp.h"
#include "db/ExperimentFactory.h"
#include "manipulation/ManipulationForm.h"
#include "model/JoinAction.h"
#include "model/Manipulation.h"
#include "model/Morphology.h"
#include "model/RemoveAction.h"

#include <QApplication>
#include <QTemporaryDir>

#include <cstdio>

// Opens the editor on a new manipulation of a new library, and prints what is read back of the one
// that is stored: its name, the corners that are cut away, the shift and the turn of the graft;
// "rejected" where it was given up.

using namespace Planaria;

namespace {

void print(const Manipulation &manipulation)
{
    std::printf("name: %s\n", qUtf8Printable(manipulation.name()));
    for (const ManipulationAction *action : manipulation.actions()) {
        if (const auto *area = dynamic_cast<const AreaAction *>(action)) {
            for (const QPointF &corner : area->calcAreaVector())
                std::printf("corner: %.3f %.3f\n", corner.x(), corner.y());
        }
        if (const auto *join = dynamic_cast<const JoinAction *>(action))
            std::printf("graft: %.3f %.3f %.3f\n", join->vectX(), join->vectY(), join->rot());
    }
}

int edit(DB *db)
{
    Manipulation manipulation(db);
    ManipulationForm form(&manipulation, db);
    if (form.exec() != QDialog::Accepted) {
        std::puts("rejected");
        return 0;
    }
    const Manipulation stored(manipulation.submit(db), db);
    print(stored);
    return stored == manipulation ? 0 : 1;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    application.setOrganizationName(QStringLiteral("ManipulationFormProgram"));
    const QTemporaryDir folder;
    DB db;
    if (!db.createEmptyDB(folder.filePath(QStringLiteral("worms.edb"))) || !DBExp::buildDB(&db))
        return 1;
    return edit(&db);
}
