#include "model/JoinAction.h"

#include "model/Tolerance.h"

namespace Planaria {

JoinAction::JoinAction(ManipulationAction *from1, ManipulationAction *from2,
                       ManipulationAction *toAction, Manipulation *manipulation)
    : ManipulationAction(toAction, manipulation), fromAction1_(from1), fromAction2_(from2),
      data(table(Kind::Join))
{
}

JoinAction::JoinAction(ManipulationAction *toAction, Manipulation *manipulation, int ownRowId,
                       int actionRowId, DB *db)
    : ManipulationAction(toAction, manipulation, actionRowId, db),
      data(table(Kind::Join), ownRowId, db)
{
    load();
}

JoinAction::JoinAction(const JoinAction &other, ManipulationAction *toAction,
                       Manipulation *manipulation, bool keepIds)
    : ManipulationAction(other, toAction, manipulation, keepIds), vectX_(other.vectX_),
      vectY_(other.vectY_), rot_(other.rot_), data(other.data, keepIds)
{
    fromAction1_ = copyAction(other.fromAction1_, manipulation, this, keepIds);
    fromAction2_ = copyAction(other.fromAction2_, manipulation, this, keepIds);
}

void JoinAction::load()
{
    fromAction1_ = loadAction(rowId(data.loadValue(1)));
    fromAction2_ = loadAction(rowId(data.loadValue(2)));
    vectX_ = data.loadValue(3).toDouble();
    vectY_ = data.loadValue(4).toDouble();
    rot_ = data.loadValue(5).toDouble();
    data.loadFinished();
}

// --- The tree ---

ManipulationAction *JoinAction::copy(Manipulation *manipulation, ManipulationAction *toAction,
                                     bool keepIds) const
{
    return new JoinAction(*this, toAction, manipulation, keepIds);
}

void JoinAction::replaceFromAction(ManipulationAction *oldFrom, ManipulationAction *newFrom)
{
    if (fromAction1_ == oldFrom)
        fromAction1_ = newFrom;
    else
        fromAction2_ = newFrom;
}

ManipulationAction *JoinAction::removeFromManipulationNoRec()
{
    if (!manipulation())
        return fromAction1_;
    if (!fromAction1_)
        std::swap(fromAction1_, fromAction2_); // a damaged file: what is left takes the place
    bypass(fromAction1_);
    removeActionFromManipulationRec(std::exchange(fromAction2_, nullptr));
    return std::exchange(fromAction1_, nullptr);
}

void JoinAction::removeFromManipulationRec()
{
    ManipulationAction::removeFromManipulationRec();
    removeActionFromManipulationRec(std::exchange(fromAction1_, nullptr));
    removeActionFromManipulationRec(std::exchange(fromAction2_, nullptr));
}

QList<Morphology *> JoinAction::calcMorphologiesList() const
{
    return morphologiesOf(fromAction1_) + morphologiesOf(fromAction2_);
}

void JoinAction::accept(Visitor *visitor)
{
    visitor->visit(this);
}

bool JoinAction::operator==(const ManipulationAction &other) const
{
    const auto *join = dynamic_cast<const JoinAction *>(&other);
    return join && areEqual(fromAction1_, join->fromAction1_) &&
           areEqual(fromAction2_, join->fromAction2_) && areClose(vectX_, join->vectX_) &&
           areClose(vectY_, join->vectY_) && rot_ == join->rot_;
}

// --- The rows ---

int JoinAction::submit(DB *db)
{
    DBElementData::Values row{{"VectX", vectX_}, {"VectY", vectY_}, {"Rot", rot_}};
    if (!submitInputs(db, {{"FromAction1", fromAction1_}, {"FromAction2", fromAction2_}}, &row))
        return 0;
    return ManipulationAction::submit(db, Kind::Join, data.submit(db, row));
}

bool JoinAction::erase()
{
    return ManipulationAction::erase() && data.erase({fromAction1_, fromAction2_});
}

} // namespace Planaria
