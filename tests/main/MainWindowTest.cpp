#include "BuildConfig.h"
#include "main/ProgramRun.h"
#include "support/ProgressWatcher.h"
#include "support/TemporaryLibrary.h"

#include <QAction>
#include <QDesktopServices>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>
#include <QStatusBar>
#include <QTabWidget>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextTable>
#include <QToolBar>

namespace Planaria {

/// The frame: what it consists of, how it shows what is open, and what it remembers.
class MainWindowTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    // What it consists of
    void givesEachActionItsTextKeyTipAndIcon_data();
    void givesEachActionItsTextKeyTipAndIcon();
    void makesSixteenActions();
    void ordersItsMenus();
    void hasNoToolBarAndOneLabelInTheStatusBar();
    void bearsTheWormWithFourHeads();
    void titlesItsTabs();
    void startsWithoutATextUntilTheEventLoopRuns();

    // Commands
    void obeysItsKeys_data();
    void obeysItsKeys();
    void exitsThroughTheMenu();
    void acceptsEveryClose();
    void opensItsTools_data();
    void opensItsTools();
    void showsNoToolThatTheUserAborts_data();
    void showsNoToolThatTheUserAborts();
    void opensTheHelpInTheBrowser();
    void headsTheAboutBoxWithNameAndVersion();
    void saysInTheAboutBoxWhatTheProgramIs();
    void linksTheAboutBoxToTheWebSiteAndTheLicences();

    // Status
    void wordsTheStatus_data();
    void wordsTheStatus();
    void countsTheRowsOfEachTab_data();
    void countsTheRowsOfEachTab();
    void staysSilentOnTheSearchTab();
    void saysNothingOfAFileThatIsOpenedOnTheSearchTab();
    void reloadsTheNewTabOnly();
    void reloadsNothingWhileNoFileIsOpen();
    void showsWhatChangedSinceTheTabWasLeft();
    void closesTheFileThatATabFindsCorrupted_data();
    void closesTheFileThatATabFindsCorrupted();

    // Settings
    void startsWithDefaults();
    void namesTheApplicationForItsSettings();
    void remembersSizeAndPlace();
    void keepsSizeAndPlaceFromBeforeMaximizing();
    void forgetsMaximizedOnceItIsNot();

    // The first file
    void reopensTheFileOfTheLastRun();
    void remembersThatNoFileWasOpen();
    void forgetsALastFileThatIsGone();
    void opensTheFileOfTheCommandLine();
    void ignoresFurtherArguments();
    void saysNothingAboutAMissingArgument();
    void takesAnEmptyArgumentForNoFile();
    void makesTheNameOfTheCommandLineAbsolute();
    void asksOverAVisibleWindow();

public slots:
    void takeUrl(const QUrl &url) { openedUrl = url; }

private:
    QTextDocument *shownAboutText(QObject *parent);

    QUrl openedUrl;
};

void MainWindowTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral("QSql")));
    forgetSettings();
}

namespace {

QList<QAction *> actionsOf(const MainWindow &window)
{
    return window.findChildren<QAction *>(QString(), Qt::FindDirectChildrenOnly);
}

QStringList textsOf(const QMenu *menu)
{
    QStringList texts;
    for (const QAction *entry : menu->actions())
        texts += entry->isSeparator() ? QStringLiteral("-") : entry->text();
    return texts;
}

QVariant setting(const QString &key)
{
    return QSettings().value(key);
}

void set(const QString &key, const QVariant &value)
{
    QSettings().setValue(key, value);
}

} // namespace

// --- What it consists of ---

