#pragma once

#include <QString>

class QLineEdit;

namespace Planaria {

class DB;

/// What a form asks of a name before its element may be stored, and what it says otherwise.
struct NameCheck
{
    struct Warning
    {
        QString title;
        QString text;
    };

    QString table;
    QString column;
    Warning empty;
    Warning taken;

    /// Whether the name in @p edit may be stored in @p db. Otherwise warns, and leads back to
    /// @p edit.
    /// @param ownName the name under which the element is stored, which it may keep; empty for a
    ///                new element
    [[nodiscard]] bool passes(QLineEdit *edit, const QString &ownName, DB *db) const;
};

} // namespace Planaria
