#include "import/LibraryImporterForm.h"

#include "distance/StoredWorms.h"
#include "import/LibraryJson.h"
#include "import/OpenImporter.h"
#include "support/JsonDifference.h"
#include "support/ModalAnswerer.h"
#include "support/ProgressWatcher.h"
#include "support/TestData.h"

#include <QFile>
#include <QHeaderView>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>

using namespace Planaria;

namespace {

struct KindOfElements
{
    ImportKind kind;
    const char *label;
    const char *json; ///< Its name in the worked cases.
    const char *table;
    const char *nameColumn;
};

constexpr std::array<KindOfElements, importKindCount> kinds = {{
    {ImportKind::Experiments, "Experiments", "experiments", "Experiment", "Name"},
    {ImportKind::Manipulations, "Manipulations", "manipulations", "Manipulation", "Name"},
    {ImportKind::Morphologies, "Morphologies", "morphologies", "Morphology", "Name"},
    {ImportKind::Drugs, "Drugs", "drugs", "Drug", "Name"},
    {ImportKind::RNAi, "RNAi", "rnai", "RNAi", "Name"},
    {ImportKind::Species, "Species", "species", "Species", "Name"},
    {ImportKind::Publications, "Publications", "publications", "Publication", "Title"},
}};

const KindOfElements &currentKind()
{
    const auto *found = std::find_if(kinds.cbegin(), kinds.cend(), [](const KindOfElements &each) {
        return QLatin1String(each.label) == QLatin1String(QTest::currentDataTag());
    });
    return *found;
}

/// What the worked cases call the three lists.
constexpr std::array<const char *, 3> listKeys = {"modified", "new", "deleted"};

QJsonObject workedCase(const QString &name)
{
    return QJsonDocument::fromJson(readTestData(name)).object();
}

/// The names in one list of a worked case, each behind @p tick.
QStringList workedRows(const QString &list, const QString &tick)
{
    static const QJsonObject differences = workedCase("import/diff.json");
    QStringList rows;
    for (const QJsonValue &name : differences[currentKind().json][list].toArray())
        rows += tick + name.toString();
    rows.sort();
    return rows;
}

/// Clicks the boxes of all that @p ticks lists.
void clickListed(const ImporterParts &parts, const QJsonObject &ticks)
{
    for (const KindOfElements &each : kinds) {
        const QJsonObject lists = ticks[each.json].toObject();
        for (const ImportList in : allImportLists) {
            for (const QJsonValue &name : lists[listKeys.at(int(in))].toArray())
                parts.click(each.kind, in, name.toString());
        }
    }
}

QStringList sorted(QStringList rows)
{
    rows.sort();
    return rows;
}

QStringList content(TemporaryLibrary *library)
{
    return dumpOf(library->db());
}

QStringList names(TemporaryLibrary *library, const char *table)
{
    QStringList all;
    const auto query = library->db()->newTableQuery(table);
    while (query->next())
        all += query->value(1).toString();
    return sorted(all);
}

} // namespace

/// The dialog that merges two libraries.
class LibraryImporterFormTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    // The window
    void namesBothFilesInItsTitle_data();
    void namesBothFilesInItsTitle();
    void offersToBeMaximized();
    void startsAsSmallAsItsTablesAllow();
    void remembersItsSize();
    void keepsItsNormalSizeWhileItIsMaximized();
    void isModalWhenItOpensMaximized();

    // The parts
    void hasATabForEachTypeOfElements();
    void putsEachTableUnderItsLabel_data() { addKinds(); }
    void putsEachTableUnderItsLabel();
    void leadsFromTableToTableByTab();
    void givesEveryTableAName();

    // The comparison
    void comparesOnceItIsOnTheScreen();
    void comparesNothingWhenItIsClosedBefore();
    void listsTheDifferences_data() { addKinds(); }
    void listsTheDifferences();
    void ticksWhatIsNewOrModified_data() { addKinds(); }
    void ticksWhatIsNewOrModified();
    void keepsTheIdOfEachRow_data() { addKinds(); }
    void keepsTheIdOfEachRow();
    void letsRowsBeTickedButNotEdited();
    void breaksLongTitlesIntoLines();
    void tellsWholeNamesInToolTips();
    void listsNothingForEqualLibraries();
    void listsAllAsDeletedForAnEmptySource();
    void listsAllAsNewForAnEmptyDestination();
    void tellsNamesApartByCase();
    void neverListsASpeciesOfTheSameNameAsModified();
    void listsAPublicationOfAnotherYearAsModified();
    void writesNothingWhileItCompares();

    // The progress of the comparison
    void showsTheProgressOfTheComparison();
    void closesWhenTheComparisonIsAborted_data();
    void closesWhenTheComparisonIsAborted();
    void leavesTheLastListsOpenWhenTheyAreAborted_data();
    void leavesTheLastListsOpenWhenTheyAreAborted();
    void endsTheComparisonWhenItIsClosed();
    void endsALongComparisonByTheButton();

    // Ticks and the import
    void takesTicksByMouse();
    void takesTicksByTheSpaceBar();
    void leavesTheLibraryInTheWorkedState_data();
    void leavesTheLibraryInTheWorkedState();
    void offersNothingTickedAgain();
    void leavesOutWhatIsNotTicked();
    void deletesWhatIsTicked();
    void takesOverNothingWithoutTicks();
    void changesNothingOnCancel_data();
    void changesNothingOnCancel();
    void changesNothingBetweenEqualLibraries();
    void readsTheSourceOnly();

    // The progress of the import
    void showsTheProgressOfTheImport();
    void staysOpenWhenTheImportIsAborted_data();
    void staysOpenWhenTheImportIsAborted();
    void importsAfterAnAbort();
    void endsTheImportWhenItIsClosed_data();
    void endsTheImportWhenItIsClosed();
    void endsALongImportByTheButton();

    // Failures
    void tellsThatAFileCannotBeRead();
    void tellsThatTheDestinationIsLocked();
    void refusesFilesThatHaveChangedSince_data();
    void refusesFilesThatHaveChangedSince();
    void tellsThatTheDestinationCannotBeWritten_data();
    void tellsThatTheDestinationCannotBeWritten();