void MainWindowTest::givesEachActionItsTextKeyTipAndIcon_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("tip");
    QTest::addColumn<QString>("icon");

    int index = 0;
    const auto add = [&index](const char *text, const char *key, const char *tip,
                              const char *icon) {
        QTest::newRow(text) << index++ << text << key << tip << icon;
    };
    add("&New database...", "Ctrl+N", "Create a new database file", "page_white_database");
    add("&Open database...", "Ctrl+O", "Load an existing database file", "folder_database");
    add("&Save database as...", "Ctrl+S", "Save the current database into a different file",
        "database_save");
    add("&Close database", "Ctrl+C", "Close the current database", "database_go");
    add("&Vacuum database", "Ctrl+V", "Rebuild the database, defragmenting and reducing the size",
        "database_lightning");
    add("&Import...", "Ctrl+I",
        "Import the experiments of another database into the current database", "database_add");
    add("Exit", "Alt+F4", "Exit the application", "door_in");
    add("&About", "Ctrl+A", "Release information about Vermidex", "brick");
    add("View help", "Ctrl+F1", "Show Vermidex help documents", "help");
    add("Morphology distance calculator", "", "Tool to calculate the distance between morphologies",
        "calculator");
    add("Morphology distance comparator", "",
        "Tool to compare the distance of a morphology with the rest of morphologies in the "
        "database",
        "calculator_add");
    add("Morphology graphical search", "",
        "Tool to search morphologies in the database close to an arbitrary created morphology",
        "find");
    add("Morphology list viewer", "",
        "Tool to display a graphical list of  all the morphologies in the database", "report");
    add("Delete all experiments", "", "Delete all experiments in the database!", "table_delete");
    add("Delete all experiments and manipulations", "",
        "Delete all experiments and manipulations in the database!", "table_delete");
    add("Delete all", "",
        "Delete all experiments, manipulations, and morphologies in the database!",
        "database_delete");
}

void MainWindowTest::givesEachActionItsTextKeyTipAndIcon()
{
    QFETCH(int, index);
    QFETCH(QString, icon);

    const MainWindow window;
    const QAction *action = actionsOf(window).at(index);
    QTEST(action->text(), "text");
    QTEST(action->shortcut().toString(), "key");
    QTEST(action->statusTip(), "tip");

    const QIcon expected(QStringLiteral(":/Images/famfamfam_silk_icons/%1.png").arg(icon));
    QVERIFY(!expected.pixmap(16).isNull());
    QCOMPARE(action->icon().pixmap(16).toImage(), expected.pixmap(16).toImage());
}

void MainWindowTest::makesSixteenActions()
{
    const MainWindow window;
    QCOMPARE(actionsOf(window).size(), 16);
}

void MainWindowTest::ordersItsMenus()
{
    const MainWindow window;
    const QList<QAction *> menus = window.menuBar()->actions();
    QCOMPARE(menus.size(), 4);

    QCOMPARE(menus[0]->text(), "&File");
    QCOMPARE(textsOf(menus[0]->menu()),
             QStringList({"&New database...", "&Open database...", "&Save database as...",
                          "&Close database", "-", "&Vacuum database", "&Import...", "-", "Exit"}));
    QCOMPARE(menus[1]->text(), "&Edit");
    QCOMPARE(textsOf(menus[1]->menu()),
             QStringList({"Delete all experiments", "Delete all experiments and manipulations",
                          "Delete all"}));
    QCOMPARE(menus[2]->text(), "&Tools");
    QCOMPARE(textsOf(menus[2]->menu()),
             QStringList({"Morphology graphical search", "Morphology list viewer",
                          "Morphology distance calculator", "Morphology distance comparator"}));
    QCOMPARE(menus[3]->text(), "&Help");
    QCOMPARE(textsOf(menus[3]->menu()), QStringList({"View help", "-", "&About"}));
}

void MainWindowTest::hasNoToolBarAndOneLabelInTheStatusBar()
{
    const MainWindow window;
    QCOMPARE(window.findChildren<QToolBar *>().size(), 0);
    QCOMPARE(window.statusBar()->findChildren<QLabel *>().size(), 1);
}

void MainWindowTest::bearsTheWormWithFourHeads()
{
    const MainWindow window;
    const QIcon expected(QStringLiteral(":/Images/quadrupleHead32.png"));
    QVERIFY(!expected.pixmap(32).isNull());
    QCOMPARE(window.windowIcon().pixmap(32).toImage(), expected.pixmap(32).toImage());
}

