#include "LibraryPair.h"

#include "LibraryJson.h"

#include <algorithm>

namespace Planaria {

void RecordedProgress::start(const QString &label, int newMaximum)
{
    labels = {label};
    maximum = newMaximum;
    rows = 0;
}

void RecordedProgress::setLabel(const QString &label)
{
    labels += label;
}

LibraryPair::LibraryPair() = default;

LibraryPair::LibraryPair(const QString &sourceName, const QString &destinationName)
    : source(sourceName), destination(destinationName)
{
}

void LibraryPair::compare()
{
    importer = std::make_unique<LibraryImporter>(source.db(), destination.db());
    RecordedProgress progress;
    if (!importer->populateElements(progress, [](ImportKind) {}))
        qFatal("the comparison did not come to its end");
}

LibraryImporter::Outcome LibraryPair::import()
{
    RecordedProgress progress;
    return importer->importElements(progress);
}

LibraryImporter::Outcome LibraryPair::merge()
{
    compare();
    return import();
}

std::vector<ImportRow> &LibraryPair::rows(ImportKind kind, ImportList list)
{
    ImportLists &lists = importer->lists(kind);
    if (list == ImportList::Modified)
        return lists.modified;
    return list == ImportList::Added ? lists.added : lists.deleted;
}

QStringList LibraryPair::names(ImportKind kind, ImportList list)
{
    QStringList names;
    for (const ImportRow &row : rows(kind, list))
        names += row.name;
    return names;
}

QStringList LibraryPair::listed()
{
    QStringList all;
    for (const auto &[kind, key] : allKinds) {
        for (const ImportList list : allImportLists) {
            for (const ImportRow &row : rows(kind, list)) {
                const QString listName = list == ImportList::Modified ? "modified"
                                         : list == ImportList::Added  ? "new"
                                                                      : "deleted";
                all += QStringLiteral("%1 %2: %3%4")
                           .arg(key, listName, row.name, row.checked ? ", ticked" : "");
            }
        }
    }
    return all;
}

void LibraryPair::tickAll(bool checked)
{
    for (const KindKey &kind : allKinds) {
        for (const ImportList list : allImportLists) {
            for (ImportRow &row : rows(kind.kind, list))
                row.checked = checked;
        }
    }
}

void LibraryPair::tick(ImportKind kind, ImportList list, const QString &name, bool checked)
{
    std::vector<ImportRow> &all = rows(kind, list);
    const auto row = std::find_if(all.begin(), all.end(),
                                  [&name](const ImportRow &each) { return each.name == name; });
    if (row == all.end())
        qFatal("%s is not listed", qUtf8Printable(name));
    row->checked = checked;
}

QStringList LibraryPair::faults()
{
    QStringList faults = destination.brokenReferences() + strayRows(destination.db());
    const QString integrity = destination.value("PRAGMA integrity_check").toString();
    if (integrity != "ok")
        faults += integrity;
    return faults;
}

} // namespace Planaria
