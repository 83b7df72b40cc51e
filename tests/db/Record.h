#pragma once

#include "db/DBElementData.h"

#include <array>

namespace Planaria {

/// An element on any table, put together by its test. It owns its references and children, which
/// stand in up to three lists and name it by a column called as its table.
class Record final : public DBElement
{
public:
    explicit Record(const char *tableName, const DBElementData::Values &rowValues = {});
    /// Of a stored row. Nothing is read.
    Record(const char *tableName, int id, DB *db, DBElementData::Values rowValues = {});
    ~Record() override;

    Record(const Record &) = delete;
    Record &operator=(const Record &) = delete;

    /// Takes ownership, and returns @p record.
    Record *refer(const QString &column, Record *record);
    /// Takes ownership, and returns @p child.
    Record *add(Record *child, int list = 0);
    /// Queues a child of list 0.
    void remove(Record *child);

    [[nodiscard]] int id() const override { return data.id(); }
    int submit(DB *db) override;
    bool erase() override;

    /// The records that exist at the moment.
    static int alive() { return count; }

    const char *table;
    DBElementData data;
    DBElementData::Values values;
    DBElementData::Parent parent;
    DBElementData::References references;
    std::array<QList<Record *>, 3> children;

private:
    inline static int count = 0;
};

} // namespace Planaria
