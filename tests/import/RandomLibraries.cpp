#include "RandomLibraries.h"

#include "db/DB.h"
#include "model/CropAction.h"
#include "model/IrradiationAction.h"
#include "model/JoinAction.h"
#include "model/RandomWorms.h"
#include "model/SmallExperiments.h"

#include <algorithm>

namespace Planaria {

void RandomLibraries::fill(DB *db)
{
    db->beginTransaction();
    fillWords(db);
    fillMorphologies(db);
    for (const QString &name : names("Manipulation")) {
        const std::unique_ptr<Manipulation> made = manipulation(db);
        made->setName(name);
        made->submit(db);
    }
    for (const QString &name : names("Experiment")) {
        const std::unique_ptr<Experiment> made = experiment(db);
        made->setName(name);
        made->submit(db);
    }
    if (!db->endTransaction())
        qFatal("cannot fill a library");
}

QStringList RandomLibraries::names(const QString &kind)
{
    QStringList names;
    for (int i = 1; i <= 6; ++i) {
        if (number(3) > 0)
            names += QStringLiteral("%1 %2").arg(kind).arg(i);
    }
    if (number(3) == 0)
        names += kind.toLower() + " 1";
    if (names.isEmpty())
        names += kind + " 7";
    std::shuffle(names.begin(), names.end(), generator);
    return names;
}

void RandomLibraries::fillWords(DB *db)
{
    for (const QString table : {"Drug", "RNAi", "Species"}) {
        for (const QString &name : names(table))
            db->newQuery(QStringLiteral("INSERT INTO %1 (Name) VALUES (?)").arg(table), name);
    }
    for (const QString &title : names("Publication"))
        std::unique_ptr<Publication>(newPublication(title, QString(), 1900 + number(2)))
            ->submit(db);
}

void RandomLibraries::fillMorphologies(DB *db)
{
    for (const QString &name : names("Morphology")) {
        const auto version = static_cast<quint32>(name.back().digitValue() * 10 + number(2));
        const std::unique_ptr<Morphology> worm =
            RandomWorms(version, RandomWorms::DistinctAngles).worm();
        worm->setName(name);
        worm->submit(db);
    }
}

int RandomLibraries::anyId(DB *db, const QString &table)
{
    const auto query =
        db->newQuery(QStringLiteral("SELECT Id FROM %1 ORDER BY Id LIMIT 1 OFFSET %2")
                         .arg(table)
                         .arg(number(db->getNumRows(table))));
    return query->next() ? query->value(0).toInt() : 0;
}

Morphology *RandomLibraries::anyWorm(DB *db)
{
    return new Morphology(anyId(db, "Morphology"), db, false);
}

void RandomLibraries::draw(AreaAction *action)
{
    for (int points = number(4); points > 0; --points)
        action->addAreaPoint({static_cast<double>(number(100)), 0.5 * number(100)});
}

std::unique_ptr<Manipulation> RandomLibraries::manipulation(DB *db)
{
    auto made = std::make_unique<Manipulation>(anyWorm(db));
    for (int actions = number(4); actions > 0; --actions) {
        ManipulationAction *behind = made->actions().at(number(made->actions().size()));
        switch (number(4)) {
        case 0:
            draw(made->addRemoveAction(behind));
            break;
        case 1:
            draw(made->addCropAction(behind));
            break;
        case 2:
            draw(made->addIrradiationAction(behind));
            break;
        default:
            made->addJoinAction(behind, anyWorm(db))->setRot(0.25 * number(4));
        }
    }
    return made;
}

std::unique_ptr<Experiment> RandomLibraries::experiment(DB *db)
{
    auto made = std::make_unique<Experiment>();
    made->setManipulation(new Manipulation(anyId(db, "Manipulation"), db));
    made->setPublication(new Publication(anyId(db, "Publication"), db));
    made->setSpecies(new Species(anyId(db, "Species"), db));
    for (int drugs = number(3); drugs > 0; --drugs)
        made->addExperimentDrug(new Drug(anyId(db, "Drug"), db))->setEndTime(number(2));
    for (int genes = number(3); genes > 0; --genes)
        made->addExperimentRNAi(new RNAi(anyId(db, "RNAi"), db));
    addResults(made.get(), db);
    return made;
}

void RandomLibraries::addResults(Experiment *experiment, DB *db)
{
    for (int sets = number(3); sets > 0; --sets) {
        ResultSet *set = addSet(experiment, number(2), 0.5 * number(2));
        for (int results = number(3); results > 0; --results)
            set->addResultantMorphology(anyWorm(db))->setFrequency(0.25 * number(4));
    }
}

} // namespace Planaria