private:
    static void addKinds();
    static void addAborts();
    /// Two libraries with a difference of each sort, of which the longest comparison takes a while.
    void storeLargeDifference();

    std::unique_ptr<TemporaryLibrary> source;
    std::unique_ptr<TemporaryLibrary> destination;
};

void LibraryImporterFormTest::addKinds()
{
    QTest::addColumn<int>("place");
    for (const KindOfElements &each : kinds)
        QTest::newRow(each.label) << int(each.kind);
}

void LibraryImporterFormTest::init()
{
    QSettings().clear();
    source = std::make_unique<TemporaryLibrary>("import/src.edb");
    destination = std::make_unique<TemporaryLibrary>("import/dst.edb");
}

void LibraryImporterFormTest::cleanup()
{
    QCOMPARE(source->brokenReferences(), QStringList());
    QCOMPARE(destination->brokenReferences(), QStringList());
}

// --- The window ---

void LibraryImporterFormTest::namesBothFilesInItsTitle_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("shown");
    QTest::newRow("plain") << "worms.edb"
                           << "worms.edb";
    QTest::newRow("with blanks") << "my worms.edb"
                                 << "my worms.edb";
    QTest::newRow("with a place for another") << "a%2%1.edb"
                                              << "a%2%1.edb";
    QTest::newRow("with a backslash") << "C:\\libraries\\worms.edb"
                                      << "worms.edb";
}

void LibraryImporterFormTest::namesBothFilesInItsTitle()
{
    QFETCH(const QString, file);
    QFETCH(const QString, shown);
    const QString path = source->filePath(file);
    QVERIFY(QFile::copy(source->fileName(), path));
    DB db;
    QCOMPARE(db.connect(path, false), int(DB::Opened));
    QCOMPARE(LibraryImporterForm(&db, destination->db(), nullptr).windowTitle(),
             "Import data: " + shown + " -> library.edb");
    QCOMPARE(LibraryImporterForm(destination->db(), &db, nullptr).windowTitle(),
             "Import data: library.edb -> " + shown);
}

void LibraryImporterFormTest::offersToBeMaximized()
{
    const LibraryImporterForm form(source->db(), destination->db(), nullptr);
    QVERIFY(form.windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
    QCOMPARE(form.windowType(), Qt::Dialog);
    QVERIFY(form.windowFlags().testFlag(Qt::WindowCloseButtonHint));
}

void LibraryImporterFormTest::startsAsSmallAsItsTablesAllow()
{
    const OpenImporter open(source.get(), destination.get());
    QCOMPARE(open.form.size(), QSize(300, 128).expandedTo(open.form.minimumSizeHint()));
    QVERIFY(open.form.width() <= 1024);
    QVERIFY(open.form.height() <= 768);
}

void LibraryImporterFormTest::remembersItsSize()
{
    const QSize size(950, 640);
    {
        OpenImporter open(source.get(), destination.get());
        open.form.resize(size);
    }
    QCOMPARE(QSettings().value("LibraryImporterForm/size").toSize(), size);
    QCOMPARE(QSettings().value("LibraryImporterForm/maximized"), QVariant(false));
    const OpenImporter again(source.get(), destination.get());
    QCOMPARE(again.form.size(), size);
}

void LibraryImporterFormTest::keepsItsNormalSizeWhileItIsMaximized()
{
    QSettings().setValue("LibraryImporterForm/size", QSize(950, 640));
    {
        OpenImporter open(source.get(), destination.get());
        open.form.showMaximized();
        QTRY_VERIFY(open.form.size() != QSize(950, 640));
    }
    QCOMPARE(QSettings().value("LibraryImporterForm/maximized").toBool(), true);
    QCOMPARE(QSettings().value("LibraryImporterForm/size").toSize(), QSize(950, 640));
}

void LibraryImporterFormTest::isModalWhenItOpensMaximized()
{
    QSettings().setValue("LibraryImporterForm/maximized", true);
    LibraryImporterForm form(source->db(), destination->db(), nullptr);
    bool seen = false;
    ModalAnswerer answerer;
    answerer.expectDialog([&](QDialog *dialog) {
        seen = dialog == &form && form.isMaximized();
        form.reject();
    });
    form.exec();
    QCOMPARE(answerer.problems(), QStringList());
    QVERIFY(seen);
}

// --- The parts ---

void LibraryImporterFormTest::hasATabForEachTypeOfElements()
{
    const OpenImporter open(source.get(), destination.get());
    QStringList labels;
    for (int tab = 0; tab < open.parts.tabs()->count(); ++tab)
        labels += open.parts.tabs()->tabText(tab);
    QCOMPARE(labels, QStringList({"Experiments", "Manipulations", "Morphologies", "Drugs", "RNAi",
                                  "Species", "Publications"}));

    const QLayout *layout = open.form.layout();
    QCOMPARE(layout->count(), 2);
    QCOMPARE(layout->itemAt(0)->widget(), open.parts.tabs());
    const auto *buttons = qobject_cast<QDialogButtonBox *>(layout->itemAt(1)->widget());
    QVERIFY(buttons);
    QCOMPARE(buttons->standardButtons(), QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QCOMPARE(buttons->orientation(), Qt::Horizontal);
}

void LibraryImporterFormTest::putsEachTableUnderItsLabel()
{
    const ImportKind kind = currentKind().kind;
    const OpenImporter open(source.get(), destination.get());
    QCOMPARE(open.parts.labels(kind),
             QStringList({currentKind().label, "Modified", "New", "Deleted"}));
    for (int column = 0; column < 3; ++column) {
        const auto *table = open.parts.part<QTableWidget>(kind, 1, column);
        QCOMPARE(table->rowCount(), 0);
        QCOMPARE(table->columnCount(), 1);
        QVERIFY(table->horizontalHeader()->isHidden());
        QCOMPARE(table->horizontalHeader()->sectionResizeMode(0), QHeaderView::Stretch);
    }
}

void LibraryImporterFormTest::leadsFromTableToTableByTab()
{
    OpenImporter open(source.get(), destination.get());
    open.compare();
    open.form.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&open.form));
    open.parts.table(ImportKind::Experiments, ImportList::Modified)->setFocus();
    for (const ImportList next : {ImportList::Added, ImportList::Deleted}) {
        QTest::keyClick(open.form.focusWidget(), Qt::Key_Tab);
        QCOMPARE(open.form.focusWidget(), open.parts.table(ImportKind::Experiments, next));
    }
    QTest::keyClick(open.form.focusWidget(), Qt::Key_Tab);
    QCOMPARE(open.form.focusWidget(), open.parts.button(QDialogButtonBox::Ok));
}

