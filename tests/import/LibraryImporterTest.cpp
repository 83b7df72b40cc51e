#include "LibraryJson.h"
#include "LibraryPair.h"
#include "model/JoinAction.h"
#include "model/MorphologyAction.h"
#include "model/MorphologyImage.h"
#include "model/SmallExperiments.h"

#include <QFile>
#include <QJsonArray>
#include <QTest>

using namespace Planaria;

using enum ImportKind;
using enum ImportList;
using Outcome = LibraryImporter::Outcome;

namespace {

const QByteArray picture("the bytes of a picture");

void store(TemporaryLibrary *library, DBElement *element)
{
    if (element->submit(library->db()) < 1)
        qFatal("cannot store an element");
}

/// Two experiments that share all that they refer to, in both of which "worm C" results.
void fill(TemporaryLibrary *library)
{
    store(library, fullExperiment("first").get());
    library->run("INSERT INTO Experiment SELECT 2, 'second', Manipulation, Publication, Species "
                 "FROM Experiment WHERE Id = 1");
    library->run("INSERT INTO ExperimentDrug VALUES(NULL, 2, 1, 0, 1)");
    library->run("INSERT INTO ResultSet VALUES(NULL, 2, 7, 3.5)");
    library->run("INSERT INTO ResultantMorphology SELECT NULL, MAX(ResultSet.Id), "
                 "(SELECT Id FROM Morphology WHERE Name = 'worm C'), 1 FROM ResultSet");
}

QByteArray bytesOf(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qUtf8Printable(fileName));
    return file.readAll();
}

std::unique_ptr<Morphology> newWormWithPicture(const QString &name)
{
    auto worm = std::unique_ptr<Morphology>(newWorm(name));
    worm->addImage(picture);
    return worm;
}

/// The pictures of the worm @p name.
QList<QByteArray> picturesOf(TemporaryLibrary *library, const QString &name)
{
    QList<QByteArray> pictures;
    const auto query = library->db()->newQuery(
        "SELECT Data FROM MorphologyImage, Morphology WHERE MorphologyImage.Morphology = "
        "Morphology.Id AND Name = ?",
        QVariant(name));
    while (query->next())
        pictures += query->value(0).toByteArray();
    return pictures;
}

int idOf(TemporaryLibrary *library, const QString &table, const QString &name)
{
    return library->db()->existId(table, table == "Publication" ? "Title" : "Name", name);
}

/// Makes the table of drugs one that takes anything, as files of other programs may have it.
void loosenDrugs(TemporaryLibrary *library)
{
    library->run("PRAGMA foreign_keys = false");
    library->run("DROP TABLE Drug");
    library->run("CREATE TABLE Drug (Id INTEGER, Name VARCHAR)");
}

} // namespace

class LibraryImporterTest final : public QObject
{
    Q_OBJECT

private slots:
    // Comparing
    void findsNoDifferenceBetweenEqualLibraries();
    void listsAllOfTheDestinationAsDeletedForAnEmptySource();
    void listsAllOfTheSourceAsNewForAnEmptyDestination();
    void takesNamesThatDifferInCaseForTwoElements();
    void looksAtNoMoreThanTheNamesOfWords_data();
    void looksAtNoMoreThanTheNamesOfWords();
    void listsAPublicationThatDiffers_data();
    void listsAPublicationThatDiffers();
    void listsAMorphologyWithAnotherPicture();
    void listsRowsInTheOrderOfTheirTables();
    void tellsOfEachStepOfTheComparison();
    void showsTheListsOfAKindOnceItIsCompared();
    void stopsComparingWhereItIsCanceled();
    void leavesTheLastListsIncompleteWhereItIsCanceledInThem();
    void knowsThePairsOfAComparisonThatWasCutShort();
    void forgetsTheComparisonBeforeOneThatWasCutShort();
    void comparesAFileWithItself();

    // Importing
    void writesNothingWhereNothingIsTicked();
    void tellsOfEachStepOfTheImport();
    void bringsAlongWhatANewExperimentRefersTo();
    void bringsASharedPublicationOnce();
    void writesAMorphologyOfTwoLeavesOnce();
    void refersToTheElementOfTheSameName();
    void usesTheNewContentOfATickedMorphology_data();
    void usesTheNewContentOfATickedMorphology();
    void keepsTheRowOfAModifiedElement();
    void leavesPairedElementsAsTheyAre();
    void bringsPicturesAlong_data();
    void bringsPicturesAlong();
    void replacesThePicturesOfAModifiedMorphology();
    void keepsWhatIsStillUsed_data();
    void keepsWhatIsStillUsed();
    void deletesAPublicationWithItsLastExperiment();
    void deletesAWholeLibrary();
    void leavesTheSourceAsItIs();
    void opensAfterAnImportWithNothingNewOrModified();