void MainWindowTest::titlesItsTabs()
{
    const ProgramRun run;
    QStringList titles;
    for (int i = 0; i < run.tabs()->count(); ++i)
        titles += run.tabs()->tabText(i);
    QCOMPARE(titles, QStringList({"Experiments", "Manipulations", "Morphologies", "Drugs", "RNAi",
                                  "Species", "Publications", "Search"}));
    QCOMPARE(run.tabs()->currentIndex(), 0);
}

void MainWindowTest::startsWithoutATextUntilTheEventLoopRuns()
{
    TemporaryLibrary library;
    ProgramRun run({library.fileName()});
    QCOMPARE(run.window.windowTitle(), "Vermidex");
    QCOMPARE(run.status(), QString());
    QVERIFY(!run.tabs()->isEnabled());

    run.start();
    QCOMPARE(run.window.windowTitle(), "library.edb - Vermidex");
}

// --- Commands ---

void MainWindowTest::obeysItsKeys_data()
{
    QTest::addColumn<QKeySequence>("key");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("opensDialog");

    QTest::newRow("New") << QKeySequence("Ctrl+N") << "&New database..." << true;
    QTest::newRow("Open") << QKeySequence("Ctrl+O") << "&Open database..." << true;
    QTest::newRow("Save as") << QKeySequence("Ctrl+S") << "&Save database as..." << true;
    QTest::newRow("Close") << QKeySequence("Ctrl+C") << "&Close database" << false;
    QTest::newRow("Vacuum") << QKeySequence("Ctrl+V") << "&Vacuum database" << true;
    QTest::newRow("Exit") << QKeySequence("Alt+F4") << "Exit" << false;
    QTest::newRow("About") << QKeySequence("Ctrl+A") << "&About" << true;
}

void MainWindowTest::obeysItsKeys()
{
    QFETCH(QKeySequence, key);
    QFETCH(QString, text);
    QFETCH(bool, opensDialog);

    TemporaryLibrary library;
    ProgramRun run({library.fileName()});
    run.start();
    QVERIFY(QTest::qWaitForWindowActive(&run.window));
    const QSignalSpy triggered(run.action(text), &QAction::triggered);
    if (opensDialog)
        run.answerer.expectDialog([](QDialog *dialog) { dialog->reject(); });
    QTest::keySequence(&run.window, key);

    QCOMPARE(triggered.size(), 1);
    QCOMPARE(run.problems(), QString());
}

void MainWindowTest::exitsThroughTheMenu()
{
    TemporaryLibrary library;
    {
        ProgramRun run({library.fileName()});
        QTimer::singleShot(0, &run.window, [&run] { run.choose("Exit"); });
        run.window.show();
        QCOMPARE(QApplication::exec(), 0);
        QVERIFY(!run.window.isVisible());
        QCOMPARE(run.problems(), QString());
    }
    QCOMPARE(setting("DB/lastFile"), library.fileName());
}

void MainWindowTest::acceptsEveryClose()
{
    TemporaryLibrary library;
    ProgramRun run({library.fileName()});
    run.start();
    QVERIFY(run.window.close());
    QCOMPARE(run.problems(), QString());
}

void MainWindowTest::opensItsTools_data()
{
    QTest::addColumn<QString>("tool");
    for (const char *tool : {"Morphology graphical search", "Morphology list viewer",
                             "Morphology distance calculator", "Morphology distance comparator"})
        QTest::newRow(tool) << tool;
}

void MainWindowTest::opensItsTools()
{
    QFETCH(QString, tool);
    TemporaryLibrary library;
    library.run("INSERT INTO Morphology (Name) VALUES('Cyclops'), ('Two heads')");
    ProgramRun run({library.fileName()});
    run.start();
    QPointer<QDialog> shown;
    QString title;
    run.answerer.expectDialog([&shown, &title](QDialog *dialog) {
        shown = dialog;
        title = dialog->windowTitle();
        QCOMPARE(dialog->windowModality(), Qt::ApplicationModal);
        dialog->reject();
    });
    run.choose(tool);
    QCOMPARE(title, tool);
    QVERIFY(!shown); // it is gone with its data
    QCOMPARE(run.problems(), QString());
}