void LibraryImporterFormTest::givesEveryTableAName()
{
    const OpenImporter open(source.get(), destination.get());
    QSet<QString> told;
    for (const auto *table : open.form.findChildren<QTableWidget *>())
        told += table->accessibleName();
    QCOMPARE(told.size(), 21);
    QVERIFY(told.contains("Drugs: new"));
}

// --- The comparison ---

void LibraryImporterFormTest::comparesOnceItIsOnTheScreen()
{
    OpenImporter open(source.get(), destination.get());
    QCOMPARE(open.parts.rows(), QStringList());
    QVERIFY(!open.parts.button(QDialogButtonBox::Ok)->isEnabled());
    open.compare();
    QCOMPARE(open.parts.tabs()->tabText(0), "Experiments (9)");
    QVERIFY(open.parts.button(QDialogButtonBox::Ok)->isEnabled());
    QVERIFY(open.form.isVisible());
}

void LibraryImporterFormTest::comparesNothingWhenItIsClosedBefore()
{
    OpenImporter open(source.get(), destination.get());
    open.form.reject();
    open.compare();
    QCOMPARE(open.parts.tabs()->tabText(0), "Experiments");
    QCOMPARE(open.parts.rows(), QStringList());
}

void LibraryImporterFormTest::listsTheDifferences()
{
    OpenImporter open(source.get(), destination.get());
    open.compare();
    const ImportKind kind = currentKind().kind;
    const QStringList modified = workedRows("modified", "+");
    const QStringList added = workedRows("new", "+");
    const QStringList deleted = workedRows("deleted", "-");
    QCOMPARE(sorted(open.parts.rows(kind, ImportList::Modified)), modified);
    QCOMPARE(sorted(open.parts.rows(kind, ImportList::Added)), added);
    QCOMPARE(sorted(open.parts.rows(kind, ImportList::Deleted)), deleted);
    const auto counted = [](const QString &label, qsizetype count) {
        return QStringLiteral("%1 (%2)").arg(label).arg(count);
    };
    QCOMPARE(
        open.parts.labels(kind),
        QStringList({counted(currentKind().label, modified.size() + added.size() + deleted.size()),
                     counted("Modified", modified.size()), counted("New", added.size()),
                     counted("Deleted", deleted.size())}));
}

void LibraryImporterFormTest::ticksWhatIsNewOrModified()
{
    OpenImporter open(source.get(), destination.get());
    open.compare();
    for (const ImportList in : allImportLists) {
        const QTableWidget *table = open.parts.table(currentKind().kind, in);
        const int expected = in == ImportList::Deleted ? Qt::Unchecked : Qt::Checked;
        for (int row = 0; row < table->rowCount(); ++row)
            QCOMPARE(table->item(row, 0)->data(Qt::CheckStateRole).toInt(), expected);
    }
}

void LibraryImporterFormTest::keepsTheIdOfEachRow()
{
    OpenImporter open(source.get(), destination.get());
    open.compare();
    for (const ImportList in : allImportLists) {
        TemporaryLibrary *holder = in == ImportList::Deleted ? destination.get() : source.get();
        const QTableWidget *table = open.parts.table(currentKind().kind, in);
        for (int row = 0; row < table->rowCount(); ++row) {
            const QVariant id = table->item(row, 0)->data(Qt::UserRole);
            QCOMPARE(id.typeId(), int(QMetaType::Int));
            QCOMPARE(table->item(row, 0)->text(),
                     holder
                         ->value(QStringLiteral("SELECT %1 FROM %2 WHERE Id=%3")
                                     .arg(currentKind().nameColumn, currentKind().table)
                                     .arg(id.toInt()))
                         .toString());
        }
    }
}

