#pragma once

#include <QStringList>

namespace Planaria {

class Morphology;
class TemporaryLibrary;

enum class Ids { Without, With };

/// All fields of a worm and its members as text, one object a line, numbers to their last digit.
/// Equal lists mean equal worms, also where operator== is coarser or finer.
QStringList wormLines(const Morphology &worm, Ids ids);

/// The numbers of rows, table by table, that these worms ask for; tables without rows are left out.
QStringList rowsOf(const QList<const Morphology *> &worms);

/// The same for all tables of a file but the vocabulary.
QStringList rowsIn(TemporaryLibrary *library);

/// All rows of a statement, their values parted by blanks.
QStringList rows(TemporaryLibrary *library, const QString &sql);

} // namespace Planaria
