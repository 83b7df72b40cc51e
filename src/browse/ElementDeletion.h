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

/// Calls @p deleteOne for each of @p ids in their order, in one transaction. What is not deleted
/// for a reason of its own does not keep the others; a statement that fails takes back all before
/// it. The time grows with what is deleted, not with the size of the file for each element.
/// @param deleteOne loads the element, and erases it unless it is in use; it keeps no query open
/// @return whether the transaction was committed
bool deleteElements(DB *db, const QList<int> &ids, const std::function<void(int id)> &deleteOne);

} // namespace ElementDeletion

} // namespace Planaria