void LibraryImporterFormTest::letsRowsBeTickedButNotEdited()
{
    OpenImporter open(source.get(), destination.get());
    open.compare();
    int seen = 0;
    for (const auto *table : open.form.findChildren<QTableWidget *>()) {
        for (int row = 0; row < table->rowCount(); ++row, ++seen)
            QCOMPARE(int(table->item(row, 0)->flags()), 49);
    }
    QCOMPARE(seen, open.parts.rows().size());
    QVERIFY(seen > 40);
}

void LibraryImporterFormTest::breaksLongTitlesIntoLines()
{
    source->run(QStringLiteral("INSERT INTO Publication (Title, URL, Year) VALUES('%1', '', 1)")
                    .arg(QStringLiteral("A long title ").repeated(20)));
    OpenImporter open(source.get(), destination.get());
    open.compare();
    open.parts.tabs()->setCurrentIndex(int(ImportKind::Publications));
    const auto *table = open.parts.table(ImportKind::Publications, ImportList::Added);
    const int last = table->rowCount() - 1;
    const int line = table->fontMetrics().height();
    const auto lines = [&] { return table->rowHeight(last) / line; };
    const auto needed = [&] {
        const QRect room(0, 0, table->columnWidth(0) - 2 * line, 0);
        return table->fontMetrics()
                   .boundingRect(room, Qt::TextWordWrap, table->item(last, 0)->text())
                   .height() /
               line;
    };
    QTRY_VERIFY(lines() >= 4 && qAbs(lines() - needed()) <= 1);
    QVERIFY(table->rowHeight(0) < 4 * line);
    const int narrow = lines();
    open.form.resize(3 * open.form.width(), open.form.height());
    QTRY_VERIFY(lines() < narrow && qAbs(lines() - needed()) <= 1);
}

void LibraryImporterFormTest::tellsWholeNamesInToolTips()
{
    source->run("INSERT INTO Drug (Name) VALUES('<b>Octanol</b> & more')");
    OpenImporter open(source.get(), destination.get());
    open.compare();
    const QTableWidgetItem *item =
        open.parts.item(ImportKind::Drugs, ImportList::Added, "<b>Octanol</b> & more");
    QVERIFY(item);
    QCOMPARE(item->toolTip(), "<qt>&lt;b&gt;Octanol&lt;/b&gt; &amp; more</qt>");
}

void LibraryImporterFormTest::listsNothingForEqualLibraries()
{
    TemporaryLibrary twin("import/dst.edb");
    OpenImporter open(&twin, destination.get());
    open.compare();
    for (const KindOfElements &each : kinds)
        QCOMPARE(open.parts.labels(each.kind),
                 QStringList({QLatin1String(each.label) + QStringLiteral(" (0)"), "Modified (0)",
                              "New (0)", "Deleted (0)"}));
    QCOMPARE(open.parts.rows(), QStringList());
}

void LibraryImporterFormTest::listsAllAsDeletedForAnEmptySource()
{
    TemporaryLibrary empty;
    OpenImporter open(&empty, destination.get());
    open.compare();
    for (const KindOfElements &each : kinds) {
        const QStringList all = names(destination.get(), each.table);
        QCOMPARE(sorted(open.parts.rows(each.kind, ImportList::Deleted)),
                 QStringList(all).replaceInStrings(QRegularExpression("^"), "-"));
        QCOMPARE(
            open.parts.labels(each.kind),
            QStringList({QStringLiteral("%1 (%2)").arg(each.label).arg(all.size()), "Modified (0)",
                         "New (0)", QStringLiteral("Deleted (%1)").arg(all.size())}));
    }
}

void LibraryImporterFormTest::listsAllAsNewForAnEmptyDestination()
{
    TemporaryLibrary empty;
    OpenImporter open(source.get(), &empty);
    open.compare();
    for (const KindOfElements &each : kinds) {
        const QStringList all = names(source.get(), each.table);
        QCOMPARE(sorted(open.parts.rows(each.kind, ImportList::Added)),
                 QStringList(all).replaceInStrings(QRegularExpression("^"), "+"));
        QCOMPARE(
            open.parts.labels(each.kind),
            QStringList({QStringLiteral("%1 (%2)").arg(each.label).arg(all.size()), "Modified (0)",
                         QStringLiteral("New (%1)").arg(all.size()), "Deleted (0)"}));
    }
}

void LibraryImporterFormTest::tellsNamesApartByCase()
{
    TemporaryLibrary lower;
    TemporaryLibrary upper;
    lower.run("INSERT INTO Drug (Name) VALUES('octanol')");
    upper.run("INSERT INTO Drug (Name) VALUES('Octanol')");
    OpenImporter open(&lower, &upper);
    open.compare();
    QCOMPARE(open.parts.rows(), QStringList({"3, 1: +octanol", "3, 2: -Octanol"}));
}

void LibraryImporterFormTest::neverListsASpeciesOfTheSameNameAsModified()
{
    TemporaryLibrary first;
    TemporaryLibrary second;
    first.run("INSERT INTO Species (Id, Name) VALUES(7, 'Dugesia')");
    second.run("INSERT INTO Species (Id, Name) VALUES(8, 'Dugesia')");
    OpenImporter open(&first, &second);
    open.compare();
    QCOMPARE(open.parts.rows(), QStringList());
    QCOMPARE(open.parts.tabs()->tabText(int(ImportKind::Species)), "Species (0)");
}