void MainWindowTest::showsNoToolThatTheUserAborts_data()
{
    QTest::addColumn<QString>("tool");
    for (const char *tool : {"Morphology list viewer", "Morphology distance comparator"})
        QTest::newRow(tool) << tool;
}

void MainWindowTest::showsNoToolThatTheUserAborts()
{
    QFETCH(QString, tool);
    TemporaryLibrary library;
    library.run("INSERT INTO Morphology (Name) VALUES('Cyclops'), ('Two heads')");
    ProgramRun run({library.fileName()});
    run.start();
    const ProgressWatcher progress(1);
    run.choose(tool);
    QCOMPARE(progress.values, QList<int>({0, 1}));
    QCOMPARE(progress.parentWidget, &run.window);
    QCOMPARE(run.problems(), QString()); // as each dialog that is shown would be
}

void MainWindowTest::opensTheHelpInTheBrowser()
{
    const QUrl help(QLatin1String(BuildConfig::website) + QStringLiteral("/help"));
    QDesktopServices::setUrlHandler(help.scheme(), this, "takeUrl");

    ProgramRun run;
    run.start();
    run.choose("View help");
    QDesktopServices::unsetUrlHandler(help.scheme());
    QCOMPARE(openedUrl, help);
}

QTextDocument *MainWindowTest::shownAboutText(QObject *parent)
{
    ProgramRun run;
    run.start();
    QString html;
    run.answerer.expectDialog([&html](QDialog *dialog) {
        auto *box = qobject_cast<QMessageBox *>(dialog);
        if (box && box->windowTitle() == QStringLiteral("About Vermidex") &&
            box->standardButtons() == QMessageBox::Ok)
            html = box->text();
        dialog->reject();
    });
    run.choose("&About");

    auto *document = new QTextDocument(parent);
    document->setHtml(html);
    return document;
}

namespace {

struct Link
{
    QString words;
    QString address;
    bool underlined = true;
};

QList<Link> linksOf(const QTextDocument *document)
{
    QList<Link> links;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            const QTextCharFormat format = part.fragment().charFormat();
            if (format.isAnchor())
                links += {part.fragment().text(), format.anchorHref(), format.fontUnderline()};
        }
    }
    return links;
}

QTextCursor cellStart(const QTextTable *table, int row, int column)
{
    QTextCursor cursor = table->cellAt(row, column).firstCursorPosition();
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    return cursor;
}

} // namespace

void MainWindowTest::headsTheAboutBoxWithNameAndVersion()
{
    QObject owner;
    const QTextDocument *document = shownAboutText(&owner);
    const QList<QTextFrame *> frames = document->rootFrame()->childFrames();
    QCOMPARE(frames.size(), 1);
    const auto *table = qobject_cast<QTextTable *>(frames.first());
    QVERIFY(table);
    QCOMPARE(table->format().width(), QTextLength(QTextLength::PercentageLength, 100));

    const QTextCursor name = cellStart(table, 0, 0);
    QCOMPARE(name.selectedText(), "Vermidex");
    QCOMPARE(name.charFormat().fontPointSize(), 18.0);
    QVERIFY(name.blockFormat().alignment() & Qt::AlignLeft);
    const QTextCursor subtitle = cellStart(table, 1, 0);
    QVERIFY(!subtitle.selectedText().isEmpty());
    QCOMPARE(subtitle.charFormat().fontPointSize(), 12.0);
    const QTextCursor version = cellStart(table, 1, 1);
    QCOMPARE(version.selectedText(), "Version 2.2.18");
    QVERIFY(version.blockFormat().alignment() & Qt::AlignRight);
    QCOMPARE(table->cellAt(1, 1).format().toTableCellFormat().verticalAlignment(),
             QTextCharFormat::AlignBottom);
}

