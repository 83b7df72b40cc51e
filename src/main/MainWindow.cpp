#include "main/MainWindow.h"

#include "BuildConfig.h"
#include "browse/DrugsWidget.h"
#include "browse/ExperimentsWidget.h"
#include "browse/ManipulationsWidget.h"
#include "browse/MorphologiesWidget.h"
#include "browse/PublicationsWidget.h"
#include "browse/RNAiWidget.h"
#include "browse/SearchWidget.h"
#include "browse/SpeciesWidget.h"
#include "db/DB.h"
#include "distance/MorphologyDistCompForm.h"
#include "distance/MorphologyDistForm.h"
#include "distance/MorphologyDistSearchForm.h"
#include "morphology/MorphologyListViewerForm.h"
#include "widgets/SilkIcon.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QSettings>
#include <QStatusBar>
#include <QTabWidget>
#include <QTimer>
#include <QUrl>

#include <utility>

namespace Planaria {

namespace {

QString website(const QString &path)
{
    return QLatin1String(BuildConfig::website) + path;
}

} // namespace

MainWindow::MainWindow() : db(std::make_unique<DB>())
{
    createWidgets();
    createActions();
    createMenus();
    createStatusBar();
    setWindowTitle(tr("Vermidex"));
    readSettings();
    // Questions about the file are to appear over a window that is already there.
    QTimer::singleShot(0, this, &MainWindow::initDataBase);
}

MainWindow::~MainWindow()
{
    writeSettings();
    closeDB();
}

void MainWindow::closeEvent(QCloseEvent * /*event*/) {}

// --- The frame ---

void MainWindow::createWidgets()
{
    setWindowIcon(QIcon(QStringLiteral(":/Images/quadrupleHead32.png")));

    tabWidget = new QTabWidget(this);
    tabWidget->setAccessibleName(QStringLiteral("Elements of the database"));
    experimentsWidget = createElementTab<ExperimentsWidget>(QStringLiteral("Experiments"));
    manipulationsWidget = createElementTab<ManipulationsWidget>(QStringLiteral("Manipulations"));
    morphologiesWidget = createElementTab<MorphologiesWidget>(QStringLiteral("Morphologies"));
    drugsWidget = createElementTab<DrugsWidget>(QStringLiteral("Drugs"));
    rnaiWidget = createElementTab<RNAiWidget>(QStringLiteral("RNAi"));
    speciesWidget = createElementTab<SpeciesWidget>(QStringLiteral("Species"));
    publicationsWidget = createElementTab<PublicationsWidget>(QStringLiteral("Publications"));
    searchWidget = createTab<SearchWidget>(QStringLiteral("Search"));
    connectSearch();

    tabWidget->setEnabled(false);
    connect(tabWidget, &QTabWidget::currentChanged, this, &MainWindow::updateTab);
    setCentralWidget(tabWidget);
}

template <typename Widget> Widget *MainWindow::createTab(const QString &title)
{
    auto *widget = new Widget(db.get(), this);
    connect(widget, &Widget::databaseCorrupted, this, &MainWindow::databaseCorrupted);
    connect(widget, &Widget::nEleChanged, this, &MainWindow::updateStatusText);
    tabs.append({[widget] { widget->updateModel(0); }, [widget] { widget->clear(); }});
    tabWidget->addTab(widget, title);
    return widget;
}

template <typename Widget> Widget *MainWindow::createElementTab(const QString &title)
{
    auto *widget = createTab<Widget>(title);
    connect(widget, &Widget::search, this, &MainWindow::searchRequestedFromWidget);
    return widget;
}

template <typename Widget>
void MainWindow::connectSearch(Widget *widget, const ElementSignals &asked,
                               const ElementSlots<Widget> &answers)
{
    connect(widget, &Widget::search, searchWidget,
            qOverload<int, int, int, const QString &>(&SearchWidget::search));
    connect(searchWidget, asked.create, widget, answers.create);
    connect(searchWidget, asked.copy, widget, answers.copy);
    connect(searchWidget, asked.edit, widget, answers.edit);
    connect(searchWidget, asked.remove, widget, answers.remove);
}

void MainWindow::connectSearch()
{
    connectSearch(experimentsWidget,
                  {&SearchWidget::newExperiment, &SearchWidget::copyExperiment,
                   &SearchWidget::editExperiment, &SearchWidget::deleteExperiment},
                  {&ExperimentsWidget::newExperiment, &ExperimentsWidget::copyExperiment,
                   &ExperimentsWidget::editExperiment, &ExperimentsWidget::deleteExperiment});
    connectSearch(manipulationsWidget,
                  {&SearchWidget::newManipulation, &SearchWidget::copyManipulation,
                   &SearchWidget::editManipulation, &SearchWidget::deleteManipulation},
                  {&ManipulationsWidget::newManipulation, &ManipulationsWidget::copyManipulation,
                   &ManipulationsWidget::editManipulation,
                   &ManipulationsWidget::deleteManipulation});
    connectSearch(morphologiesWidget,
                  {&SearchWidget::newMorphology, &SearchWidget::copyMorphology,
                   &SearchWidget::editMorphology, &SearchWidget::deleteMorphology},
                  {&MorphologiesWidget::newMorphology, &MorphologiesWidget::copyMorphology,
                   &MorphologiesWidget::editMorphology, &MorphologiesWidget::deleteMorphology});
    connectSearch(drugsWidget,
                  {&SearchWidget::newDrug, &SearchWidget::copyDrug, &SearchWidget::editDrug,
                   &SearchWidget::deleteDrug},
                  {&DrugsWidget::newDrug, &DrugsWidget::copyDrug, &DrugsWidget::editDrug,
                   &DrugsWidget::deleteDrug});
    connectSearch(rnaiWidget,
                  {&SearchWidget::newRNAi, &SearchWidget::copyRNAi, &SearchWidget::editRNAi,
                   &SearchWidget::deleteRNAi},
                  {&RNAiWidget::newRNAi, &RNAiWidget::copyRNAi, &RNAiWidget::editRNAi,
                   &RNAiWidget::deleteRNAi});
    connectSearch(speciesWidget,
                  {&SearchWidget::newSpecies, &SearchWidget::copySpecies,
                   &SearchWidget::editSpecies, &SearchWidget::deleteSpecies},
                  {&SpeciesWidget::newSpecies, &SpeciesWidget::copySpecies,
                   &SpeciesWidget::editSpecies, &SpeciesWidget::deleteSpecies});
    connectSearch(publicationsWidget,
                  {&SearchWidget::newPublication, &SearchWidget::copyPublication,
                   &SearchWidget::editPublication, &SearchWidget::deletePublication},
                  {&PublicationsWidget::newPublication, &PublicationsWidget::copyPublication,
                   &PublicationsWidget::editPublication, &PublicationsWidget::deletePublication});
}

template <typename Slot>
QAction *MainWindow::createAction(const QString &text, const QString &shortcut, const QString &tip,
                                  const QString &icon, Slot slot)
{
    auto *action = new QAction(silkIcon(icon), text, this);
    action->setShortcut(QKeySequence(shortcut));
    action->setStatusTip(tip);
    connect(action, &QAction::triggered, this, slot);
    return action;
}

void MainWindow::createActions()
{
    createFileActions();
    createHelpActions();
    createToolsActions();
    createDeleteActions();
}

void MainWindow::createFileActions()
{
    newAction = createAction(tr("&New database..."), tr("Ctrl+N"), tr("Create a new database file"),
                             "page_white_database", &MainWindow::newDB);
    openAction =
        createAction(tr("&Open database..."), tr("Ctrl+O"), tr("Load an existing database file"),
                     "folder_database", qOverload<>(&MainWindow::openDB));
    saveAsAction = createAction(tr("&Save database as..."), tr("Ctrl+S"),
                                tr("Save the current database into a different file"),
                                "database_save", &MainWindow::saveAsDB);
    // These two take the keys of copy and paste from the lists of the window, on purpose.
    closeAction =
        createAction(tr("&Close database"), tr("Ctrl+C"), tr("Close the current database"),
                     "database_go", &MainWindow::closeDB);
    vacuumAction = createAction(tr("&Vacuum database"), tr("Ctrl+V"),
                                tr("Rebuild the database, defragmenting and reducing the size"),
                                "database_lightning", &MainWindow::vacuumDB);
    importAction =
        createAction(tr("&Import..."), tr("Ctrl+I"),
                     tr("Import the experiments of another database into the current database"),
                     "database_add", &MainWindow::importDB);
    exitAction = createAction(tr("Exit"), tr("Alt+F4"), tr("Exit the application"), "door_in",
                              &MainWindow::close);
}

void MainWindow::createHelpActions()
{
    aboutAction = createAction(tr("&About"), tr("Ctrl+A"), tr("Release information about Vermidex"),
                               "brick", &MainWindow::about);
    viewHelpAction =
        createAction(tr("View help"), tr("Ctrl+F1"), tr("Show Vermidex help documents"), "help",
                     &MainWindow::viewHelp);
}

void MainWindow::createToolsActions()
{
    morDistCalcAction = createAction(tr("Morphology distance calculator"), QString(),
                                     tr("Tool to calculate the distance between morphologies"),
                                     "calculator", &MainWindow::morDistCalc);
    morDistCompAction = createAction(
        tr("Morphology distance comparator"), QString(),
        tr("Tool to compare the distance of a morphology with the rest of morphologies in the "
           "database"),
        "calculator_add", &MainWindow::morDistComp);
    morDistSearchAction = createAction(
        tr("Morphology graphical search"), QString(),
        tr("Tool to search morphologies in the database close to an arbitrary created morphology"),
        "find", &MainWindow::morDistSearch);
    morListViewerAction = createAction(
        tr("Morphology list viewer"), QString(),
        tr("Tool to display a graphical list of  all the morphologies in the database"), "report",
        &MainWindow::morListViewer);
}

void MainWindow::createDeleteActions()
{
    deleteAllExperimentsAction = createAction(tr("Delete all experiments"), QString(),
                                              tr("Delete all experiments in the database!"),
                                              "table_delete", &MainWindow::deleteAllExperiments);
    deleteAllExpAndManipulationsAction =
        createAction(tr("Delete all experiments and manipulations"), QString(),
                     tr("Delete all experiments and manipulations in the database!"),
                     "table_delete", &MainWindow::deleteAllExpAndManipulations);
    deleteAllAction =
        createAction(tr("Delete all"), QString(),
                     tr("Delete all experiments, manipulations, and morphologies in the database!"),
                     "database_delete", &MainWindow::deleteAll);
}

void MainWindow::createMenus()
{
    QMenu *file = menuBar()->addMenu(tr("&File"));
    file->addActions({newAction, openAction, saveAsAction, closeAction});
    file->addSeparator();
    file->addActions({vacuumAction, importAction});
    file->addSeparator();
    file->addAction(exitAction);

    QMenu *edit = menuBar()->addMenu(tr("&Edit"));
    edit->addActions(
        {deleteAllExperimentsAction, deleteAllExpAndManipulationsAction, deleteAllAction});

    QMenu *tools = menuBar()->addMenu(tr("&Tools"));
    tools->addActions(
        {morDistSearchAction, morListViewerAction, morDistCalcAction, morDistCompAction});

    QMenu *help = menuBar()->addMenu(tr("&Help"));
    help->addAction(viewHelpAction);
    help->addSeparator();
    help->addAction(aboutAction);
}

void MainWindow::createToolBars() {}

void MainWindow::createStatusBar()
{
    statusLabel = new QLabel(this);
    statusBar()->addWidget(statusLabel, 1);
}

// --- Settings ---

void MainWindow::readSettings()
{
    QCoreApplication::setOrganizationName(QLatin1String(BuildConfig::organisation));
    QCoreApplication::setOrganizationDomain(QLatin1String(BuildConfig::organisationDomain));
    QCoreApplication::setApplicationName(QStringLiteral("Vermidex"));

    QSettings settings;
    settings.beginGroup(QStringLiteral("MainWindow"));
    resize(settings.value(QStringLiteral("size"), QSize(800, 600)).toSize());
    if (settings.contains(QStringLiteral("pos")))
        move(settings.value(QStringLiteral("pos")).toPoint());
    if (settings.value(QStringLiteral("maximized"), false).toBool())
        showMaximized();
    settings.endGroup();

    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2)
        fileName = settings.value(QStringLiteral("DB/lastFile"), QString()).toString();
    else
        fileName = QFileInfo(arguments.at(1)).absoluteFilePath();
}

