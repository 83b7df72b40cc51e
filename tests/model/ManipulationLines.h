#pragma once

#include "model/WormLines.h"

namespace Planaria {

class Manipulation;
class ManipulationAction;

/// "remove", "crop", "join", "irradiation", "morphology", or "nothing" for null.
QString kindOf(const ManipulationAction *action);

/// The actions that @p action takes its input from; null where one is missing.
QList<ManipulationAction *> inputsOf(const ManipulationAction *action);

/// All fields of a manipulation and its actions as text, the root first, inputs set in below what
/// consumes them, numbers to their last digit. With ids: of the own row, of the row in
/// `ManipulationAction`, and of the worm.
QStringList manipulationLines(const Manipulation &manipulation, Ids ids);

/// Empty where the two agree in all fields and ids.
QString firstDifference(const Manipulation &actual, const Manipulation &expected);

/// What in the links between the actions, their list and the numbers of their points does not fit;
/// empty for a sound tree.
QStringList brokenLinks(const Manipulation &manipulation);

/// The numbers of rows, table by table, that these manipulations ask for, without those of worms;
/// tables without rows are left out.
QStringList actionRowsOf(const QList<const Manipulation *> &manipulations);

/// The same for the tables of a file.
QStringList actionRowsIn(TemporaryLibrary *library);

} // namespace Planaria