    // Damaged files
    void takesNamesakesForOneElement();
    void passesOverElementsWithoutAName();
    void leavesOutATreatmentThatIsLost();
    void takesAnElementWithAnEmptyName();
    void refusesAnExperimentWithoutItsSpecies();
};

// --- Comparing ---

void LibraryImporterTest::findsNoDifferenceBetweenEqualLibraries()
{
    LibraryPair pair("import/src.edb", "import/src.edb");
    const QByteArray before = bytesOf(pair.destination.fileName());
    pair.compare();
    QCOMPARE(pair.listed(), QStringList());
    QCOMPARE(pair.importer->total(), 0);
    for (const KindKey &kind : allKinds)
        QVERIFY(pair.importer->lists(kind.kind).complete);
    QCOMPARE(pair.import(), Outcome::Done);
    QCOMPARE(bytesOf(pair.destination.fileName()), before);
}

void LibraryImporterTest::listsAllOfTheDestinationAsDeletedForAnEmptySource()
{
    LibraryPair pair;
    fill(&pair.destination);
    pair.compare();
    QCOMPARE(pair.listed(),
             QStringList({"experiments deleted: first", "experiments deleted: second",
                          "manipulations deleted: cut", "morphologies deleted: body",
                          "morphologies deleted: worm A", "morphologies deleted: worm B",
                          "morphologies deleted: worm C", "drugs deleted: drug A",
                          "drugs deleted: drug B", "rnai deleted: gene A", "rnai deleted: gene B",
                          "species deleted: species", "publications deleted: paper"}));
    QCOMPARE(pair.importer->total(), 13);
}

void LibraryImporterTest::listsAllOfTheSourceAsNewForAnEmptyDestination()
{
    LibraryPair pair;
    fill(&pair.source);
    pair.compare();
    QCOMPARE(pair.listed(),
             QStringList({"experiments new: first, ticked", "experiments new: second, ticked",
                          "manipulations new: cut, ticked", "morphologies new: body, ticked",
                          "morphologies new: worm A, ticked", "morphologies new: worm B, ticked",
                          "morphologies new: worm C, ticked", "drugs new: drug A, ticked",
                          "drugs new: drug B, ticked", "rnai new: gene A, ticked",
                          "rnai new: gene B, ticked", "species new: species, ticked",
                          "publications new: paper, ticked"}));
    QCOMPARE(pair.import(), Outcome::Done);
    QCOMPARE(libraryJson(pair.destination.db()), libraryJson(pair.source.db()));
    QCOMPARE(pair.faults(), QStringList());
}

void LibraryImporterTest::takesNamesThatDifferInCaseForTwoElements()
{
    LibraryPair pair;
    pair.source.run("INSERT INTO Species VALUES(1, 'Planaria')");
    pair.destination.run("INSERT INTO Species VALUES(1, 'planaria')");
    pair.compare();
    QCOMPARE(pair.listed(),
             QStringList({"species new: Planaria, ticked", "species deleted: planaria"}));
}

void LibraryImporterTest::looksAtNoMoreThanTheNamesOfWords_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("detail");
    QTest::newRow("drug") << "Drug" << QString();
    QTest::newRow("RNAi that block differently") << "RNAi"
                                                 << ", 'another mechanism'";
    QTest::newRow("species") << "Species" << QString();
}

void LibraryImporterTest::looksAtNoMoreThanTheNamesOfWords()
{
    QFETCH(const QString, table);
    QFETCH(const QString, detail);
    LibraryPair pair;
    const QString other = detail.isEmpty() ? QString() : ", 'a mechanism'";
    pair.source.run(QStringLiteral("INSERT INTO %1 VALUES(5, 'same'%2)").arg(table, detail));
    pair.destination.run(QStringLiteral("INSERT INTO %1 VALUES(1, 'same'%2)").arg(table, other));
    pair.compare();
    QCOMPARE(pair.listed(), QStringList());
}

