#include "db/DB.h"
#include "db/DBExp.h"
#include "model/Morphology.h"
#include "model/Organ.h"
#include "model/Region.h"
#include "morphology/MorphologyForm.h"

#include <QApplication>
#include <QMap>
#include <QTemporaryDir>

#include <cstdio>

// Opens the editor on a new worm of a new library, and prints what is stored of it, as it is read
// back: row, name, number of regions and number of organs of each type, in alphabetical order;
// "rejected" where it was given up.

using namespace Planaria;

namespace {

QString organsOf(const Morphology &worm)
{
    QMap<QString, int> numbers;
    for (const Region *region : worm.regions()) {
        for (const Organ *organ : region->organs())
            ++numbers[organ->typeName()];
    }
    QStringList texts;
    for (auto it = numbers.cbegin(); it != numbers.cend(); ++it)
        texts += QStringLiteral("%1 %2").arg(it.value()).arg(it.key());
    return texts.join(QLatin1Char(' '));
}

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
    std::printf("%d %s %lld %s\n", id, qUtf8Printable(stored.name()),
                static_cast<long long>(stored.regions().size()), qUtf8Printable(organsOf(stored)));
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