void LibraryImporterFormTest::listsAPublicationOfAnotherYearAsModified()
{
    TemporaryLibrary first;
    TemporaryLibrary second;
    const QString statement =
        "INSERT INTO Publication (Title, URL, Year) VALUES('On worms', 'x', %1)";
    first.run(statement.arg(1898));
    second.run(statement.arg(1899));
    OpenImporter open(&first, &second);
    open.compare();
    QCOMPARE(open.parts.rows(), QStringList("6, 0: +On worms"));
}

void LibraryImporterFormTest::writesNothingWhileItCompares()
{
    const QStringList before = content(source.get()) + content(destination.get());
    OpenImporter open(source.get(), destination.get());
    open.compare();
    QCOMPARE(content(source.get()) + content(destination.get()), before);
}

// --- The progress of the comparison ---

void LibraryImporterFormTest::showsTheProgressOfTheComparison()
{
    int rows = 0;
    for (const KindOfElements &each : kinds)
        rows += source->count(each.table);
    const ProgressWatcher progress;
    OpenImporter open(source.get(), destination.get());
    open.compare();
    QCOMPARE(progress.labels,
             QStringList({"Comparing experiments...", "Comparing manipulations...",
                          "Comparing morphologies...", "Comparing drugs...", "Comparing RNAis...",
                          "Comparing species...", "Comparing publications..."}));
    QCOMPARE(progress.button, "Abort");
    QCOMPARE(progress.range, qMakePair(0, rows));
    QVERIFY(progress.values.contains(rows));
    QCOMPARE(progress.modality, Qt::WindowModal);
    QCOMPARE(progress.minimumDuration, 500);
    QCOMPARE(progress.parentWidget, &open.form);
}

void LibraryImporterFormTest::closesWhenTheComparisonIsAborted_data()
{
    QTest::addColumn<int>("value");
    QTest::newRow("at the start") << 1;
    QTest::newRow("at the last experiment") << 24;
    QTest::newRow("within manipulations") << 30;
    QTest::newRow("within species") << 92;
}

void LibraryImporterFormTest::closesWhenTheComparisonIsAborted()
{
    QFETCH(const int, value);
    const QStringList before = content(source.get()) + content(destination.get());
    const ProgressWatcher progress(value);
    OpenImporter open(source.get(), destination.get());
    open.compare();
    QVERIFY(open.isRejected());
    QCOMPARE(progress.values.last(), value);
    QCOMPARE(content(source.get()) + content(destination.get()), before);
}

void LibraryImporterFormTest::leavesTheLastListsOpenWhenTheyAreAborted_data()
{
    QTest::addColumn<bool>("atTheEnd");
    QTest::newRow("within them") << false;
    QTest::newRow("after the last row") << true;
}

void LibraryImporterFormTest::leavesTheLastListsOpenWhenTheyAreAborted()
{
    QFETCH(const bool, atTheEnd);
    int before = 0;
    for (const KindOfElements &each : kinds) {
        if (each.kind != ImportKind::Publications)
            before += source->count(each.table);
    }
    const ProgressWatcher progress(before + (atTheEnd ? source->count("Publication") : 2));
    OpenImporter open(source.get(), destination.get());
    open.compare();
    QVERIFY(open.form.isVisible());
    QCOMPARE(open.parts.labels(ImportKind::Publications),
             QStringList({"Publications (0)", "Modified", "New", "Deleted"}));
    QCOMPARE(open.parts.rows(ImportKind::Publications, ImportList::Deleted), QStringList());
    QCOMPARE(open.parts.labels(ImportKind::Species).first(), "Species (4)");
    QVERIFY(open.parts.button(QDialogButtonBox::Ok)->isEnabled());
}

void LibraryImporterFormTest::endsTheComparisonWhenItIsClosed()
{
    OpenImporter open(source.get(), destination.get());
    const ProgressWatcher progress(5, [&open] { open.form.reject(); });
    open.compare();
    QVERIFY(open.isRejected());
    QCOMPARE(progress.values.last(), 5);
    QCOMPARE(open.parts.tabs()->tabText(1), "Manipulations");
}

void LibraryImporterFormTest::storeLargeDifference()
{
    source = std::make_unique<TemporaryLibrary>();
    destination = std::make_unique<TemporaryLibrary>();
    storeLargeWorms(source.get(), 300);
}

void LibraryImporterFormTest::endsALongComparisonByTheButton()
{
    storeLargeDifference();
    storeLargeWorms(destination.get(), 300);
    const ProgressWatcher progress;
    ModalAnswerer answerer;
    int atAbort = -1;
    answerer.expectProgress([&](QDialog *dialog) {
        atAbort = progress.values.last();
        QTest::mouseClick(dialog->findChild<QPushButton *>(), Qt::LeftButton);
    });
    OpenImporter open(source.get(), destination.get());
    open.compare();
    QCOMPARE(answerer.problems(), QStringList());
    QVERIFY(open.isRejected());
    QVERIFY(atAbort > 0);
    QVERIFY(atAbort < 300);
    QCOMPARE(progress.values.last(), atAbort);
}

// --- Ticks and the import ---