void LibraryImporterTest::listsAPublicationThatDiffers_data()
{
    QTest::addColumn<QString>("inDestination");
    QTest::addColumn<bool>("listed");
    QTest::newRow("the same") << "'paper', 'https://a.example', 1901" << false;
    QTest::newRow("another year") << "'paper', 'https://a.example', 1902" << true;
    QTest::newRow("another address") << "'paper', 'https://b.example', 1901" << true;
}

void LibraryImporterTest::listsAPublicationThatDiffers()
{
    QFETCH(const QString, inDestination);
    QFETCH(const bool, listed);
    LibraryPair pair;
    pair.source.run("INSERT INTO Publication VALUES(3, 'paper', 'https://a.example', 1901)");
    pair.destination.run(
        QStringLiteral("INSERT INTO Publication VALUES(1, %1)").arg(inDestination));
    pair.compare();
    QCOMPARE(pair.listed(),
             listed ? QStringList("publications modified: paper, ticked") : QStringList());
}

void LibraryImporterTest::listsAMorphologyWithAnotherPicture()
{
    LibraryPair pair;
    store(&pair.source, newWormWithPicture("worm").get());
    store(&pair.destination, std::unique_ptr<Morphology>(newWorm("worm")).get());
    pair.compare();
    QCOMPARE(pair.listed(), QStringList("morphologies modified: worm, ticked"));
}

void LibraryImporterTest::listsRowsInTheOrderOfTheirTables()
{
    LibraryPair pair;
    for (int i = 40; i > 0; --i) {
        const QString values =
            QStringLiteral(" VALUES(%1, 'paper %2', '', 1900)").arg(41 - i).arg(i);
        pair.source.run("INSERT INTO Publication" + QString(values).replace("paper", "new"));
        pair.destination.run("INSERT INTO Publication" + values);
    }
    pair.compare();
    for (const ImportList list : {Added, Deleted}) {
        QCOMPARE(pair.rows(Publications, list).size(), size_t{40});
        for (int i = 0; i < 40; ++i)
            QCOMPARE(pair.rows(Publications, list).at(i).id, i + 1);
    }
}

void LibraryImporterTest::tellsOfEachStepOfTheComparison()
{
    const QStringList labels{"Comparing experiments...",  "Comparing manipulations...",
                             "Comparing morphologies...", "Comparing drugs...",
                             "Comparing RNAis...",        "Comparing species...",
                             "Comparing publications..."};
    LibraryPair pair;
    fill(&pair.source);
    LibraryImporter importer(pair.source.db(), pair.destination.db());
    RecordedProgress progress;
    QVERIFY(importer.populateElements(progress, [](ImportKind) {}));
    QCOMPARE(progress.labels, labels);
    QCOMPARE(progress.maximum, 13);
    QCOMPARE(progress.rows, 13);
    QVERIFY(progress.questions >= 13);
}

void LibraryImporterTest::showsTheListsOfAKindOnceItIsCompared()
{
    LibraryPair pair;
    fill(&pair.source);
    LibraryImporter importer(pair.source.db(), pair.destination.db());
    RecordedProgress progress;
    QList<ImportKind> order;
    QList<int> totals;
    QVERIFY(importer.populateElements(progress, [&](ImportKind kind) {
        order += kind;
        totals += importer.lists(kind).total();
    }));
    QCOMPARE(order, QList<ImportKind>({Experiments, Manipulations, Morphologies, Drugs,
                                       ImportKind::RNAi, ImportKind::Species, Publications}));
    QCOMPARE(totals, QList<int>({2, 1, 4, 2, 2, 1, 1}));
}

void LibraryImporterTest::stopsComparingWhereItIsCanceled()
{
    LibraryPair pair;
    fill(&pair.source);
    RecordedProgress whole;
    LibraryImporter importer(pair.source.db(), pair.destination.db());
    QVERIFY(importer.populateElements(whole, [](ImportKind) {}));

    // The last kind has one row: two questions about it are the last.
    for (int question = 1; question <= whole.questions - 2; ++question) {
        RecordedProgress progress(question);
        QVERIFY(!importer.populateElements(progress, [](ImportKind) {}));
        QVERIFY(progress.rows < question);
    }
}

