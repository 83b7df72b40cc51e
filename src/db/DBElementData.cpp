#include "db/DBElementData.h"

#include "db/DB.h"
#include "main/Log.h"

namespace Planaria {

DBElementData::DBElementData(const char *table) : tableName(table) {}

DBElementData::DBElementData(const char *table, int id, DB *db) : tableName(table), id_(id), db_(db)
{
}

DBElementData::DBElementData(const char *table, const DBElementData &parent)
    : tableName(table), id_(rowId(parent.loadRefValue(0))), db_(parent.db_), query(parent.refQuery)
{
}

DBElementData::DBElementData(const DBElementData &other, bool keepIds)
    : tableName(other.tableName), id_(keepIds ? other.id_ : 0), db_(other.db_),
      isReference(keepIds && other.isReference)
{
}

DBElementData &DBElementData::operator=(const DBElementData &other)
{
    if (this != &other) {
        loadFinished();
        id_ = other.id_;
        db_ = other.db_;
        isReference = other.isReference;
    }
    return *this;
}

DBElementData::~DBElementData()
{
    deleteRemovedReferences();
}

void DBElementData::referTo(int id, DB *db)
{
    loadFinished();
    id_ = id;
    db_ = db;
    isReference = true;
}

// --- Loading ---

QVariant DBElementData::loadValue(int column)
{
    if (id_ == 0)
        return {};
    if (!query) {
        query = db_->rowCursor(QLatin1String(tableName), id_);
        query->next();
    }
    return query->value(column);
}

void DBElementData::loadReferences(const QString &table)
{
    refQuery = db_->childCursor(table, QLatin1String(tableName), id_);
}

void DBElementData::loadReferences(const QString &table, const QString &orderBy)
{
    refQuery = db_->childCursor(table, QLatin1String(tableName), id_, orderBy);
}

void DBElementData::loadReferences(const QString &table, const QString &column,
                                   const QString &joinTable)
{
    refQuery = db_->joinCursor(table, column, joinTable, QLatin1String(tableName), id_);
}

void DBElementData::loadReferencesIndirect(const QString &table, const QString &linkTable,
                                           const QString &joinTable)
{
    refQuery = db_->indirectCursor(table, linkTable, joinTable, QLatin1String(tableName), id_);
}

bool DBElementData::nextReference()
{
    // A row whose id no element can hold is passed over: its element would be written to another
    // row, or once more.
    while (refQuery && refQuery->next()) {
        if (rowId(refQuery->value(0)) > 0)
            return true;
    }
    return false;
}

QVariant DBElementData::loadRefValue(int column) const
{
    return refQuery ? refQuery->value(column) : QVariant();
}

void DBElementData::loadExtElement(const QString &table, int id)
{
    extQuery = db_->rowCursor(table, id);
    extQuery->next();
}

QVariant DBElementData::loadExtValue(int column) const
{
    return extQuery ? extQuery->value(column) : QVariant();
}

void DBElementData::loadFinished()
{
    query.reset();
    refQuery.reset();
    extQuery.reset();
}

// --- Writing ---

int DBElementData::submit(DB *db, const Values &values)
{
    return submit(db, Parent(), References(), values);
}

int DBElementData::submit(DB *db, const Parent &parent, const Values &values)
{
    return submit(db, parent, References(), values);
}

int DBElementData::submit(DB *db, const References &references, const Values &values)
{
    return submit(db, Parent(), references, values);
}

bool DBElementData::startSubmit(DB *db)
{
    if (db != db_) {
        db_ = db;
        id_ = 0;
    }
    db_->beginTransaction();
    return eraseRemovedReferences();
}

void DBElementData::endSubmit(bool ok)
{
    const QString message = QStringLiteral("DBElementData:endSubmit: error: ");
    if (!ok) {
        logError(message);
        db_->rollbackTransaction();
    } else if (db_->inTransaction() && !db_->endTransaction()) {
        logError(message); // the commit itself failed, and nothing of the tree is in the file
    }
}

bool DBElementData::submit(const Values &values)
{
    const QString table = QLatin1String(tableName);
    if (id_ >= 1)
        return db_->updateRow(table, id_, values);
    id_ = db_->insertRow(table, values, false);
    return id_ > 0;
}

bool DBElementData::submit(const Parent &parent, const References &references, const Values &values)
{
    Values row = values;
    if (!parent.first.isEmpty())
        row.insert(parent.first, parent.second->id());
    for (auto reference = references.cbegin(); reference != references.cend(); ++reference)
        row.insert(reference.key(), reference.value()->submit(db_));
    return submit(row);
}

// --- Erasing ---

bool DBElementData::erase()
{
    const bool ok = eraseRemovedReferences();
    return eraseElement() && ok;
}

bool DBElementData::erase(const QList<DBElement *> &after)
{
    const bool ok = erase();
    return eraseMembers(after) && ok;
}

void DBElementData::startErase()
{
    if (db_)
        db_->beginTransaction();
}

void DBElementData::endErase(bool ok)
{
    if (!db_)
        return;
    const QString message = QStringLiteral("DBElementData:endErase: error");
    if (!ok) {
        logError(message);
        db_->rollbackTransaction();
    } else if (db_->inTransaction() && !db_->endTransaction()) {
        logError(message);
    }
}

bool DBElementData::eraseElement()
{
    if (id_ < 1)
        return true;
    const int id = std::exchange(id_, 0);
    return db_->removeRow(QLatin1String(tableName), id);
}

bool DBElementData::eraseMembers(const QList<DBElement *> &elements)
{
    bool ok = true;
    for (DBElement *element : elements) {
        if (element)
            ok &= element->erase();
    }
    return ok;
}

bool DBElementData::eraseRemovedReferences()
{
    bool ok = true;
    for (DBElement *element : std::exchange(removedReferences_, {})) {
        ok &= element->erase();
        delete element;
    }
    return ok;
}

// --- Removing ---

void DBElementData::removeReference(DBElement *element)
{
    removedReferences_.append(element);
}

void DBElementData::deleteRemovedReferences()
{
    qDeleteAll(removedReferences_);
    removedReferences_.clear();
}

void DBElementData::logError(const QString &message) const
{
    *Log::write() << message << db_->lastError() << Qt::endl;
}

} // namespace Planaria
