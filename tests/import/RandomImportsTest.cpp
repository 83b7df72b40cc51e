#include "LibraryJson.h"
#include "LibraryPair.h"
#include "RandomLibraries.h"
#include "support/JsonDifference.h"

#include <QJsonArray>
#include <QMap>
#include <QSet>
#include <QTest>

using namespace Planaria;

using enum ImportKind;
using enum ImportList;

namespace {

using Names = QSet<QString>;
/// Elements by name, for each kind in their order.
using Library = std::array<QMap<QString, QJsonValue>, importKindCount>;

size_t at(ImportKind kind)
{
    return static_cast<size_t>(kind);
}

Library libraryOf(DB *db)
{
    const QJsonObject json = libraryJson(db);
    Library library;
    for (const auto &[kind, key] : allKinds) {
        const QJsonObject elements = elementsByName(json, key);
        for (auto element = elements.begin(); element != elements.end(); ++element)
            library[at(kind)].insert(element.key(), element.value());
    }
    return library;
}

/// The names under @p key anywhere in @p tree, and the first values of the lists in @p list.
void collect(const QJsonValue &tree, const QString &key, Names *names)
{
    const QJsonObject object = tree.toObject();
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        if (entry.key() == key && entry->isString())
            names->insert(entry->toString());
        else
            collect(*entry, key, names);
    }
}

/// What an element of @p kind refers to by name, of kind @p target.
Names references(const QJsonValue &element, ImportKind kind, ImportKind target)
{
    Names names;
    if (kind == Manipulations && target == Morphologies)
        collect(element["root"], "morphology", &names);
    if (kind != Experiments)
        return names;
    const auto addFirst = [&names](const QJsonValue &list) {
        const QJsonArray entries = list.toArray();
        for (const QJsonValue &entry : entries)
            names.insert(entry.isArray() ? entry[0].toString() : entry.toString());
    };
    const QJsonArray sets = element["result_sets"].toArray();
    switch (target) {
    case Manipulations:
        return {element["manipulation"].toString()};
    case ImportKind::Species:
        return {element["species"].toString()};
    case Publications:
        return {element["publication"].toString()};
    case Drugs:
        addFirst(element["drugs"]);
        break;
    case ImportKind::RNAi:
        addFirst(element["rnai"]);
        break;
    case Morphologies:
        for (const QJsonValue &set : sets)
            addFirst(set["results"]);
        break;
    default:
        break;
    }
    return names;
}

/// What the destination has to be after an import, worked out on names alone.
class Expectation final
{
public:
    Expectation(Library sourceLibrary, Library destinationLibrary)
        : source(std::move(sourceLibrary)), library(std::move(destinationLibrary))
    {
    }

    void import(LibraryPair *pair)
    {
        for (const KindKey &kind : allKinds) {
            for (const ImportList list : {Modified, Added}) {
                for (const ImportRow &row : pair->rows(kind.kind, list)) {
                    if (row.checked)
                        take(kind.kind, row.name);
                }
            }
        }
        for (const KindKey &kind : allKinds) {
            for (const ImportRow &row : pair->rows(kind.kind, Deleted)) {
                if (row.checked && !isUsed(kind.kind, row.name))
                    library[at(kind.kind)].remove(row.name);
            }
        }
    }

    [[nodiscard]] const Library &result() const { return library; }

private:
    void take(ImportKind kind, const QString &name)
    {
        QJsonValue element = source[at(kind)][name];
        if (kind == ImportKind::RNAi)
            element = QJsonObject{{"name", name}, {"blocked", QJsonValue()}};
        library[at(kind)][name] = element;
        for (const KindKey &target : allKinds) {
            for (const QString &reference : references(element, kind, target.kind)) {
                if (!library[at(target.kind)].contains(reference))
                    take(target.kind, reference);
            }
        }
    }