void MainWindowTest::saysInTheAboutBoxWhatTheProgramIs()
{
    QObject owner;
    const QTextDocument *document = shownAboutText(&owner);
    QList<QTextBlock> below;
    for (auto part = document->rootFrame()->begin(); !part.atEnd(); ++part) {
        if (part.currentBlock().isValid() && !part.currentBlock().text().isEmpty())
            below += part.currentBlock();
    }
    QCOMPARE(below.size(), 3);
    QVERIFY(below[0].previous().blockFormat().hasProperty(
        QTextFormat::BlockTrailingHorizontalRulerWidth));
    QCOMPARE(below[0].text(),
             QStringLiteral("Vermidex is an application for the design, storage, and search of "
                            "planarian regenerative experiments. For more information and new "
                            "versions, please visit %1.")
                 .arg(QLatin1String(BuildConfig::website)));
    QVERIFY(below[2].text().startsWith(QStringLiteral("This program makes use of Qt")));
    QVERIFY(below[2].text().contains(QStringLiteral("Silk icon set")));
    const QTextCharFormat smallPrint = below[2].begin().fragment().charFormat();
    QVERIFY(smallPrint.intProperty(QTextFormat::FontSizeAdjustment) < 0);
}

void MainWindowTest::linksTheAboutBoxToTheWebSiteAndTheLicences()
{
    QObject owner;
    const QList<Link> links = linksOf(shownAboutText(&owner));
    QCOMPARE(links.size(), 3);
    QCOMPARE(links[0].address, QLatin1String(BuildConfig::website));
    QVERIFY(!links[0].underlined);
    QVERIFY(links[1].words.contains(QStringLiteral("LGPL")));
    QVERIFY(links[2].words.contains(QStringLiteral("CC BY 3.0")));
    QVERIFY(links[1].address != links[2].address);
}

// --- Status ---

void MainWindowTest::wordsTheStatus_data()
{
    QTest::addColumn<int>("n");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("plural");
    QTest::addColumn<QString>("expected");

    QTest::newRow("no word") << 5 << ""
                             << "worms"
                             << "";
    QTest::newRow("0") << 0 << "worm"
                       << "worms"
                       << "No worms in the database";
    QTest::newRow("1") << 1 << "worm"
                       << "worms"
                       << "1 worm in the database";
    QTest::newRow("2") << 2 << "worm"
                       << "worms"
                       << "2 worms in the database";
    QTest::newRow("12345") << 12345 << "worm"
                           << "worms"
                           << "12345 worms in the database";
}

void MainWindowTest::wordsTheStatus()
{
    QFETCH(int, n);
    QFETCH(QString, name);
    QFETCH(QString, plural);

    ProgramRun run;
    run.start();
    run.window.updateStatusText(n, name, plural);
    QTEST(run.status(), "expected");
}

void MainWindowTest::countsTheRowsOfEachTab_data()
{
    QTest::addColumn<QString>("insertion");
    QTest::addColumn<QStringList>("expected");

    const auto add = [](const char *tab, const char *table, const char *values, const char *one,
                        const char *more) {
        const auto insertion = QStringLiteral("INSERT INTO %1 VALUES %2").arg(table, values);
        const QStringList texts = {QStringLiteral("No %1 in the database").arg(more),
                                   QStringLiteral("1 %1 in the database").arg(one),
                                   QStringLiteral("2 %1 in the database").arg(more)};
        QTest::newRow(tab) << insertion << texts;
    };
    add("Experiments", "Experiment", "(%1, 'e%1', 1, 1, 1)", "experiment", "experiments");
    add("Manipulations", "Manipulation", "(%1, 'm%1', 1)", "manipulation", "manipulations");
    add("Morphologies", "Morphology", "(%1, 'm%1')", "morphology", "morphologies");
    add("Drugs", "Drug", "(%1, 'd%1')", "drug", "drugs");
    add("RNAi", "RNAi", "(%1, 'r%1', NULL)", "RNAi", "RNAi");
    add("Species", "Species", "(%1, 's%1')", "Species", "Species");
    add("Publications", "Publication", "(%1, 'p%1', NULL, NULL)", "publication", "publications");
}

