#include "model/MorphologyAction.h"

#include "db/ExperimentFactory.h"
#include "model/Morphology.h"

namespace Planaria {

MorphologyAction::MorphologyAction(Morphology *newMorphology, Manipulation *manipulation)
    : ManipulationAction(nullptr, manipulation), morphology_(newMorphology),
      data(table(Kind::Morphology))
{
}

MorphologyAction::MorphologyAction(Manipulation *manipulation, DB *db)
    : ManipulationAction(nullptr, manipulation),
      morphology_(ExperimentFactory::instance(nullptr)->loadStoredDefaultMorphology(db)),
      data(table(Kind::Morphology))
{
}

MorphologyAction::MorphologyAction(ManipulationAction *toAction, Manipulation *manipulation,
                                   int ownRowId, int actionRowId, DB *db)
    : ManipulationAction(toAction, manipulation, actionRowId, db),
      data(table(Kind::Morphology), ownRowId, db)
{
    load(db);
}

MorphologyAction::MorphologyAction(const MorphologyAction &other, ManipulationAction *toAction,
                                   Manipulation *manipulation, bool keepIds)
    : ManipulationAction(other, toAction, manipulation, keepIds), data(other.data, keepIds)
{
    if (other.morphology_)
        morphology_ = std::make_unique<Morphology>(*other.morphology_, true);
}

MorphologyAction::~MorphologyAction() = default;

void MorphologyAction::load(DB *db)
{
    const int morphologyId = rowId(data.loadValue(1));
    morphology_ = morphologyId > 0 ? std::make_unique<Morphology>(morphologyId, db, false)
                                   : std::make_unique<Morphology>();
    data.loadFinished();
}

void MorphologyAction::setMorphology(Morphology *morphology)
{
    morphology_.reset(morphology);
}

// --- The tree ---

ManipulationAction *MorphologyAction::copy(Manipulation *manipulation, ManipulationAction *toAction,
                                           bool keepIds) const
{
    return new MorphologyAction(*this, toAction, manipulation, keepIds);
}

void MorphologyAction::replaceFromAction(ManipulationAction * /*oldFrom*/,
                                         ManipulationAction * /*newFrom*/)
{
}

ManipulationAction *MorphologyAction::removeFromManipulationNoRec()
{
    if (manipulation())
        bypass(nullptr);
    return nullptr;
}

QList<Morphology *> MorphologyAction::calcMorphologiesList() const
{
    return morphology_ ? QList{morphology_.get()} : QList<Morphology *>();
}

void MorphologyAction::accept(Visitor *visitor)
{
    visitor->visit(this);
}

bool MorphologyAction::operator==(const ManipulationAction &other) const
{
    const auto *leaf = dynamic_cast<const MorphologyAction *>(&other);
    if (!leaf || !morphology_ || !leaf->morphology_)
        return leaf && morphology_ == leaf->morphology_;
    return morphology_->name() == leaf->morphology_->name();
}

// --- The rows ---

int MorphologyAction::submit(DB *db)
{
    // One without a name is not there: what stands in the file in its place is left alone.
    const bool isThere = morphology_ && !morphology_->name().isNull();
    DBElementData::Values row;
    if (!submitInputs(db, {{"Morphology", isThere ? morphology_.get() : nullptr}}, &row))
        return 0;
    return ManipulationAction::submit(db, Kind::Morphology, data.submit(db, row));
}

bool MorphologyAction::erase()
{
    return ManipulationAction::erase() && data.erase();
}

} // namespace Planaria
