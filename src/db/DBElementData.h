#pragma once

#include "db/DBElement.h"
#include "db/RowCursor.h"

#include <QHash>
#include <QList>
#include <QPair>
#include <QString>
#include <QVariant>

#include <memory>

namespace Planaria {

class DB;

/// What every element needs to load, write and erase itself; each holds one as a member.
///
/// An element class says which of its values, references and child lists go where; the order of
/// writing, the transaction, the queue of removed children, rollback and log are done here.
///
/// Writing: values by column name; references are elements that are written first and whose ids go
/// into the row; the parent, written already, gives its id; children are written after the row.
/// The whole tree is one transaction. A failure does not stop what follows in the tree: it is
/// logged and rolls the whole back.
class DBElementData
{
public:
    using Values = QHash<QString, QVariant>;
    using References = QHash<QString, DBElement *>;
    /// Column name and element; an empty column name means no parent.
    using Parent = QPair<QString, DBElement *>;

    /// Of a new element. @param table a string constant
    explicit DBElementData(const char *table);
    /// Of a stored element, read at the first loadValue().
    DBElementData(const char *table, int id, DB *db);
    /// Of a child at the current row of the references of @p parent. It must read all its columns
    /// before the parent steps on.
    DBElementData(const char *table, const DBElementData &parent);
    /// Of a copy: of the same row with @p keepIds, of a new element without.
    DBElementData(const DBElementData &other, bool keepIds);

    DBElementData(const DBElementData &) = delete;
    /// Takes over row and file; the table and the queue of removed children stay.
    virtual DBElementData &operator=(const DBElementData &other);

    /// Deletes the queued children, and leaves their rows in the file.
    virtual ~DBElementData();

    [[nodiscard]] int id() const { return id_; }
    /// The file that the element belongs to; null for one that never saw a file.
    [[nodiscard]] DB *db() const { return db_; }
    /// Stands for the row @p id of @p db from now on: a submit there writes nothing, neither values
    /// nor children. For an element that others refer to, and that stays as it is in the file.
    void referTo(int id, DB *db);

    /// Whether a submit to @p db finds a row to update.
    bool isStoredIn(const DB *db) const { return id_ >= 1 && db_ == db; }
    /// Children that were taken out of the element and wait to be erased at its next submit.
    [[nodiscard]] const QList<DBElement *> &removedReferences() const { return removedReferences_; }

    // --- Loading ---

    /// A column of the own row; null for a new element.
    QVariant loadValue(int column);

    /// Puts the cursor before the rows of @p table that belong to this element by the column named
    /// as its table.
    void loadReferences(const QString &table);
    void loadReferences(const QString &table, const QString &orderBy);
    /// The same for rows whose @p column names a row of @p joinTable that belongs to this element.
    void loadReferences(const QString &table, const QString &column, const QString &joinTable);
    /// The same for rows that @p linkTable joins with rows of @p joinTable that belong to this
    /// element.
    void loadReferencesIndirect(const QString &table, const QString &linkTable,
                                const QString &joinTable);
    bool nextReference();
    [[nodiscard]] QVariant loadRefValue(int column) const;

    /// Reads the row of another table.
    void loadExtElement(const QString &table, int id);
    [[nodiscard]] QVariant loadExtValue(int column) const;

    /// Lets go of all cursors; the end of every load.
    void loadFinished();

    // --- Writing ---

    int submit(DB *db, const Values &values);
    int submit(DB *db, const Parent &parent, const Values &values);
    int submit(DB *db, const References &references, const Values &values);

    /// With the child lists in the order in which they are written.
    template <typename... Child>
    int submit(DB *db, const Parent &parent, const References &references, const Values &values,
               const QList<Child *> &...children)
    {
        if (isReference)
            return db == db_ ? id_ : 0;
        bool ok = startSubmit(db);
        ok &= submit(parent, references, values);
        (submitChildren(children, &ok), ...);
        endSubmit(ok);
        return id_;
    }

    // --- Erasing ---

    /// The removed children and the own row, in no transaction of its own.
    virtual bool erase();
    /// The same, then each of @p after.
    bool erase(const QList<DBElement *> &after);
    /// In one transaction: removed children, the child lists in their order, the own row, and then
    /// @p after, to which the own row refers.
    template <typename... Child>
    requires(sizeof...(Child) > 0) bool erase(const QList<DBElement *> &after,
                                              const QList<Child *> &...children)
    {
        startErase();
        bool ok = eraseRemovedReferences();
        (eraseChildren(children, &ok), ...);
        ok &= eraseElement();
        ok &= eraseMembers(after);
        endErase(ok);
        return ok;
    }

    // --- Removing ---

    /// Queues a child that its parent has taken out of its list. Takes ownership.
    void removeReference(DBElement *element);
    /// Deletes the queued objects, and leaves their rows in the file.
    void deleteRemovedReferences();

private:
    bool startSubmit(DB *db);
    void endSubmit(bool ok);
    bool submit(const Values &values);
    bool submit(const Parent &parent, const References &references, const Values &values);

    void startErase();
    void endErase(bool ok);
    bool eraseElement();
    static bool eraseMembers(const QList<DBElement *> &elements);
    bool eraseRemovedReferences();

    template <typename Child> void submitChildren(const QList<Child *> &children, bool *ok)
    {
        for (Child *child : children)
            *ok &= child->submit(db_) > 0;
    }

    template <typename Child> static void eraseChildren(const QList<Child *> &children, bool *ok)
    {
        for (Child *child : children)
            *ok &= child->erase();
    }

    void logError(const QString &message) const;

    const char *tableName;
    int id_ = 0;
    DB *db_ = nullptr;
    bool isReference = false;

    // Alive only while loading. A child shares its parent's refQuery as its own query.
    std::shared_ptr<RowCursor> query;
    std::shared_ptr<RowCursor> refQuery;
    std::shared_ptr<RowCursor> extQuery;

    QList<DBElement *> removedReferences_;
};

} // namespace Planaria
