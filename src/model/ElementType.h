#pragma once

#include "db/DBElementData.h"

#include <QString>

namespace Planaria {

/// A word of a fixed vocabulary, the same in every file. It is never written nor erased. The
/// registry owns the words, and whatever uses one points to it.
class ElementType : public DBElement
{
public:
    [[nodiscard]] int id() const final { return data.id(); }
    [[nodiscard]] const QString &name() const { return name_; }

    /// What an element of this type writes into its column `Type`. A word that the file lacks could
    /// only be refused: where it stands in the file already, the column stays as it is.
    DBElementData::References column(const DBElementData &element, const DB *target);

    /// Writes nothing: the words are in the file from its start.
    int submit(DB *db) final;
    /// Deletes nothing.
    bool erase() final;

protected:
    /// A word of no file.
    ElementType(const char *table, int id, QString name);
    /// The word in row @p id of @p table.
    ElementType(const char *table, int id, DB *db);
    /// The same word: it keeps its id.
    ElementType(const ElementType &other);
    ElementType &operator=(const ElementType &other);

private:
    QString name_;
    DBElementData data;
};

} // namespace Planaria
