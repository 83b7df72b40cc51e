#pragma once

#include "db/DB.h"

#include <QMap>
#include <QString>
#include <QTemporaryDir>
#include <QVariant>

namespace Planaria {

/// An `.edb` file in a folder of its own that goes with the object: with tables and vocabulary, but
/// no elements, unless it is told otherwise. The registry holds its vocabulary.
class TemporaryLibrary final
{
public:
    TemporaryLibrary();
    /// A copy of the file @p testDataName of tests/data, with all that it holds.
    explicit TemporaryLibrary(const QString &testDataName);

    DB *db() { return &database; }
    [[nodiscard]] QString fileName() const
    {
        return folder.filePath(QStringLiteral("library.edb"));
    }
    /// A name in the same folder.
    [[nodiscard]] QString filePath(const QString &name) const { return folder.filePath(name); }

    /// Executes one statement; fails the test by qFatal where it cannot.
    void run(const QString &sql);
    /// The first column of the first row; null without a row.
    QVariant value(const QString &sql);
    int count(const QString &table) { return database.getNumRows(table); }
    /// The number of rows of each table.
    QMap<QString, int> counts();

    /// What `PRAGMA foreign_key_check` finds, one row a text; empty in a sound file.
    QStringList brokenReferences();

private:
    QTemporaryDir folder;
    DB database;
};

} // namespace Planaria
