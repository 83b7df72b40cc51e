#pragma once

#include "browse/SearchStatement.h"
#include "db/DB.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace Planaria {

/// The answers of the search in their plain form, to compare with: everything is read, and compared
/// in memory. It knows nothing of action trees.
class PlainSearch final
{
public:
    explicit PlainSearch(DB *database);

    static bool isAboutActionTrees(const SearchQuestion &question);
    /// The rows, each "id | name | ...", in no order.
    [[nodiscard]] QStringList rows(const SearchQuestion &question) const;

private:
    /// An element that takes part in an experiment.
    struct Part
    {
        int type = 0;
        int id = 0;
        QVariant name;
        QVariant year;
        int experiment = 0;
    };
    /// An element, and a value that is compared.
    struct Match
    {
        int id = 0;
        QString name;
        QVariant value;
        QString more; // of the row, behind the value
    };

    [[nodiscard]] QList<Match> ownMatches(int type, const QString &field) const;
    [[nodiscard]] QList<Match> counts(const QString &field) const;
    [[nodiscard]] QList<Match> matches(int type, const QString &field) const;

    DB *db;
    QList<Part> parts;
};

} // namespace Planaria
