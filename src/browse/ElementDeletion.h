#pragma once

#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace Planaria {

class DB;

/// The deletion of elements that a user has selected: which of them may go, and all of them in one
/// transaction.
namespace ElementDeletion {

/// Why an element stays, in the words for the user.
struct Refusal
{
    QString title;
    QString text;
};

/// The refusal of the first use that is found; nothing for an element that may be deleted.
/// @param typeIndex as in the search tab
std::optional<Refusal> refusal(DB *db, int typeIndex, int id, const QString &name);

/// What became of one element.
enum class Outcome {
    Done,
    Refused, // it is in use, and keeps none of the others
    Failed   // the file does not let go of it
};

/// Calls @p deleteOne for each of @p ids in their order, in one transaction. After a failure, be it
/// told or seen by the end of the transaction, nothing more is deleted, and all is as before. The
/// time grows with what is deleted, not with the size of the file for each element.
/// @param deleteOne loads the element, and erases it unless it is in use; it keeps no query open
/// @param goOn is asked before each element, and before the commit, with the number of those that
/// were gone through; where it says no, all is as before too
/// @return whether the transaction was committed
bool deleteElements(
    DB *db, const QList<int> &ids, const std::function<Outcome(int id)> &deleteOne,
    const std::function<bool(int done)> &goOn = [](int) { return true; });

} // namespace ElementDeletion

} // namespace Planaria