void LibraryImporterTest::leavesTheLastListsIncompleteWhereItIsCanceledInThem()
{
    LibraryPair pair;
    for (int i = 1; i <= 3; ++i) {
        pair.source.run(QStringLiteral("INSERT INTO Publication VALUES(%1, %1, '', 1)").arg(i));
        pair.source.run(QStringLiteral("INSERT INTO Drug VALUES(%1, %1)").arg(i));
    }
    pair.destination.run("INSERT INTO Publication VALUES(9, 9, '', 1)");
    LibraryImporter importer(pair.source.db(), pair.destination.db());
    RecordedProgress whole;
    QVERIFY(importer.populateElements(whole, [](ImportKind) {}));
    QCOMPARE(importer.total(), 7);

    RecordedProgress progress(whole.questions - 1); // before the last row
    QVERIFY(importer.populateElements(progress, [](ImportKind) {}));
    const ImportLists &lists = importer.lists(Publications);
    QVERIFY(!lists.complete);
    QCOMPARE(lists.added.size(), size_t{2});
    QCOMPARE(lists.deleted.size(), size_t{0});
    QCOMPARE(lists.total(), 0);
    QCOMPARE(importer.total(), 3);
}

void LibraryImporterTest::knowsThePairsOfAComparisonThatWasCutShort()
{
    LibraryPair pair;
    fill(&pair.source);
    pair.destination.run("INSERT INTO Publication VALUES(9, 'paper', '', 1850)");
    LibraryImporter importer(pair.source.db(), pair.destination.db());
    RecordedProgress whole;
    QVERIFY(importer.populateElements(whole, [](ImportKind) {}));
    RecordedProgress progress(whole.questions - 1); // before the publication is compared
    QVERIFY(importer.populateElements(progress, [](ImportKind) {}));
    QVERIFY(!importer.lists(Publications).complete);

    RecordedProgress importing;
    QCOMPARE(importer.importElements(importing), Outcome::Done);
    QCOMPARE(pair.destination.count("Publication"), 1);
    QCOMPARE(pair.destination.value("SELECT Year FROM Publication").toInt(), 1850);
    QCOMPARE(pair.destination.value("SELECT Publication FROM Experiment").toInt(), 9);
}

void LibraryImporterTest::forgetsTheComparisonBeforeOneThatWasCutShort()
{
    LibraryPair pair("import/src.edb", "import/dst.edb");
    LibraryImporter importer(pair.source.db(), pair.destination.db());
    RecordedProgress whole;
    QVERIFY(importer.populateElements(whole, [](ImportKind) {}));
    RecordedProgress half(whole.questions / 2);
    QVERIFY(!importer.populateElements(half, [](ImportKind) {}));
    QVERIFY(importer.lists(Experiments).total() > 0);

    const QByteArray before = bytesOf(pair.destination.fileName());
    RecordedProgress importing;
    QCOMPARE(importer.importElements(importing), Outcome::Failed);
    QCOMPARE(importer.failedElement(), QString());
    QCOMPARE(importing.rows, 0);
    QCOMPARE(bytesOf(pair.destination.fileName()), before);
}

void LibraryImporterTest::comparesAFileWithItself()
{
    TemporaryLibrary library("import/src.edb");
    const QByteArray before = bytesOf(library.fileName());
    DB second;
    QCOMPARE(second.connect(library.fileName(), false), static_cast<int>(DB::Opened));
    LibraryImporter importer(&second, library.db());
    RecordedProgress progress;
    QVERIFY(importer.populateElements(progress, [](ImportKind) {}));
    QCOMPARE(importer.total(), 0);
    QCOMPARE(importer.importElements(progress), Outcome::Done);
    QCOMPARE(bytesOf(library.fileName()), before);
}

// --- Importing ---

void LibraryImporterTest::writesNothingWhereNothingIsTicked()
{
    LibraryPair pair("import/src.edb", "import/dst.edb");
    const QByteArray before = bytesOf(pair.destination.fileName());
    pair.compare();
    pair.tickAll(false);
    RecordedProgress progress;
    QCOMPARE(pair.importer->importElements(progress), Outcome::Done);
    QCOMPARE(progress.maximum, 47);
    QCOMPARE(progress.rows, 47);
    QCOMPARE(bytesOf(pair.destination.fileName()), before);
}

