#pragma once

#include "db/ExperimentFactory.h"
#include "model/Region.h"
#include "model/RegionParam.h"

#include <QList>

/// Short names for what most tests of the model need.
namespace Planaria {

inline RegionType *headType()
{
    return ExperimentFactory::instance(nullptr)->regionType(1);
}

inline RegionType *trunkType()
{
    return ExperimentFactory::instance(nullptr)->regionType(2);
}

inline RegionType *tailType()
{
    return ExperimentFactory::instance(nullptr)->regionType(3);
}

inline SpotOrganType *eyeType()
{
    return ExperimentFactory::instance(nullptr)->spotOrganType(1);
}

inline SpotOrganType *brainType()
{
    return ExperimentFactory::instance(nullptr)->spotOrganType(2);
}

inline LineOrganType *cordType()
{
    return ExperimentFactory::instance(nullptr)->lineOrganType(1);
}

inline QList<double> paramValues(const Region *region)
{
    QList<double> values;
    for (const RegionParam *param : region->params())
        values += param->value();
    return values;
}

inline QList<int> paramIndices(const Region *region)
{
    QList<int> indices;
    for (const RegionParam *param : region->params())
        indices += param->index();
    return indices;
}

/// What @p owner holds back for its next submit, as objects of class @p Member; null for others.
template <typename Member, typename Owner> QList<const Member *> queued(const Owner *owner)
{
    QList<const Member *> members;
    for (const DBElement *element : owner->record().removedReferences())
        members += dynamic_cast<const Member *>(element);
    return members;
}

} // namespace Planaria