void MainWindowTest::countsTheRowsOfEachTab()
{
    QFETCH(QString, insertion);
    QFETCH(QStringList, expected);

    TemporaryLibrary library;
    library.run("PRAGMA foreign_keys = false");
    if (insertion.startsWith(QLatin1String("INSERT INTO Experiment"))) { // is shown with its names
        library.run("INSERT INTO Manipulation VALUES (1, 'm', 1)");
        library.run("INSERT INTO Species VALUES (1, 's')");
        library.run("INSERT INTO Publication VALUES (1, 'p', NULL, NULL)");
    }
    ProgramRun run({library.fileName()});
    run.start();
    for (int i = 0; i < run.tabs()->count(); ++i) {
        if (run.tabs()->tabText(i) == QLatin1String(QTest::currentDataTag()))
            run.tabs()->setCurrentIndex(i);
    }

    QCOMPARE(run.status(), expected[0]);
    for (int n = 1; n <= 2; ++n) {
        library.run(insertion.arg(n));
        run.window.updateTab();
        QCOMPARE(run.status(), expected[n]);
    }
}

void MainWindowTest::staysSilentOnTheSearchTab()
{
    TemporaryLibrary library;
    ProgramRun run({library.fileName()});
    run.start();
    run.tabs()->setCurrentIndex(3);
    run.tabs()->setCurrentIndex(7);
    QCOMPARE(run.status(), "No drugs in the database");
}

void MainWindowTest::saysNothingOfAFileThatIsOpenedOnTheSearchTab()
{
    TemporaryLibrary library;
    ProgramRun run;
    run.start();
    run.tabs()->setCurrentIndex(7);
    run.openFile(library.fileName());
    QCOMPARE(run.frame(), ProgramRun::openFrame("library.edb - Vermidex", QString()));
    QCOMPARE(run.problems(), QString());
}

namespace {

/// How often each tab tells its number of rows, which it does whenever it is read.
class TabReads final
{
public:
    explicit TabReads(const QTabWidget *tabs)
    {
        for (int i = 0; i < tabs->count(); ++i)
            spies.push_back(std::make_unique<QSignalSpy>(
                tabs->widget(i), SIGNAL(nEleChanged(int, QString, QString))));
    }

    [[nodiscard]] QList<int> counts() const
    {
        QList<int> all;
        for (const auto &spy : spies)
            all += static_cast<int>(spy->size());
        return all;
    }

private:
    std::vector<std::unique_ptr<QSignalSpy>> spies;
};

} // namespace

void MainWindowTest::reloadsTheNewTabOnly()
{
    TemporaryLibrary library;
    ProgramRun run({library.fileName()});
    const TabReads reads(run.tabs());
    run.start();
    const int atStart = reads.counts().at(0);
    QVERIFY(atStart > 0);
    QCOMPARE(reads.counts(), QList<int>({atStart, 0, 0, 0, 0, 0, 0, 0}));

    run.tabs()->setCurrentIndex(3);
    QCOMPARE(reads.counts(), QList<int>({atStart, 0, 0, 1, 0, 0, 0, 0}));
    run.tabs()->setCurrentIndex(5);
    QCOMPARE(reads.counts(), QList<int>({atStart, 0, 0, 1, 0, 1, 0, 0}));
    run.tabs()->setCurrentIndex(3);
    QCOMPARE(reads.counts(), QList<int>({atStart, 0, 0, 2, 0, 1, 0, 0}));
}

void MainWindowTest::reloadsNothingWhileNoFileIsOpen()
{
    ProgramRun run;
    const TabReads reads(run.tabs());
    run.start();
    for (int i = 0; i < run.tabs()->count(); ++i)
        run.tabs()->setCurrentIndex(i);
    QCOMPARE(reads.counts(), QList<int>(8, 0));
    QCOMPARE(run.frame(), ProgramRun::closedFrame());
}

void MainWindowTest::showsWhatChangedSinceTheTabWasLeft()
{
    TemporaryLibrary library;
    ProgramRun run({library.fileName()});
    run.start();
    run.tabs()->setCurrentIndex(3);
    QCOMPARE(run.status(), "No drugs in the database");

    run.tabs()->setCurrentIndex(5);
    library.run("INSERT INTO Drug (Name) VALUES('Octanol')");
    QCOMPARE(run.status(), "No Species in the database");
    run.tabs()->setCurrentIndex(3);
    QCOMPARE(run.status(), "1 drug in the database");
}