void MainWindow::writeSettings() const
{
    QSettings settings;
    settings.beginGroup(QStringLiteral("MainWindow"));
    settings.setValue(QStringLiteral("maximized"), isMaximized());
    if (!isMaximized()) {
        settings.setValue(QStringLiteral("size"), size());
        settings.setValue(QStringLiteral("pos"), pos());
    }
    settings.endGroup();
    settings.setValue(QStringLiteral("DB/lastFile"), fileName);
}

// --- Status ---

QList<QAction *> MainWindow::fileActions() const
{
    return {saveAsAction,
            closeAction,
            vacuumAction,
            importAction,
            morDistCalcAction,
            morDistCompAction,
            morDistSearchAction,
            morListViewerAction,
            deleteAllExperimentsAction,
            deleteAllExpAndManipulationsAction,
            deleteAllAction};
}

void MainWindow::updateStatus()
{
    const bool open = !fileName.isEmpty();
    tabWidget->setEnabled(open);
    for (QAction *action : fileActions())
        action->setEnabled(open);

    if (open) {
        setWindowTitle(QFileInfo(fileName).fileName() +
                       (readOnly ? QStringLiteral(" (read only)") : QString()) +
                       QStringLiteral(" - Vermidex"));
        statusLabel->clear(); // a tab that counts nothing leaves it so
        updateTab();
    } else {
        setWindowTitle(tr("Vermidex"));
        statusLabel->setText(QStringLiteral("No database opened"));
        for (const Tab &tab : std::as_const(tabs))
            tab.clear();
    }
}

