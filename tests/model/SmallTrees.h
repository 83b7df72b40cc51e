#pragma once

#include "model/Morphology.h"

#include <QString>

#include <memory>

/// What trees of actions are made of where the bodies of the worms do not matter.
namespace Planaria {

inline std::unique_ptr<Morphology> named(const QString &name)
{
    auto worm = std::make_unique<Morphology>();
    worm->setName(name);
    return worm;
}

/// The line of manipulationLines() for a new join.
inline QString joinLine()
{
    return QStringLiteral("join by (0, 0) turned 0");
}

} // namespace Planaria