void LibraryImporterTest::tellsOfEachStepOfTheImport()
{
    const QStringList labels{"Importing publications...", "Importing species...",
                             "Importing drugs...",        "Importing RNAi...",
                             "Importing morphologies...", "Importing manipulations...",
                             "Importing experiments...",  "Deleting elements..."};
    LibraryPair pair("import/src.edb", "import/dst.edb");
    pair.compare();
    RecordedProgress progress;
    QCOMPARE(pair.importer->importElements(progress), Outcome::Done);
    QCOMPARE(progress.labels, labels);
    QCOMPARE(progress.rows, 47);
    QVERIFY(progress.questions >= 47 + 14);
}

void LibraryImporterTest::bringsAlongWhatANewExperimentRefersTo()
{
    LibraryPair pair;
    fill(&pair.source);
    pair.compare();
    pair.tickAll(false);
    pair.tick(Experiments, Added, "first");
    QCOMPARE(pair.import(), Outcome::Done);

    const QJsonObject arrived = libraryJson(pair.destination.db());
    QJsonObject all = libraryJson(pair.source.db());
    all["experiments"] = QJsonArray{all["experiments"].toArray().first()};
    QCOMPARE(arrived, all);
    QCOMPARE(pair.faults(), QStringList());
}

void LibraryImporterTest::bringsASharedPublicationOnce()
{
    LibraryPair pair;
    fill(&pair.source);
    pair.compare();
    pair.tickAll(false);
    pair.tick(Experiments, Added, "first");
    pair.tick(Experiments, Added, "second");
    QCOMPARE(pair.import(), Outcome::Done);
    QCOMPARE(libraryJson(pair.destination.db()), libraryJson(pair.source.db()));
    QCOMPARE(pair.destination.count("Publication"), 1);
    QCOMPARE(pair.faults(), QStringList());
}

void LibraryImporterTest::writesAMorphologyOfTwoLeavesOnce()
{
    LibraryPair pair;
    store(&pair.source, std::unique_ptr<Morphology>(newWorm("worm")).get());
    Manipulation graft(new Morphology(1, pair.source.db(), false));
    graft.setName("graft");
    graft.addJoinAction(graft.rootAction(), new Morphology(1, pair.source.db(), false));
    store(&pair.source, &graft);
    QCOMPARE(pair.source.count("MorphologyAction"), 2);

    pair.compare();
    pair.tick(Morphologies, Added, "worm", false);
    QCOMPARE(pair.import(), Outcome::Done);
    QCOMPARE(pair.destination.count("MorphologyAction"), 2);
    QCOMPARE(pair.destination.count("Morphology"), 1);
    QCOMPARE(pair.destination.count("Region"), 1);
    QCOMPARE(pair.faults(), QStringList());
}

void LibraryImporterTest::refersToTheElementOfTheSameName()
{
    LibraryPair pair;
    fill(&pair.source);
    // The ids of the source mean other elements here.
    for (const QString table : {"Drug", "Species"})
        pair.destination.run(QStringLiteral("INSERT INTO %1 VALUES(1, 'other'), (7, '%2')")
                                 .arg(table, table == "Drug" ? "drug A" : "species"));
    pair.compare();
    QCOMPARE(pair.import(), Outcome::Done);
    QCOMPARE(pair.destination.value("SELECT GROUP_CONCAT(Species) FROM Experiment").toString(),
             "7,7");
    QCOMPARE(pair.destination.value("SELECT Drug FROM ExperimentDrug WHERE Id = 1").toInt(), 7);
    QCOMPARE(pair.destination.count("Drug"), 3);
    QCOMPARE(pair.faults(), QStringList());
}

void LibraryImporterTest::usesTheNewContentOfATickedMorphology_data()
{
    QTest::addColumn<bool>("ticked");
    QTest::newRow("ticked") << true;
    QTest::newRow("left alone") << false;
}

void LibraryImporterTest::usesTheNewContentOfATickedMorphology()
{
    QFETCH(const bool, ticked);
    LibraryPair pair;
    fill(&pair.source);
    const std::unique_ptr<Morphology> other(newWorm("body"));
    other->addRegion(tailType());
    store(&pair.destination, other.get());
    pair.compare();
    pair.tick(Morphologies, Modified, "body", ticked);
    QCOMPARE(pair.import(), Outcome::Done);

    const Experiment experiment(idOf(&pair.destination, "Experiment", "first"),
                                pair.destination.db());
    const Morphology *leaf = experiment.manipulation()->calcMorphologiesList().first();
    QCOMPARE(leaf->id(), other->id());
    QCOMPARE(leaf->regions().size(), ticked ? 1 : 2);
    QCOMPARE(pair.destination.count("Morphology"), 4);
}

