#include "db/ExperimentFactory.h"

#include "db/DB.h"
#include "model/CropAction.h"
#include "model/JoinAction.h"
#include "model/LineOrganType.h"
#include "model/Manipulation.h"
#include "model/Morphology.h"
#include "model/Region.h"
#include "model/RegionType.h"
#include "model/RemoveAction.h"
#include "model/SpotOrganType.h"

#include <algorithm>

namespace Planaria {

namespace {

template <typename Type> void loadTypes(DB *db, const QString &table, QList<Type *> *types)
{
    const std::unique_ptr<QSqlQuery> query = db->newTableQuery(table);
    while (query->next())
        types->append(new Type(query->value(0).toInt(), db));
}

template <typename Type> void unloadTypes(QList<Type *> *types, QHash<int, Type *> *unknown)
{
    while (!types->isEmpty())
        delete types->takeFirst();
    qDeleteAll(std::exchange(*unknown, {}));
}

template <typename Type>
Type *typeOf(int id, const QList<Type *> &types, QHash<int, Type *> *unknown)
{
    if (id >= 1 && id <= types.size() && types.at(id - 1)->id() == id)
        return types.at(id - 1);
    // A damaged file may have a gap in its types.
    const auto known = std::find_if(types.cbegin(), types.cend(),
                                    [id](const Type *type) { return type->id() == id; });
    if (known != types.cend())
        return *known;
    Type *&type = (*unknown)[id];
    if (!type)
        type = new Type(id, QString());
    return type;
}

} // namespace

ExperimentFactory *ExperimentFactory::instance(DB *db)
{
    static ExperimentFactory factory(db);
    return &factory;
}

ExperimentFactory::ExperimentFactory(DB *db)
{
    if (db)
        load(db);
    else
        load();
}

ExperimentFactory::~ExperimentFactory()
{
    unload();
}

void ExperimentFactory::load(DB *db)
{
    unload();
    loadTypes(db, QStringLiteral("RegionType"), &regionTypes);
    loadTypes(db, QStringLiteral("SpotOrganType"), &spotOrganTypes);
    loadTypes(db, QStringLiteral("LineOrganType"), &lineOrganTypes);
}

void ExperimentFactory::load()
{
    unload();
    regionTypes = {new RegionType(1, QStringLiteral("Head")),
                   new RegionType(2, QStringLiteral("Trunk")),
                   new RegionType(3, QStringLiteral("Tail"))};
    spotOrganTypes = {new SpotOrganType(1, QStringLiteral("Eye")),
                      new SpotOrganType(2, QStringLiteral("Brain")),
                      new SpotOrganType(3, QStringLiteral("Phar."))};
    lineOrganTypes = {new LineOrganType(1, QStringLiteral("VNC"))};
}

void ExperimentFactory::unload()
{
    unloadTypes(&regionTypes, &unknownRegionTypes);
    unloadTypes(&spotOrganTypes, &unknownSpotOrganTypes);
    unloadTypes(&lineOrganTypes, &unknownLineOrganTypes);
}

RegionType *ExperimentFactory::regionType(int id)
{
    return typeOf(id, regionTypes, &unknownRegionTypes);
}

SpotOrganType *ExperimentFactory::spotOrganType(int id)
{
    return typeOf(id, spotOrganTypes, &unknownSpotOrganTypes);
}

LineOrganType *ExperimentFactory::lineOrganType(int id)
{
    return typeOf(id, lineOrganTypes, &unknownLineOrganTypes);
}

std::unique_ptr<Morphology> ExperimentFactory::createWildMorphology()
{
    auto worm = std::make_unique<Morphology>();
    worm->setName(QStringLiteral("Wild type"));

    Region *head = worm->addRegion(regionType(1));
    Region *trunk = worm->addRegion(regionType(2));
    Region *tail = worm->addRegion(regionType(3));

    constexpr double downwards = 4.71238898038469; // three quarters of a turn
    worm->addRegionsLink(head, trunk, 200.0, downwards, 0.5);
    worm->addRegionsLink(trunk, tail, 200.0, downwards, 0.5);

    head->setParams({60.0, 80.0, 60.0});
    trunk->setParams({60.0, 60.0});
    tail->setParams({50.0, 80.0, 50.0});

    // Brain lobes at 30 and 150 degrees, eyes at 45 and 135 degrees, on a circle of 30. The digits
    // are those that stored wild types bear, so that worms of all files compare equal.
    SpotOrganType *eye = spotOrganType(1);
    SpotOrganType *brain = spotOrganType(2);
    head->addSpotOrgan(brain, {25.98076211353316, 14.999999999999998}, 3.4033920413889422);
    head->addSpotOrgan(brain, {-25.98076211353316, 14.999999999999998}, 6.021385919380437);
    head->addSpotOrgan(eye, {21.213203435596427, 21.213203435596423}, 3.141592653589793);
    head->addSpotOrgan(eye, {-21.213203435596423, 21.213203435596427}, 0.0);
    trunk->addSpotOrgan(spotOrganType(3), {-0.0, -0.0}, 1.5707963267948966);

    LineOrganType *cord = lineOrganType(1);
    trunk->addLineOrgan(cord, {43.0, 0.0}, {-8.0, 176.5}, {-36.0, -250.0});
    trunk->addLineOrgan(cord, {-43.0, 0.0}, {8.0, 176.5}, {36.0, -250.0});
    return worm;
}

std::unique_ptr<Morphology> ExperimentFactory::createAndSaveWildMorphology(DB *db)
{
    std::unique_ptr<Morphology> worm = createWildMorphology();
    worm->submit(db);
    return worm;
}

std::unique_ptr<Morphology> ExperimentFactory::loadDefaultMorphology(DB *db)
{
    if (db->exist(QStringLiteral("Morphology"), QStringLiteral("Id"), 1))
        return std::make_unique<Morphology>(1, db, false);
    return createAndSaveWildMorphology(db);
}

std::unique_ptr<Morphology> ExperimentFactory::loadStoredDefaultMorphology(DB *db)
{
    std::unique_ptr<Morphology> worm = loadDefaultMorphology(db);
    if (worm->id() > 0)
        return worm;
    const int namesake =
        db->existId(QStringLiteral("Morphology"), QStringLiteral("Name"), worm->name());
    return namesake > 0 ? std::make_unique<Morphology>(namesake, db, false) : std::move(worm);
}

std::unique_ptr<Manipulation> ExperimentFactory::createWildManipulation()
{
    auto manipulation = std::make_unique<Manipulation>(createWildMorphology().release());
    CropAction *crop = manipulation->addCropAction(manipulation->rootAction());
    for (const QPointF &point : {QPointF(50.0, 0.0), {0.0, 50.0}, {-50.0, 0.0}, {0.0, -50.0}})
        crop->addAreaPoint(point);
    JoinAction *join = manipulation->addJoinAction(crop, createWildMorphology().release());
    manipulation->addRemoveAction(join)->addAreaPoint({50.0, 50.0});
    for (const QPointF &point : {QPointF(0.0, 100.0), {-50.0, 50.0}, {0.0, 0.0}})
        crop->addAreaPoint(point); // these too belong to the sample's crop
    return manipulation;
}

void ExperimentFactory::addRandomOrgans(Region * /*region*/) {}

} // namespace Planaria
