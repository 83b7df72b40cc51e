#include "model/ManipulationAction.h"

#include "db/DB.h"
#include "model/Manipulation.h"

namespace Planaria {

namespace {

constexpr auto actionTable = "ManipulationAction";

} // namespace

ManipulationAction::Visitor::~Visitor() = default;

ManipulationAction::ManipulationAction(ManipulationAction *consumer, Manipulation *owner)
    : manipulation_(owner), toAction_(consumer), data(actionTable)
{
    owner->actions_.append(this);
}

ManipulationAction::ManipulationAction(ManipulationAction *consumer, Manipulation *owner,
                                       int actionRowId, DB *db)
    : manipulation_(owner), toAction_(consumer), data(actionTable, actionRowId, db)
{
    owner->actions_.append(this);
}

ManipulationAction::ManipulationAction(const ManipulationAction &other,
                                       ManipulationAction *consumer, Manipulation *owner,
                                       bool keepIds)
    : manipulation_(owner), toAction_(consumer), data(other.data, keepIds)
{
    owner->actions_.append(this);
}

const char *ManipulationAction::table(Kind kind)
{
    switch (kind) {
    case Kind::Morphology:
        return "MorphologyAction";
    case Kind::Remove:
        return "RemoveAction";
    case Kind::Crop:
        return "CropAction";
    case Kind::Join:
        return "JoinAction";
    case Kind::Irradiation:
        return "IrradiationAction";
    }
    return nullptr;
}

// --- The rows ---

int ManipulationAction::submit(DB *db, Kind kind, int ownRowId)
{
    if (ownRowId < 1 || isWriteLost(db))
        return 0;
    DBElementData::Values columns;
    for (const Kind each : allKinds)
        columns.insert(table(each), each == kind ? QVariant(ownRowId) : QVariant());
    return data.submit(db, columns);
}

bool ManipulationAction::isWriteLost(const DB *db) const
{
    return manipulation_ && manipulation_->isSubmitting && !db->inTransaction();
}

bool ManipulationAction::submitInputs(DB *db, const DBElementData::References &inputs,
                                      DBElementData::Values *row) const
{
    if (isWriteLost(db))
        return false;
    const DBElementData::References found = present(inputs);
    for (auto input = found.cbegin(); input != found.cend(); ++input)
        row->insert(input.key(), input.value()->submit(db));
    return !isWriteLost(db);
}

DBElementData::References ManipulationAction::present(const DBElementData::References &references)
{
    DBElementData::References found;
    for (auto reference = references.cbegin(); reference != references.cend(); ++reference) {
        if (reference.value())
            found.insert(reference.key(), reference.value());
    }
    return found;
}

bool ManipulationAction::erase()
{
    return data.erase();
}

ManipulationAction *ManipulationAction::loadAction(int actionRowId)
{
    return manipulation_->loadAction(actionRowId, this);
}

// --- The tree ---

bool ManipulationAction::removeFromManipulation()
{
    return manipulation_ && manipulation_->removeAction(this);
}

void ManipulationAction::removeFromManipulationRec()
{
    toAction_ = nullptr;
    if (manipulation_)
        std::exchange(manipulation_, nullptr)->actionRemoved(this);
}

void ManipulationAction::bypass(ManipulationAction *input)
{
    manipulation_ = nullptr;
    ManipulationAction *consumer = std::exchange(toAction_, nullptr);
    if (input)
        input->toAction_ = consumer;
    replaceActionFromAction(consumer, this, input);
}

ManipulationAction *ManipulationAction::copyAction(const ManipulationAction *action,
                                                   Manipulation *manipulation,
                                                   ManipulationAction *toAction, bool keepIds)
{
    return action ? action->copy(manipulation, toAction, keepIds) : nullptr;
}

void ManipulationAction::replaceActionFromAction(ManipulationAction *action,
                                                 ManipulationAction *oldFrom,
                                                 ManipulationAction *newFrom)
{
    if (action)
        action->replaceFromAction(oldFrom, newFrom);
}

void ManipulationAction::removeActionFromManipulationRec(ManipulationAction *action)
{
    if (action)
        action->removeFromManipulationRec();
}

bool ManipulationAction::areEqual(const ManipulationAction *a, const ManipulationAction *b)
{
    return a && b ? *a == *b : a == b;
}

QList<Morphology *> ManipulationAction::morphologiesOf(const ManipulationAction *action)
{
    return action ? action->calcMorphologiesList() : QList<Morphology *>();
}

} // namespace Planaria