void LibraryImporterFormTest::takesTicksByMouse()
{
    OpenImporter open(source.get(), destination.get());
    open.compare();
    open.parts.tickAll(false);
    open.parts.click(ImportKind::Drugs, ImportList::Added, "new drug B");
    open.parts.click(ImportKind::Experiments, ImportList::Deleted, "Old experiment");
    open.parts.click(ImportKind::RNAi, ImportList::Added, "new RNAi");
    open.parts.click(ImportKind::RNAi, ImportList::Added, "new RNAi");
    QCOMPARE(open.parts.rows().filter(": +"),
             QStringList({"0, 2: +Old experiment", "3, 1: +new drug B"}));
    open.parts.press(QDialogButtonBox::Ok);
    QVERIFY(open.isAccepted());
    const QStringList drugs = names(destination.get(), "Drug");
    QVERIFY(drugs.contains("new drug B"));
    QVERIFY(!drugs.contains("new drug, A"));
    QVERIFY(!names(destination.get(), "Experiment").contains("Old experiment"));
    QVERIFY(names(destination.get(), "Species").contains("Old species")); // not ticked
    QVERIFY(!names(destination.get(), "RNAi").contains("new RNAi"));
}

void LibraryImporterFormTest::takesTicksByTheSpaceBar()
{
    OpenImporter open(source.get(), destination.get());
    open.compare();
    open.parts.tabs()->setCurrentIndex(int(ImportKind::Drugs));
    QTableWidget *table = open.parts.table(ImportKind::Drugs, ImportList::Added);
    const QStringList before = open.parts.rows();
    table->setCurrentCell(1, 0);
    QTest::keyClick(table, Qt::Key_Space);
    QCOMPARE(table->item(1, 0)->checkState(), Qt::Unchecked);
    QTest::keyClick(table, Qt::Key_Space);
    QCOMPARE(open.parts.rows(), before);
}

void LibraryImporterFormTest::leavesTheLibraryInTheWorkedState_data()
{
    QTest::addColumn<QString>("expected");
    QTest::newRow("the ticks at the start") << "import/expected_default.json";
    QTest::newRow("some ticked") << "import/expected_ticks.json";
    QTest::newRow("all ticked") << "import/expected_all.json";
    QTest::newRow("none ticked") << "import/expected_none.json";
}

void LibraryImporterFormTest::leavesTheLibraryInTheWorkedState()
{
    QFETCH(const QString, expected);
    OpenImporter open(source.get(), destination.get());
    open.compare();
    if (!expected.contains("default"))
        open.parts.tickAll(expected.contains("all"));
    if (expected.contains("ticks"))
        clickListed(open.parts, workedCase("import/ticks.json"));
    open.parts.press(QDialogButtonBox::Ok);
    QVERIFY(open.isAccepted());

    QJsonObject worked = workedCase(expected);
    worked.remove("orphan_rows");
    QCOMPARE(jsonDifference(libraryJson(destination->db()), worked, "library"), QString());
    QCOMPARE(strayRows(destination->db()), QStringList());
}

void LibraryImporterFormTest::offersNothingTickedAgain()
{
    OpenImporter open(source.get(), destination.get());
    open.compare();
    open.parts.press(QDialogButtonBox::Ok);
    QVERIFY(open.isAccepted());

    // What was left is what was not ticked.
    OpenImporter again(source.get(), destination.get());
    again.compare();
    QCOMPARE(again.parts.rows().filter(": +"), QStringList());
    QCOMPARE(sorted(again.parts.rows()), sorted(open.parts.rows().filter(": -")));
}

void LibraryImporterFormTest::leavesOutWhatIsNotTicked()
{
    OpenImporter open(source.get(), destination.get());
    open.compare();
    open.parts.click(ImportKind::Drugs, ImportList::Added, "new drug B");
    open.parts.click(ImportKind::Morphologies, ImportList::Modified, "Worm body");
    // The others may refer to it, and bring it along.
    for (const char *name :
         {"New experiment 1", "New experiment 2", "New experiment 3", "EXPERIMENT same"})
        open.parts.click(ImportKind::Experiments, ImportList::Added, name);
    for (const char *name : {"Experiment time", "Experiment regen", "Experiment num"})
        open.parts.click(ImportKind::Experiments, ImportList::Modified, name);
    open.parts.press(QDialogButtonBox::Ok);
    QVERIFY(open.isAccepted());

    OpenImporter again(source.get(), destination.get());
    again.compare();
    QCOMPARE(
        sorted(again.parts.rows().filter(": +")),
        QStringList({"0, 0: +Experiment num", "0, 0: +Experiment regen", "0, 0: +Experiment time",
                     "0, 1: +EXPERIMENT same", "0, 1: +New experiment 1", "0, 1: +New experiment 2",
                     "0, 1: +New experiment 3", "2, 0: +Worm body", "3, 1: +new drug B"}));
}

void LibraryImporterFormTest::deletesWhatIsTicked()
{
    OpenImporter open(source.get(), destination.get());
    open.compare();
    open.parts.tickAll(true);
    open.parts.press(QDialogButtonBox::Ok);
    QVERIFY(open.isAccepted());

    OpenImporter again(source.get(), destination.get());
    again.compare();
    QCOMPARE(again.parts.rows(), QStringList());
}

void LibraryImporterFormTest::takesOverNothingWithoutTicks()
{
    OpenImporter open(source.get(), destination.get());
    open.compare();
    const QStringList before = content(destination.get());
    open.parts.tickAll(false);
    const int rows = int(open.parts.rows().size());
    const ProgressWatcher progress;
    open.parts.press(QDialogButtonBox::Ok);
    QVERIFY(open.isAccepted());
    QCOMPARE(content(destination.get()), before);
    QCOMPARE(progress.range, qMakePair(0, rows));
    QVERIFY(progress.values.contains(rows));
}

void LibraryImporterFormTest::changesNothingOnCancel_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("button") << false;
    QTest::newRow("Escape") << true;
}

