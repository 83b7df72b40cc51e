#pragma once

#include "db/DB.h"

#include <QByteArray>
#include <QStringList>
#include <QTemporaryDir>

namespace Planaria {

/// A library in a file of its own, to be broken and then opened. It holds two worms: "Damaged",
/// row 1, a wild type (regions 1 to 3, links 1 and 2) with a loose piece (region 4) and a picture,
/// and "Sound", row 2, a wild type.
class DamagedLibrary final
{
public:
    DamagedLibrary();

    /// Statements that take NOT NULL off all columns, for damage() to begin with.
    static QStringList allowNulls();

    /// Executes @p statements beside the program, with neither foreign keys nor checks; ends it by
    /// qFatal where one fails.
    void damage(const QStringList &statements);

    /// Opens the library and takes its vocabulary.
    void open();

    DB *db() { return &database; }
    [[nodiscard]] QString fileName() const
    {
        return folder.filePath(QStringLiteral("damaged.edb"));
    }
    [[nodiscard]] QByteArray bytes() const;
    void setBytes(const QByteArray &bytes);

    /// Everything that SQLite finds wrong with the open file, and each half of an organ without the
    /// other, each in a line.
    QStringList faults();
    static QStringList noFaults() { return {"ok"}; }
    /// Those that are not among @p known ones.
    QStringList faultsBeside(const QStringList &known);
    /// Whether a write was left unfinished.
    bool isInTransaction();

private:
    QTemporaryDir folder;
    DB database;
};

} // namespace Planaria
