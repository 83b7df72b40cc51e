#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

namespace Planaria {

/// A source tree and the split of its sources into two libraries. Paths are relative to the tree.
struct SourceSplit
{
    QString folder;
    QString qtWidgetsFolder; // where Qt keeps the headers of its widgets
    QStringList coreSources;
    QStringList uiSources;
};

/// Reads the includes of a source tree and finds those that break its layers:
///  - an include leads within its folder or down (ExperimentFactory.cpp alone may climb, from db
///    to model);
///  - what the core compiles, headers included, knows neither QtWidgets nor a header of the other
///    library;
///  - headers form no circle;
///  - every include of the project's own is written as seen from the top of the tree.
class IncludeCheck final
{
public:
    explicit IncludeCheck(SourceSplit tree);

    /// One line for each broken rule, sorted; empty for a sound tree.
    [[nodiscard]] QStringList violations() const;

    /// All headers and sources of the tree.
    [[nodiscard]] QStringList files() const;

private:
    struct Include
    {
        QString name;   // as written
        QString target; // the file of the tree that it names, or null
        bool quoted;
    };

    void readFile(const QString &file);
    [[nodiscard]] QString targetOf(const QString &file, const QString &name) const;
    [[nodiscard]] QStringList strayIncludes() const;
    [[nodiscard]] QStringList climbingIncludes() const;
    [[nodiscard]] QStringList windowsInCore() const;
    [[nodiscard]] QStringList windowsIncludedBy(const QString &file,
                                                const QSet<QString> &uiHeaders) const;
    [[nodiscard]] QSet<QString> reachableFromCore() const;
    [[nodiscard]] QStringList circles() const;
    [[nodiscard]] QStringList circleThrough(const QString &header) const;
    [[nodiscard]] bool isWidgetsHeader(const QString &name) const;

    SourceSplit split;
    QHash<QString, QList<Include>> includes;
};

} // namespace Planaria
