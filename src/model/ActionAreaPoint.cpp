#include "model/ActionAreaPoint.h"

#include <cmath>

namespace Planaria {

ActionAreaPoint::ActionAreaPoint(const Tables &tables, DBElement *owner, int index,
                                 const QPointF &point)
    : ownerColumn(tables.ownerColumn), action(owner), pointInd_(index), x_(point.x()),
      y_(point.y()), data(tables.points)
{
}

ActionAreaPoint::ActionAreaPoint(const ActionAreaPoint &other, DBElement *owner, bool keepIds)
    : ownerColumn(other.ownerColumn), action(owner), pointInd_(other.pointInd_), x_(other.x_),
      y_(other.y_), data(other.data, keepIds)
{
}

ActionAreaPoint::ActionAreaPoint(const Tables &tables, DBElement *owner,
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
    constexpr double tolerance = 1e-12;
    return pointInd_ == other.pointInd_ && std::abs(x_ - other.x_) <= tolerance &&
           std::abs(y_ - other.y_) <= tolerance;
}

int ActionAreaPoint::submit(DB *db)
{
    return data.submit(
        db, DBElementData::Parent(ownerColumn, action),
        DBElementData::Values{{"PointInd", pointInd_}, {"PointX", x_}, {"PointY", y_}});
}

bool ActionAreaPoint::erase()
{
    return data.erase();
}

} // namespace Planaria