void LibraryImporterFormTest::changesNothingOnCancel()
{
    QFETCH(const bool, byKey);
    OpenImporter open(source.get(), destination.get());
    open.compare();
    const QStringList before = content(destination.get());
    if (byKey)
        QTest::keyClick(&open.form, Qt::Key_Escape);
    else
        open.parts.press(QDialogButtonBox::Cancel);
    QVERIFY(open.isRejected());
    QCOMPARE(content(destination.get()), before);
}

void LibraryImporterFormTest::changesNothingBetweenEqualLibraries()
{
    TemporaryLibrary twin("import/dst.edb");
    const QStringList before = content(destination.get());
    OpenImporter open(&twin, destination.get());
    open.compare();
    open.parts.press(QDialogButtonBox::Ok);
    QVERIFY(open.isAccepted());
    QCOMPARE(content(destination.get()), before);
}

void LibraryImporterFormTest::readsTheSourceOnly()
{
    const QStringList before = content(source.get());
    OpenImporter open(source.get(), destination.get());
    open.compare();
    open.parts.tickAll(true);
    open.parts.press(QDialogButtonBox::Ok);
    QVERIFY(open.isAccepted());
    QCOMPARE(content(source.get()), before);
}

// --- The progress of the import ---

void LibraryImporterFormTest::showsTheProgressOfTheImport()
{
    OpenImporter open(source.get(), destination.get());
    open.compare();
    const int rows = int(open.parts.rows().size());
    const ProgressWatcher progress;
    open.parts.press(QDialogButtonBox::Ok);
    QCOMPARE(
        progress.labels,
        QStringList({"Importing publications...", "Importing species...", "Importing drugs...",
                     "Importing RNAi...", "Importing morphologies...", "Importing manipulations...",
                     "Importing experiments...", "Deleting elements..."}));
    QCOMPARE(progress.button, "Abort");
    QCOMPARE(progress.range, qMakePair(0, rows));
    QVERIFY(progress.values.contains(rows));
    QCOMPARE(progress.modality, Qt::WindowModal);
    QCOMPARE(progress.minimumDuration, 500);
    QCOMPARE(progress.parentWidget, &open.form);
}

void LibraryImporterFormTest::addAborts()
{
    QTest::addColumn<int>("value");
    QTest::newRow("publications") << 1;
    QTest::newRow("drugs") << 6;
    QTest::newRow("morphologies") << 12;
    QTest::newRow("manipulations") << 19;
    QTest::newRow("experiments") << 26;
    QTest::newRow("deletion") << 33;
    QTest::newRow("before the last row") << 46;
    QTest::newRow("after the last row") << 47;
}

void LibraryImporterFormTest::staysOpenWhenTheImportIsAborted_data()
{
    addAborts();
}

void LibraryImporterFormTest::staysOpenWhenTheImportIsAborted()
{
    QFETCH(const int, value);
    OpenImporter open(source.get(), destination.get());
    open.compare();
    open.parts.tickAll(true);
    open.parts.click(ImportKind::Drugs, ImportList::Added, "new drug B");
    const QStringList before = content(destination.get());
    const QStringList rows = open.parts.rows();
    const ProgressWatcher progress(value);
    open.parts.press(QDialogButtonBox::Ok);
    QCOMPARE(progress.values.last(), value);
    QVERIFY(open.form.isVisible());
    QCOMPARE(open.parts.rows(), rows);
    QCOMPARE(content(destination.get()), before);
}

void LibraryImporterFormTest::importsAfterAnAbort()
{
    OpenImporter open(source.get(), destination.get());
    open.compare();
    {
        const ProgressWatcher progress(25);
        open.parts.press(QDialogButtonBox::Ok);
        QVERIFY(open.form.isVisible());
    }
    open.parts.press(QDialogButtonBox::Ok);
    QVERIFY(open.isAccepted());
    OpenImporter again(source.get(), destination.get());
    again.compare();
    QCOMPARE(again.parts.rows().filter(": +"), QStringList());
}

void LibraryImporterFormTest::endsTheImportWhenItIsClosed_data()
{
    QTest::addColumn<int>("value");
    QTest::newRow("in the midst") << 10;
    QTest::newRow("before the last row") << 46;
    QTest::newRow("after the last row") << 47;
}

void LibraryImporterFormTest::endsTheImportWhenItIsClosed()
{
    QFETCH(const int, value);
    OpenImporter open(source.get(), destination.get());
    open.compare();
    const QStringList before = content(destination.get());
    const ProgressWatcher progress(value, [&open] { open.form.reject(); });
    open.parts.press(QDialogButtonBox::Ok);
    QVERIFY(open.isRejected());
    QCOMPARE(progress.values.last(), value);
    QCOMPARE(content(destination.get()), before);
}

void LibraryImporterFormTest::endsALongImportByTheButton()
{
    storeLargeDifference();
    OpenImporter open(source.get(), destination.get());
    open.compare();
    const ProgressWatcher progress;
    ModalAnswerer answerer;
    int atAbort = -1;
    answerer.expectProgress([&](QDialog *dialog) {
        atAbort = progress.values.last();
        QTest::mouseClick(dialog->findChild<QPushButton *>(), Qt::LeftButton);
    });
    open.parts.press(QDialogButtonBox::Ok);
    QCOMPARE(answerer.problems(), QStringList());
    QVERIFY(open.form.isVisible());
    QVERIFY(atAbort > 0);
    QVERIFY(atAbort < 300);
    QCOMPARE(destination->count("Morphology"), 0);
}

// --- Failures ---