void LibraryImporterTest::keepsTheRowOfAModifiedElement()
{
    LibraryPair pair("import/src.edb", "import/dst.edb");
    QHash<QString, int> ids;
    const QStringList names{"Experiment num", "Experiment time", "Experiment regen"};
    for (const QString &name : names)
        ids[name] = idOf(&pair.destination, "Experiment", name);
    const int worm = idOf(&pair.destination, "Morphology", "Worm body");
    QCOMPARE(pair.merge(), Outcome::Done);
    for (const QString &name : names)
        QCOMPARE(idOf(&pair.destination, "Experiment", name), ids[name]);
    QCOMPARE(idOf(&pair.destination, "Morphology", "Worm body"), worm);
}

void LibraryImporterTest::leavesPairedElementsAsTheyAre()
{
    LibraryPair pair;
    fill(&pair.source);
    store(&pair.destination, fullExperiment("own").get());
    // What no form would write.
    pair.destination.run("UPDATE Publication SET Year = NULL, URL = NULL");
    pair.destination.run("UPDATE RNAi SET BlockedMechanism = 'a mechanism'");
    pair.destination.run("UPDATE Region SET Type = 3");
    const auto kept = [&pair] {
        QStringList lines = dumpOf(pair.destination.db());
        lines.removeIf([](const QString &line) {
            return line.startsWith("Experiment") || line.startsWith("Result") ||
                   line.startsWith("sqlite_sequence");
        });
        return lines;
    };
    const QStringList before = kept();
    pair.compare();
    pair.tickAll(false);
    pair.tick(Experiments, Added, "first");
    pair.tick(Experiments, Added, "second");
    QCOMPARE(pair.import(), Outcome::Done);
    QCOMPARE(pair.destination.count("Experiment"), 3);
    QCOMPARE(kept(), before);
}

void LibraryImporterTest::bringsPicturesAlong_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("name");
    QTest::newRow("as a new morphology") << static_cast<int>(Morphologies) << "worm";
    QTest::newRow("with a manipulation") << static_cast<int>(Manipulations) << "cut";
    QTest::newRow("with an experiment") << static_cast<int>(Experiments) << "treated";
    QTest::newRow("with a result") << static_cast<int>(Experiments) << "observed";
}

void LibraryImporterTest::bringsPicturesAlong()
{
    QFETCH(const int, kind);
    QFETCH(const QString, name);
    LibraryPair pair;
    store(&pair.source, newWormWithPicture("worm").get());
    const std::unique_ptr<Experiment> experiment = bareExperiment("treated");
    experiment->setManipulation(new Manipulation(new Morphology(1, pair.source.db(), false)));
    experiment->manipulation()->setName("cut");
    store(&pair.source, experiment.get());
    const std::unique_ptr<Experiment> observed = bareExperiment("observed");
    observed->manipulation()->setName("another cut");
    observed->setPublication(new Publication(1, pair.source.db()));
    observed->setSpecies(new Planaria::Species(1, pair.source.db()));
    addSet(observed.get(), 1, 1.0)
        ->addResultantMorphology(new Morphology(1, pair.source.db(), false));
    store(&pair.source, observed.get());

    pair.compare();
    pair.tickAll(false);
    pair.tick(static_cast<ImportKind>(kind), Added, name);
    QCOMPARE(pair.import(), Outcome::Done);
    QCOMPARE(picturesOf(&pair.destination, "worm"), QList<QByteArray>{picture});
    QCOMPARE(pair.destination.count("MorphologyImage"), 1);
}

void LibraryImporterTest::replacesThePicturesOfAModifiedMorphology()
{
    LibraryPair pair;
    store(&pair.source, newWormWithPicture("worm").get());
    const std::unique_ptr<Morphology> former(newWorm("worm"));
    former->addImage("an older picture");
    former->addImage("another older picture");
    store(&pair.destination, former.get());
    QCOMPARE(pair.merge(), Outcome::Done);
    QCOMPARE(picturesOf(&pair.destination, "worm"), QList<QByteArray>{picture});
    QCOMPARE(pair.destination.count("MorphologyImage"), 1);
}

