#pragma once

#include "db/DBElementData.h"

#include <QString>

namespace Planaria {

/// A word of a vocabulary that users extend: a row with a name.
/// @tparam Element the concrete class, whose `table` says where it is stored
template <typename Element> class NamedElement : public DBElement
{
public:
    NamedElement() : data(Element::table) {}

    NamedElement(int id, DB *db) : data(Element::table, id, db)
    {
        name_ = data.loadValue(1).toString();
        data.loadFinished();
    }

    /// With @p keepIds of the same row, without a new element.
    NamedElement(const NamedElement &other, bool keepIds)
        : name_(other.name_), data(other.data, keepIds)
    {
    }

    NamedElement(const NamedElement &) = delete;
    /// Replaces content and identity.
    NamedElement &operator=(const NamedElement &other) = default;
    /// Replaces the content and keeps the identity.
    void copy(const NamedElement &other) { name_ = other.name_; }
    /// Replaces content and identity by those of a stored element, which a submit to @p db leaves
    /// as it is.
    void referTo(int id, DB *db)
    {
        data.referTo(id, db);
        name_ = data.loadValue(1).toString();
        data.loadFinished();
    }

    [[nodiscard]] const QString &name() const { return name_; }
    void setName(const QString &name) { name_ = name; }
    [[nodiscard]] const DBElementData &record() const { return data; }

    bool operator==(const NamedElement &other) const { return name_ == other.name_; }

    [[nodiscard]] int id() const final { return data.id(); }
    int submit(DB *db) final { return data.submit(db, DBElementData::Values{{"Name", name_}}); }
    bool erase() final { return data.erase(); }

private:
    QString name_;
    DBElementData data;
};

} // namespace Planaria