void MainWindowTest::closesTheFileThatATabFindsCorrupted_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < 8; ++i)
        QTest::addRow("tab %d", i) << i;
}

void MainWindowTest::closesTheFileThatATabFindsCorrupted()
{
    QFETCH(int, index);

    TemporaryLibrary library;
    ProgramRun run({library.fileName()});
    run.start();
    run.answerer.expectBox(refusal("Database file corrupted", "The database file is corrupted."),
                           QMessageBox::Cancel);
    QMetaObject::invokeMethod(run.tabs()->widget(index), "databaseCorrupted");
    QCOMPARE(run.frame(), ProgramRun::closedFrame());
    QCOMPARE(run.problems(), QString());
}

// --- Settings ---

void MainWindowTest::startsWithDefaults()
{
    {
        ProgramRun run;
        run.start();
        QCOMPARE(run.window.size(), QSize(800, 600));
        QVERIFY(!run.window.isMaximized());
        QCOMPARE(run.frame(), ProgramRun::closedFrame());
        QCOMPARE(run.problems(), QString());
    }
    QStringList keys = QSettings().allKeys();
    keys.sort();
    QCOMPARE(keys, QStringList({"DB/lastFile", "MainWindow/maximized", "MainWindow/pos",
                                "MainWindow/size"}));
    QCOMPARE(setting("MainWindow/size").toSize(), QSize(800, 600));
    QCOMPARE(setting("MainWindow/maximized").toBool(), false);
    QCOMPARE(setting("DB/lastFile"), "");
}

void MainWindowTest::namesTheApplicationForItsSettings()
{
    QCoreApplication::setOrganizationName("Other");
    QCoreApplication::setOrganizationDomain("other.example");
    QCoreApplication::setApplicationName("Other");

    const MainWindow window;
    QCOMPARE(QCoreApplication::organizationName(), QLatin1String(BuildConfig::organisation));
    QCOMPARE(QCoreApplication::organizationDomain(),
             QLatin1String(BuildConfig::organisationDomain));
    QCOMPARE(QCoreApplication::applicationName(), "Vermidex");
}

void MainWindowTest::remembersSizeAndPlace()
{
    {
        ProgramRun run;
        run.start();
        run.window.resize(640, 480);
        run.window.move(30, 40);
    }
    QCOMPARE(setting("MainWindow/size").toSize(), QSize(640, 480));
    QCOMPARE(setting("MainWindow/pos").toPoint(), QPoint(30, 40));
    QCOMPARE(setting("MainWindow/maximized").toBool(), false);

    ProgramRun next;
    next.start();
    QCOMPARE(next.window.size(), QSize(640, 480));
    QCOMPARE(next.window.pos(), QPoint(30, 40));
}

void MainWindowTest::keepsSizeAndPlaceFromBeforeMaximizing()
{
    set("MainWindow/size", QSize(640, 480));
    set("MainWindow/pos", QPoint(30, 40));
    for (int i = 0; i < 2; ++i) {
        ProgramRun run;
        run.start();
        QCOMPARE(run.window.isMaximized(), i == 1);
        run.window.showMaximized();
        QCoreApplication::processEvents();
        QVERIFY(run.window.size() != QSize(640, 480));
    }
    QCOMPARE(setting("MainWindow/maximized").toBool(), true);
    QCOMPARE(setting("MainWindow/size").toSize(), QSize(640, 480));
    QCOMPARE(setting("MainWindow/pos").toPoint(), QPoint(30, 40));
}

void MainWindowTest::forgetsMaximizedOnceItIsNot()
{
    set("MainWindow/size", QSize(640, 480));
    set("MainWindow/maximized", true);
    {
        ProgramRun run;
        run.start();
        QVERIFY(run.window.isMaximized());
        run.window.showNormal();
        QCoreApplication::processEvents();
    }
    QCOMPARE(setting("MainWindow/maximized").toBool(), false);
    QCOMPARE(setting("MainWindow/size").toSize(), QSize(640, 480));
}