    [[nodiscard]] bool isUsed(ImportKind kind, const QString &name) const
    {
        for (const ImportKind user : {Experiments, Manipulations}) {
            for (const QJsonValue &element : library[at(user)]) {
                if (references(element, user, kind).contains(name))
                    return true;
            }
        }
        return false;
    }

    Library source;
    Library library;
};

QString difference(const Library &actual, const Library &expected)
{
    for (const auto &[kind, key] : allKinds) {
        const QStringList names = actual[at(kind)].keys();
        if (names != expected[at(kind)].keys())
            return QStringLiteral("%1: %2 instead of %3")
                .arg(key, names.join(", "), QStringList(expected[at(kind)].keys()).join(", "));
        for (const QString &name : names) {
            const QString found =
                jsonDifference(actual[at(kind)][name], expected[at(kind)][name], name);
            if (!found.isEmpty())
                return found;
        }
    }
    return {};
}

/// Every row of the file that has a name, so that a doubled element shows.
int elementCount(TemporaryLibrary *library)
{
    int count = 0;
    for (const QString table :
         {"Experiment", "Manipulation", "Morphology", "Drug", "RNAi", "Species", "Publication"})
        count += library->count(table);
    return count;
}

int elementCount(const Library &library)
{
    int count = 0;
    for (const auto &elements : library)
        count += static_cast<int>(elements.size());
    return count;
}

void tickAtRandom(LibraryPair *pair, RandomLibraries *random)
{
    pair->tickAll(false);
    for (const KindKey &kind : allKinds) {
        for (const ImportList list : allImportLists) {
            for (ImportRow &row : pair->rows(kind.kind, list))
                row.checked = random->number(2) == 0;
        }
    }
}

QStringList newOrModified(LibraryPair *pair)
{
    QStringList names;
    for (const KindKey &kind : allKinds)
        names += pair->names(kind.kind, Modified) + pair->names(kind.kind, Added);
    return names;
}

} // namespace

/// Random libraries are merged with random ticks, and the outcome is held against what follows from
/// the names.
class RandomImportsTest final : public QObject
{
    Q_OBJECT

private slots:
    void leaveWhatTheTicksAskFor();
};

void RandomImportsTest::leaveWhatTheTicksAskFor()
{
    int imported = 0;
    for (quint32 seed = 1; seed <= 200; ++seed) {
        const QByteArray place = "seed " + QByteArray::number(seed);
        RandomLibraries random(seed);
        LibraryPair pair;
        for (TemporaryLibrary *library : {&pair.source, &pair.destination}) {
            library->run("PRAGMA synchronous = OFF");
            random.fill(library->db());
        }
        const QStringList sourceBefore = dumpOf(pair.source.db());

        pair.compare();
        tickAtRandom(&pair, &random);
        Expectation expected(libraryOf(pair.source.db()), libraryOf(pair.destination.db()));
        expected.import(&pair);
        QVERIFY2(pair.import() == LibraryImporter::Outcome::Done, place);
        const QString found = difference(libraryOf(pair.destination.db()), expected.result());
        QVERIFY2(found.isEmpty(), place + ": " + found.toUtf8());
        QVERIFY2(elementCount(&pair.destination) == elementCount(expected.result()), place);
        QVERIFY2(pair.faults().isEmpty(), place + ": " + pair.faults().join("; ").toUtf8());

        imported += static_cast<int>(newOrModified(&pair).size());
        QVERIFY2(pair.merge() == LibraryImporter::Outcome::Done, place);
        pair.compare();
        QVERIFY2(newOrModified(&pair).isEmpty(), place + newOrModified(&pair).join(", ").toUtf8());
        QVERIFY2(pair.faults().isEmpty(), place);
        QVERIFY2(dumpOf(pair.source.db()) == sourceBefore, place);
    }
    QVERIFY(imported > 1000);
}

QTEST_GUILESS_MAIN(RandomImportsTest)
#include "RandomImportsTest.moc"
