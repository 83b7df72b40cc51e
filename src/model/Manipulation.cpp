#include "model/Manipulation.h"

#include "db/DB.h"
#include "model/CropAction.h"
#include "model/IrradiationAction.h"
#include "model/JoinAction.h"
#include "model/Morphology.h"
#include "model/MorphologyAction.h"
#include "model/RemoveAction.h"

#include <QScopedValueRollback>

#include <memory>

namespace Planaria {

namespace {

constexpr auto table = "Manipulation";

/// Trees of people have some ten actions; each level costs stack, in drawing most of all.
constexpr int deepest = 500;

/// Whether there is something to take the place of @p action.
bool hasInput(const ManipulationAction *action)
{
    if (const auto *area = dynamic_cast<const AreaAction *>(action))
        return area->fromAction();
    const auto *join = dynamic_cast<const JoinAction *>(action);
    return join && (join->fromAction1() || join->fromAction2());
}

} // namespace

Manipulation::Manipulation(DB *db) : data(table)
{
    rootAction_ = new MorphologyAction(this, db);
}

Manipulation::Manipulation(Morphology *morphology) : data(table)
{
    rootAction_ = new MorphologyAction(morphology, this);
}

Manipulation::Manipulation(int id, DB *db) : data(table, id, db)
{
    load();
}

Manipulation::Manipulation(const Manipulation &other, bool keepIds) : data(other.data, keepIds)
{
    copy(other, keepIds);
}

Manipulation::~Manipulation()
{
    deleteAll();
}

Manipulation &Manipulation::operator=(const Manipulation &other)
{
    if (this != &other) {
        deleteAll();
        data = other.data;
        copy(other, true);
    }
    return *this;
}

void Manipulation::copy(const Manipulation &other)
{
    if (this == &other)
        return;
    removeAndDeleteAll();
    copy(other, false);
}

void Manipulation::referTo(int id, DB *db)
{
    deleteAll();
    rootAction_ = nullptr;
    sharedRows.clear();
    data.referTo(id, db);
    name_ = data.loadValue(1).toString();
    data.loadFinished();
}

void Manipulation::copy(const Manipulation &other, bool keepIds)
{
    name_ = other.name_;
    sharedRows = keepIds ? other.sharedRows : QSet<int>();
    rootAction_ = ManipulationAction::copyAction(other.rootAction_, this, nullptr, keepIds);
}

void Manipulation::removeAndDeleteAll()
{
    ManipulationAction::removeActionFromManipulationRec(std::exchange(rootAction_, nullptr));
}

void Manipulation::deleteAll()
{
    qDeleteAll(std::exchange(actions_, {}));
}

// --- Loading ---

void Manipulation::load()
{
    name_ = data.loadValue(1).toString();
    rootAction_ = loadAction(rowId(data.loadValue(2)), nullptr);
    data.loadFinished();
}

ManipulationAction *Manipulation::loadAction(int id, ManipulationAction *toAction)
{
    if (loadedRows.contains(id)) {
        if (toAction && toAction->actionRecord().id() != id)
            sharedRows.insert(id);
        return nullptr;
    }
    if (id < 1 || !data.db() || loadDepth >= deepest)
        return nullptr;
    loadedRows.insert(id);
    ++loadDepth;
    ManipulationAction *action = nullptr;
    data.loadExtElement("ManipulationAction", id);
    for (const ManipulationAction::Kind kind : ManipulationAction::allKinds) {
        if (const int ownRowId = rowId(data.loadExtValue(static_cast<int>(kind)))) {
            action = newAction(kind, toAction, ownRowId, id);
            break;
        }
    }
    if (--loadDepth == 0)
        loadedRows.clear();
    return action;
}

ManipulationAction *Manipulation::newAction(ManipulationAction::Kind kind,
                                            ManipulationAction *toAction, int ownRowId,
                                            int actionRowId)
{
    using Kind = ManipulationAction::Kind;

    DB *db = data.db();
    // Without it no column of the action is known, and none could be written.
    if (!db->rowCursor(QLatin1String(ManipulationAction::table(kind)), ownRowId)->next())
        return nullptr;
    switch (kind) {
    case Kind::Morphology:
        return new MorphologyAction(toAction, this, ownRowId, actionRowId, db);
    case Kind::Remove:
        return new RemoveAction(toAction, this, ownRowId, actionRowId, db);
    case Kind::Crop:
        return new CropAction(toAction, this, ownRowId, actionRowId, db);
    case Kind::Join:
        return new JoinAction(toAction, this, ownRowId, actionRowId, db);
    case Kind::Irradiation:
        return new IrradiationAction(toAction, this, ownRowId, actionRowId, db);
    }
    return nullptr;
}

// --- The tree ---

template <typename Action> Action *Manipulation::addAreaAction(ManipulationAction *action)
{
    if (!actions_.contains(action))
        return nullptr;
    auto *added = new Action(action, action->toAction(), this);
    insertBehind(action, added);
    return added;
}

RemoveAction *Manipulation::addRemoveAction(ManipulationAction *action)
{
    return addAreaAction<RemoveAction>(action);
}

CropAction *Manipulation::addCropAction(ManipulationAction *action)
{
    return addAreaAction<CropAction>(action);
}

IrradiationAction *Manipulation::addIrradiationAction(ManipulationAction *action)
{
    return addAreaAction<IrradiationAction>(action);
}

JoinAction *Manipulation::addJoinAction(ManipulationAction *action, Morphology *morphology)
{
    auto owned = std::unique_ptr<Morphology>(morphology);
    if (!actions_.contains(action))
        return nullptr;
    auto *second = new MorphologyAction(owned.release(), this);
    auto *join = new JoinAction(action, second, action->toAction(), this);
    second->setToAction(join);
    insertBehind(action, join);
    return join;
}

void Manipulation::insertBehind(ManipulationAction *action, ManipulationAction *added)
{
    ManipulationAction *next = action->toAction();
    action->setToAction(added);
    if (next)
        next->replaceFromAction(action, added);
    else
        rootAction_ = added;
}

bool Manipulation::removeAction(ManipulationAction *action)
{
    if (!actions_.contains(action))
        return false;
    const bool isRoot = action == rootAction_;
    if ((action->toAction() || isRoot) && !hasInput(action))
        return false;
    if (sharedRows.contains(action->actionRecord().id()))
        return false;

    ManipulationAction *replacement = action->removeFromManipulationNoRec();
    actionRemoved(action);
    if (isRoot)
        rootAction_ = replacement;
    return true;
}

void Manipulation::actionRemoved(ManipulationAction *action)
{
    actions_.removeOne(action);
    data.removeReference(action);
}

// --- The whole ---

QList<Morphology *> Manipulation::calcMorphologiesList() const
{
    return ManipulationAction::morphologiesOf(rootAction_);
}

bool Manipulation::operator==(const Manipulation &other) const
{
    return name_ == other.name_ && actions_.size() == other.actions_.size() &&
           ManipulationAction::areEqual(rootAction_, other.rootAction_);
}

int Manipulation::submit(DB *db)
{
    const QScopedValueRollback guard(isSubmitting, true);
    return data.submit(db, ManipulationAction::present({{"RootAction", rootAction_}}),
                       DBElementData::Values{{"Name", name_}});
}

bool Manipulation::erase()
{
    // The form with a list, though there is none, for its transaction: a tree is erased as a whole.
    return data.erase({rootAction_}, QList<DBElement *>());
}

} // namespace Planaria
