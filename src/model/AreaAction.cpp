#include "model/AreaAction.h"

#include "model/Children.h"

namespace Planaria {

AreaAction::AreaAction(const Traits &ownTraits, ManipulationAction *from,
                       ManipulationAction *toAction, Manipulation *manipulation)
    : ManipulationAction(toAction, manipulation), traits(ownTraits), fromAction_(from),
      data(table(ownTraits.kind))
{
}

AreaAction::AreaAction(const Traits &ownTraits, ManipulationAction *toAction,
                       Manipulation *manipulation, int ownRowId, int actionRowId, DB *db)
    : ManipulationAction(toAction, manipulation, actionRowId, db), traits(ownTraits),
      data(table(ownTraits.kind), ownRowId, db)
{
    load();
}

AreaAction::AreaAction(const AreaAction &other, ManipulationAction *toAction,
                       Manipulation *manipulation, bool keepIds)
    : ManipulationAction(other, toAction, manipulation, keepIds), traits(other.traits),
      data(other.data, keepIds)
{
    fromAction_ = copyAction(other.fromAction_, manipulation, this, keepIds);
    for (const ActionAreaPoint *point : other.area_)
        area_.append(new ActionAreaPoint(*point, this, keepIds));
}

AreaAction::~AreaAction()
{
    qDeleteAll(area_);
}

void AreaAction::load()
{
    fromAction_ = loadAction(rowId(data.loadValue(1)));
    data.loadReferences(traits.pointsTable, "PointInd");
    while (data.nextReference())
        area_.append(new ActionAreaPoint(tables(), this, data));
    renumberPoints(0); // a damaged file may have gaps
    data.loadFinished();
}

ActionAreaPoint::Tables AreaAction::tables() const
{
    return {traits.pointsTable, table(traits.kind)};
}

// --- The area ---

QVector<QPointF> AreaAction::calcAreaVector() const
{
    QVector<QPointF> points;
    for (const ActionAreaPoint *point : area_)
        points.append(point->point());
    return points;
}

ActionAreaPoint *AreaAction::addAreaPoint(const QPointF &point, int index)
{
    const qsizetype position = index < 0 ? area_.size() : index;
    auto *added = new ActionAreaPoint(tables(), this, static_cast<int>(position), point);
    area_.insert(position, added);
    renumberPoints(position + 1);
    return added;
}

void AreaAction::setAreaPoint(int index, const QPointF &point)
{
    area_.at(index)->setPoint(point);
}

void AreaAction::removeAreaPoint(int index)
{
    data.removeReference(area_.takeAt(index));
    renumberPoints(index);
}

void AreaAction::renumberPoints(qsizetype from)
{
    for (qsizetype position = from; position < area_.size(); ++position)
        area_.at(position)->setPointInd(static_cast<int>(position));
}

// --- The tree ---

void AreaAction::replaceFromAction(ManipulationAction * /*oldFrom*/, ManipulationAction *newFrom)
{
    fromAction_ = newFrom;
}

ManipulationAction *AreaAction::removeFromManipulationNoRec()
{
    if (!manipulation())
        return fromAction_;
    bypass(fromAction_);
    return std::exchange(fromAction_, nullptr);
}

void AreaAction::removeFromManipulationRec()
{
    ManipulationAction::removeFromManipulationRec();
    removeActionFromManipulationRec(std::exchange(fromAction_, nullptr));
}

QList<Morphology *> AreaAction::calcMorphologiesList() const
{
    return morphologiesOf(fromAction_);
}

bool AreaAction::operator==(const ManipulationAction &other) const
{
    const auto *area = dynamic_cast<const AreaAction *>(&other);
    return area && area->traits.kind == traits.kind && areEqual(fromAction_, area->fromAction_) &&
           haveEqualChildren(area_, area->area_);
}

// --- The rows ---

int AreaAction::submit(DB *db)
{
    DBElementData::Values row;
    if (!submitInputs(db, {{"FromAction", fromAction_}}, &row))
        return 0;
    return ManipulationAction::submit(db, traits.kind, data.submit(db, {}, {}, row, area_));
}

bool AreaAction::erase()
{
    return ManipulationAction::erase() && data.erase({fromAction_}, area_);
}

} // namespace Planaria