// --- The first file ---

void MainWindowTest::reopensTheFileOfTheLastRun()
{
    TemporaryLibrary library;
    {
        ProgramRun run({library.fileName()});
        run.start();
    }
    QCOMPARE(setting("DB/lastFile"), library.fileName());

    ProgramRun next;
    next.start();
    QCOMPARE(next.frame(),
             ProgramRun::openFrame("library.edb - Vermidex", "No experiments in the database"));
    QCOMPARE(next.problems(), QString());
}

void MainWindowTest::remembersThatNoFileWasOpen()
{
    TemporaryLibrary library;
    {
        ProgramRun run({library.fileName()});
        run.start();
        run.choose("&Close database");
    }
    QCOMPARE(setting("DB/lastFile"), "");
}

void MainWindowTest::forgetsALastFileThatIsGone()
{
    set("DB/lastFile", QDir::current().filePath("gone.edb"));
    {
        ProgramRun run;
        run.start();
        QCOMPARE(run.frame(), ProgramRun::closedFrame());
        QCOMPARE(run.problems(), QString());
    }
    QCOMPARE(setting("DB/lastFile"), "");
    QVERIFY(!QFile::exists("gone.edb"));
}

void MainWindowTest::opensTheFileOfTheCommandLine()
{
    TemporaryLibrary library;
    TemporaryLibrary other;
    QVERIFY(QFile::rename(other.fileName(), other.filePath("other.edb")));
    set("DB/lastFile", library.fileName());
    {
        ProgramRun run({other.filePath("other.edb")});
        run.start();
        QCOMPARE(run.frame(),
                 ProgramRun::openFrame("other.edb - Vermidex", "No experiments in the database"));
        QCOMPARE(run.problems(), QString());
    }
    QCOMPARE(setting("DB/lastFile"), other.filePath("other.edb"));
}

void MainWindowTest::ignoresFurtherArguments()
{
    TemporaryLibrary library;
    ProgramRun run({library.fileName(), "second.edb", "--third"});
    run.start();
    QCOMPARE(run.window.windowTitle(), "library.edb - Vermidex");
    QCOMPARE(run.problems(), QString());
}

void MainWindowTest::saysNothingAboutAMissingArgument()
{
    TemporaryLibrary library;
    set("DB/lastFile", library.fileName());
    ProgramRun run({library.filePath("missing.edb")});
    run.start();
    QCOMPARE(run.frame(), ProgramRun::closedFrame());
    QCOMPARE(run.problems(), QString());
    QVERIFY(!QFile::exists(library.filePath("missing.edb")));
}

void MainWindowTest::takesAnEmptyArgumentForNoFile()
{
    ProgramRun run({QString()});
    run.start();
    QCOMPARE(run.frame(), ProgramRun::closedFrame());
    QCOMPARE(run.problems(), QString());
}

void MainWindowTest::makesTheNameOfTheCommandLineAbsolute()
{
    TemporaryLibrary library;
    const QString folder = QFileInfo(library.fileName()).absolutePath();
    const QString before = QDir::currentPath();
    QDir::setCurrent(folder);
    {
        ProgramRun run({"library.edb"});
        QDir::setCurrent(before);
        run.start();
        QCOMPARE(run.window.windowTitle(), "library.edb - Vermidex");
    }
    QCOMPARE(setting("DB/lastFile"), library.fileName());
}

void MainWindowTest::asksOverAVisibleWindow()
{
    TemporaryLibrary library;
    library.run("DROP TABLE Meta");
    ProgramRun run({library.fileName()});
    bool visible = false;
    run.answerer.expectDialog([&](QDialog *dialog) {
        visible = run.window.isVisible() && dialog->parentWidget() == &run.window;
        dialog->reject();
    });
    run.start();
    QVERIFY(visible);
    QCOMPARE(run.problems(), QString());
}

} // namespace Planaria

int main(int argc, char *argv[])
{
    return Planaria::runWindowTest<Planaria::MainWindowTest>(argc, argv);
}

#include "MainWindowTest.moc"