void LibraryImporterTest::keepsWhatIsStillUsed_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("stays");

    const auto row = [](const char *tag, ImportKind kind, const char *name, bool stays) {
        QTest::newRow(tag) << static_cast<int>(kind) << QString(name) << stays;
    };
    row("experiment", Experiments, "first", false);
    row("manipulation", Manipulations, "cut", true);
    row("morphology of a leaf", Morphologies, "body", true);
    row("morphology of a result", Morphologies, "worm C", true);
    row("drug", Drugs, "drug A", true);
    row("RNAi", ImportKind::RNAi, "gene A", true);
    row("species", ImportKind::Species, "species", true);
    row("publication", Publications, "paper", true);
    row("manipulation of nothing", Manipulations, "spare", false);
    row("morphology of nothing", Morphologies, "spare", false);
    row("drug of nothing", Drugs, "spare", false);
    row("RNAi of nothing", ImportKind::RNAi, "spare", false);
    row("species of nothing", ImportKind::Species, "spare", false);
    row("publication of nothing", Publications, "spare", false);
}

void LibraryImporterTest::keepsWhatIsStillUsed()
{
    QFETCH(const int, kind);
    QFETCH(const QString, name);
    QFETCH(const bool, stays);
    LibraryPair pair;
    fill(&pair.destination);
    const std::unique_ptr<Manipulation> spare(newManipulation("spare"));
    spare->calcMorphologiesList().first()->setName("body of a spare one");
    store(&pair.destination, spare.get());
    store(&pair.destination, newWormWithPicture("spare").get());
    for (const QString table : {"Drug", "RNAi", "Species", "Publication"})
        pair.destination.run(QStringLiteral("INSERT INTO %1 (%2) VALUES('spare')")
                                 .arg(table, table == "Publication" ? "Title" : "Name"));
    const QStringList before = dumpOf(pair.destination.db());

    pair.compare();
    pair.tick(static_cast<ImportKind>(kind), Deleted, name);
    QCOMPARE(pair.import(), Outcome::Done);
    QCOMPARE(dumpOf(pair.destination.db()) == before, stays);
    pair.compare();
    QCOMPARE(pair.names(static_cast<ImportKind>(kind), Deleted).contains(name), stays);
    QCOMPARE(pair.faults(), QStringList());
}

void LibraryImporterTest::deletesAPublicationWithItsLastExperiment()
{
    LibraryPair pair;
    fill(&pair.destination);
    pair.compare();
    pair.tick(Publications, Deleted, "paper");
    pair.tick(Experiments, Deleted, "first");
    QCOMPARE(pair.import(), Outcome::Done);
    QCOMPARE(pair.destination.count("Publication"), 1);

    pair.compare();
    pair.tick(Publications, Deleted, "paper");
    pair.tick(Experiments, Deleted, "second");
    QCOMPARE(pair.import(), Outcome::Done);
    QCOMPARE(pair.destination.count("Publication"), 0);
    QCOMPARE(pair.faults(), QStringList());
}

void LibraryImporterTest::deletesAWholeLibrary()
{
    LibraryPair pair;
    TemporaryLibrary whole("import/dst.edb");
    pair.importer = std::make_unique<LibraryImporter>(pair.source.db(), whole.db());
    RecordedProgress progress;
    QVERIFY(pair.importer->populateElements(progress, [](ImportKind) {}));
    pair.tickAll(true);
    QCOMPARE(pair.import(), Outcome::Done);
    QCOMPARE(libraryJson(whole.db()), libraryJson(pair.source.db()));
    QCOMPARE(strayRows(whole.db()), QStringList());
    QCOMPARE(whole.brokenReferences(), QStringList());
}

void LibraryImporterTest::leavesTheSourceAsItIs()
{
    LibraryPair pair("import/src.edb", "import/dst.edb");
    const QByteArray before = bytesOf(pair.source.fileName());
    pair.compare();
    pair.tickAll(true);
    QCOMPARE(pair.import(), Outcome::Done);
    QCOMPARE(bytesOf(pair.source.fileName()), before);
    QVERIFY(!pair.source.db()->inTransaction());
}

