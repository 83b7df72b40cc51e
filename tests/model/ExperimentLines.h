#pragma once

#include "model/WormLines.h"

namespace Planaria {

class Experiment;

/// All fields of an experiment, its treatments and its results as text, one object a line, numbers
/// to their last digit. Of what it refers to, the names; with ids, also their rows.
QStringList experimentLines(const Experiment &experiment, Ids ids);

/// The first line in which the two differ, with ids; empty where there is none.
QString firstDifference(const Experiment &actual, const Experiment &expected);

/// The numbers of rows, table by table, that these experiments ask for, without those of what they
/// refer to; tables without rows are left out.
QStringList experimentRowsOf(const QList<const Experiment *> &experiments);

/// The same for the tables of a file.
QStringList experimentRowsIn(TemporaryLibrary *library);

} // namespace Planaria