void MainWindow::updateTab()
{
    if (fileName.isEmpty())
        return;
    tabs.at(tabWidget->currentIndex()).update();
}

void MainWindow::searchRequestedFromWidget()
{
    tabWidget->setCurrentWidget(searchWidget);
}

void MainWindow::updateStatusText(int nEle, const QString &eleName, const QString &eleNamePlural)
{
    const QString where = QStringLiteral(" in the database");
    if (eleName.isEmpty())
        statusLabel->clear();
    else if (nEle == 0)
        statusLabel->setText(QStringLiteral("No ") + eleNamePlural + where);
    else if (nEle == 1)
        statusLabel->setText(QStringLiteral("1 ") + eleName + where);
    else
        statusLabel->setText(QString::number(nEle) + QLatin1Char(' ') + eleNamePlural + where);
}

// --- Help ---

void MainWindow::about()
{
    QMessageBox::about(
        this, tr("About Vermidex"),
        QStringLiteral(
            "<table width='100%'>"
            "<tr><td align='left' style='font-size:18pt'>Vermidex</td><td></td></tr>"
            "<tr><td align='left' style='font-size:12pt'>A library of planarian regeneration</td>"
            "<td align='right' valign='bottom'>Version %1</td></tr>"
            "</table><hr>"
            "<p>Vermidex is an application for the design, storage, and search of planarian "
            "regenerative experiments. For more information and new versions, please visit "
            "<a style='text-decoration:none' href='%2'>%2</a>.</p>"
            "<p>Made by the Vermidex developers.</p>"
            "<p><small>This program makes use of Qt "
            "(<a href='https://www.gnu.org/licenses/lgpl-3.0.html'>LGPL version 3</a>) and of the "
            "Silk icon set by Mark James "
            "(<a href='https://creativecommons.org/licenses/by/3.0/'>CC BY 3.0</a>).</small></p>")
            .arg(QLatin1String(BuildConfig::version), website(QString())));
}

void MainWindow::viewHelp()
{
    QDesktopServices::openUrl(QUrl(website(QStringLiteral("/help"))));
}

// --- Tools ---

// Each of them can store worms, which the current tab is to show.

void MainWindow::morDistCalc()
{
    MorphologyDistForm(db.get(), this).exec();
    updateTab();
}

void MainWindow::morDistComp()
{
    MorphologyDistCompForm form(db.get(), this);
    if (form.isAborted())
        return;
    form.exec();
    updateTab();
}

void MainWindow::morDistSearch()
{
    MorphologyDistSearchForm(db.get(), this).exec();
    updateTab();
}

void MainWindow::morListViewer()
{
    MorphologyListViewerForm form(db.get(), this);
    if (form.isAborted())
        return;
    form.exec();
    updateTab();
}

} // namespace Planaria