void LibraryImporterTest::opensAfterAnImportWithNothingNewOrModified()
{
    LibraryPair pair("import/src.edb", "import/dst.edb");
    QCOMPARE(pair.merge(), Outcome::Done);
    pair.compare();
    for (const KindKey &kind : allKinds) {
        QCOMPARE(pair.names(kind.kind, Added), QStringList());
        QCOMPARE(pair.names(kind.kind, Modified), QStringList());
    }
    QVERIFY(!pair.destination.db()->inTransaction());
}

// --- Damaged files ---

void LibraryImporterTest::takesNamesakesForOneElement()
{
    LibraryPair pair;
    fill(&pair.source);
    loosenDrugs(&pair.source);
    pair.source.run("INSERT INTO Drug VALUES(1, 'same'), (2, 'same')");
    QCOMPARE(pair.source.value("SELECT COUNT(DISTINCT Drug) FROM ExperimentDrug").toInt(), 2);
    pair.compare();
    QCOMPARE(pair.names(Drugs, Added), QStringList("same"));
    QCOMPARE(pair.import(), Outcome::Done);
    QCOMPARE(pair.destination.count("Drug"), 1);
    QCOMPARE(pair.destination.count("ExperimentDrug"), 3);
    QCOMPARE(pair.destination.value("SELECT COUNT(DISTINCT Drug) FROM ExperimentDrug").toInt(), 1);
    QCOMPARE(pair.faults(), QStringList());
    pair.compare();
    QCOMPARE(pair.listed(), QStringList());
}

void LibraryImporterTest::passesOverElementsWithoutAName()
{
    LibraryPair pair;
    for (TemporaryLibrary *library : {&pair.source, &pair.destination}) {
        loosenDrugs(library);
        library->run("INSERT INTO Drug VALUES(1, NULL), (2, NULL), (NULL, 'no id'), "
                     "(99999999999, 'no id that fits'), (-1, 'below'), (4, 'sound')");
    }
    pair.source.run("UPDATE Drug SET Name = 'sound too' WHERE Id = 4");
    pair.compare();
    QCOMPARE(pair.listed(), QStringList({"drugs new: sound too, ticked", "drugs deleted: sound"}));
    pair.tick(Drugs, Added, "sound too", false);
    QCOMPARE(pair.import(), Outcome::Done);
}

void LibraryImporterTest::leavesOutATreatmentThatIsLost()
{
    LibraryPair pair;
    fill(&pair.source);
    pair.source.run("PRAGMA foreign_keys = false");
    pair.source.run("DELETE FROM Drug WHERE Id = 1");
    pair.source.run("DELETE FROM Morphology WHERE Name = 'worm C'");
    QCOMPARE(pair.merge(), Outcome::Done);
    QCOMPARE(pair.destination.count("ExperimentDrug"), 1);
    QCOMPARE(pair.destination.count("ResultantMorphology"), 2);
    QCOMPARE(pair.destination.count("Drug"), 1);
    QCOMPARE(pair.destination.count("Morphology"), 3);
    QCOMPARE(pair.faults(), QStringList());
}

void LibraryImporterTest::takesAnElementWithAnEmptyName()
{
    LibraryPair pair;
    fill(&pair.source);
    pair.source.run("UPDATE Drug SET Name = '' WHERE Id = 1");
    pair.source.run("UPDATE Manipulation SET Name = ''");
    QCOMPARE(pair.merge(), Outcome::Done);
    QCOMPARE(libraryJson(pair.destination.db()), libraryJson(pair.source.db()));
    pair.compare();
    QCOMPARE(pair.listed(), QStringList());
}

void LibraryImporterTest::refusesAnExperimentWithoutItsSpecies()
{
    LibraryPair pair;
    fill(&pair.source);
    pair.source.run("PRAGMA foreign_keys = false");
    pair.source.run("UPDATE Experiment SET Species = 77 WHERE Id = 2");
    const QStringList before = dumpOf(pair.destination.db());
    pair.compare();
    QCOMPARE(pair.import(), Outcome::Failed);
    QCOMPARE(pair.importer->failedElement(), "second");
    QCOMPARE(dumpOf(pair.destination.db()), before);

    pair.tick(Experiments, Added, "second", false);
    QCOMPARE(pair.import(), Outcome::Done);
    QCOMPARE(pair.importer->failedElement(), QString());
    QCOMPARE(pair.destination.count("Experiment"), 1);
    QCOMPARE(pair.faults(), QStringList());
}

QTEST_GUILESS_MAIN(LibraryImporterTest)
#include "LibraryImporterTest.moc"
