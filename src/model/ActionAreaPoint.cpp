#include "model/ActionAreaPoint.h"

#include "model/ManipulationAction.h"
#include "model/Tolerance.h"

namespace Planaria {

ActionAreaPoint::ActionAreaPoint(const Tables &tables, ManipulationAction *owner, int index,
                                 const QPointF &point)
    : ownerColumn(tables.ownerColumn), action(owner), pointInd_(index), x_(point.x()),
      y_(point.y()), data(tables.points)
{
}

ActionAreaPoint::ActionAreaPoint(const ActionAreaPoint &other, ManipulationAction *owner,
                                 bool keepIds)
    : ownerColumn(other.ownerColumn), action(owner), pointInd_(other.pointInd_), x_(other.x_),
      y_(other.y_), data(other.data, keepIds)
{
}

ActionAreaPoint::ActionAreaPoint(const Tables &tables, ManipulationAction *owner,
                                 const DBElementData &parentData)
    : ownerColumn(tables.ownerColumn), action(owner), data(tables.points, parentData)
{
    pointInd_ = data.loadValue(2).toInt();
    x_ = data.loadValue(3).toDouble();
    y_ = data.loadValue(4).toDouble();
    data.loadFinished();
}

void ActionAreaPoint::setPoint(const QPointF &point)
{
    x_ = point.x();
    y_ = point.y();
}

bool ActionAreaPoint::operator==(const ActionAreaPoint &other) const
{
    return pointInd_ == other.pointInd_ && areClose(x_, other.x_) && areClose(y_, other.y_);
}

int ActionAreaPoint::submit(DB *db)
{
    if (action->isWriteLost(db))
        return 0;
    return data.submit(
        db, DBElementData::Parent(ownerColumn, action),
        DBElementData::Values{{"PointInd", pointInd_}, {"PointX", x_}, {"PointY", y_}});
}

bool ActionAreaPoint::erase()
{
    return data.erase();
}

} // namespace Planaria