void LibraryImporterFormTest::tellsThatAFileCannotBeRead()
{
    const QStringList before = content(destination.get());
    source->db()->disconnect();
    QFile file(source->fileName());
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QVERIFY(file.write("no database at all") > 0);
    file.close();
    QCOMPARE(source->db()->connect(source->fileName(), false), int(DB::Opened));

    ModalAnswerer answerer;
    answerer.expectBox({"Cannot compare databases",
                        "Unable to read both database files. Another program may be using one of "
                        "them.",
                        QMessageBox::Cancel, QMessageBox::Cancel, QMessageBox::Critical},
                       QMessageBox::Cancel);
    OpenImporter open(source.get(), destination.get());
    open.compare();
    QCOMPARE(answerer.problems(), QStringList());
    QVERIFY(open.isRejected());
    QCOMPARE(content(destination.get()), before);
}

void LibraryImporterFormTest::tellsThatTheDestinationIsLocked()
{
    OpenImporter open(source.get(), destination.get());
    open.compare();
    const QStringList before = content(destination.get());
    DB other;
    QCOMPARE(other.connect(destination->fileName(), false), int(DB::Opened));
    QVERIFY(other.newQuery()->exec("BEGIN EXCLUSIVE"));

    ModalAnswerer answerer;
    answerer.expectBox({"Database is locked",
                        "Another program is using the database file (library.edb). Nothing was "
                        "imported. Please, try again later.",
                        QMessageBox::Cancel, QMessageBox::Cancel, QMessageBox::Critical},
                       QMessageBox::Cancel);
    const ProgressWatcher progress;
    open.parts.press(QDialogButtonBox::Ok);
    QCOMPARE(answerer.problems(), QStringList());
    QVERIFY(open.form.isVisible());
    QVERIFY(progress.values.isEmpty() || progress.values.last() == 0); // nothing had begun
    QVERIFY(other.newQuery()->exec("ROLLBACK"));
    QCOMPARE(content(destination.get()), before);

    open.parts.press(QDialogButtonBox::Ok);
    QVERIFY(open.isAccepted());
    QVERIFY(names(destination.get(), "Drug").contains("new drug B"));
}

static const QString unknownFailure =
    "Unable to import into the database file (library.edb): it cannot be written, or one of the "
    "files cannot be read or has changed since they were compared. Nothing was imported. Please, "
    "close the dialog and try again.";

void LibraryImporterFormTest::refusesFilesThatHaveChangedSince_data()
{
    QTest::addColumn<bool>("ofSource");
    QTest::newRow("source") << true;
    QTest::newRow("destination") << false;
}

void LibraryImporterFormTest::refusesFilesThatHaveChangedSince()
{
    QFETCH(const bool, ofSource);
    OpenImporter open(source.get(), destination.get());
    open.compare();
    DB other;
    const TemporaryLibrary &changed = ofSource ? *source : *destination;
    QCOMPARE(other.connect(changed.fileName(), false), int(DB::Opened));
    QVERIFY(other.newQuery()->exec("UPDATE Drug SET Name='another' WHERE Id=1"));
    const QStringList before = content(destination.get());

    ModalAnswerer answerer;
    answerer.expectBox({"Import error", unknownFailure, QMessageBox::Cancel, QMessageBox::Cancel,
                        QMessageBox::Critical},
                       QMessageBox::Cancel);
    open.parts.press(QDialogButtonBox::Ok);
    QCOMPARE(answerer.problems(), QStringList());
    QVERIFY(open.form.isVisible());
    QCOMPARE(content(destination.get()), before);
}

void LibraryImporterFormTest::tellsThatTheDestinationCannotBeWritten_data()
{
    QTest::addColumn<QStringList>("obstacle");
    QTest::addColumn<QString>("text");
    QTest::newRow("an element")
        << QStringList("CREATE TRIGGER obstacle BEFORE INSERT ON Drug WHEN new.Name='new drug B' "
                       "BEGIN SELECT RAISE(ABORT, 'refused'); END")
        << "Unable to write \"new drug B\" into the database file (library.edb). Nothing was "
           "imported.";
    QTest::newRow("at the end")
        << QStringList({"CREATE TABLE Later (Drug INTEGER REFERENCES Drug(Id) DEFERRABLE INITIALLY "
                        "DEFERRED)",
                        "CREATE TRIGGER obstacle AFTER INSERT ON Drug BEGIN INSERT INTO Later "
                        "VALUES(-1); END"})
        << unknownFailure;
}

void LibraryImporterFormTest::tellsThatTheDestinationCannotBeWritten()
{
    QFETCH(const QStringList, obstacle);
    QFETCH(const QString, text);
    for (const QString &statement : obstacle)
        destination->run(statement);
    OpenImporter open(source.get(), destination.get());
    open.compare();
    const QStringList before = content(destination.get());
    ModalAnswerer answerer;
    answerer.expectBox(
        {"Import error", text, QMessageBox::Cancel, QMessageBox::Cancel, QMessageBox::Critical},
        QMessageBox::Cancel);
    open.parts.press(QDialogButtonBox::Ok);
    QCOMPARE(answerer.problems(), QStringList());
    QVERIFY(open.form.isVisible());
    QCOMPARE(content(destination.get()), before);

    destination->run("DROP TRIGGER obstacle");
    open.parts.press(QDialogButtonBox::Ok);
    QVERIFY(open.isAccepted());
    QVERIFY(names(destination.get(), "Drug").contains("new drug B"));
}

QTEST_MAIN(LibraryImporterFormTest)
#include "LibraryImporterFormTest.moc"
