#pragma once

#include <QList>
#include <QMainWindow>
#include <QString>

#include <functional>
#include <memory>

class QAction;
class QLabel;
class QTabWidget;

namespace Planaria {

class DB;
class DrugsWidget;
class ExperimentsWidget;
class ManipulationsWidget;
class MorphologiesWidget;
class PublicationsWidget;
class RNAiWidget;
class SearchWidget;
class SpeciesWidget;

/// The frame of the program: tabs, menus and status line, and the commands that open, create,
/// copy, compact and close database files.
///
/// It holds no data but the name of the open file: each tab reads the file through models of its
/// own. The open file is always the working copy, so nothing is ever unsaved and closing is always
/// accepted.
class MainWindow final : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow();
    ~MainWindow() override;

public slots:
    void newDB();
    void openDB();
    void saveAsDB();
    void closeDB();
    void vacuumDB();
    void importDB();
    /// Opens the file of the last run or of the command line, once the window is on the screen.
    void initDataBase();

    void about();
    void viewHelp();
    void morDistCalc();
    void morDistComp();
    void morDistSearch();
    void morListViewer();
    void deleteAllExperiments();
    void deleteAllExpAndManipulations();
    void deleteAll();

    /// Reads the current tab anew.
    void updateTab();
    /// Brings the search tab to the front, before it searches.
    void searchRequestedFromWidget();
    void databaseCorrupted();
    void updateStatusText(int nEle, const QString &eleName, const QString &eleNamePlural);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    /// What the window asks of the widget of a tab.
    struct Tab
    {
        std::function<void()> update;
        std::function<void()> clear;
    };

    /// What the search tab asks of the tab of a type.
    struct ElementSignals
    {
        void (SearchWidget::*create)();
        void (SearchWidget::*copy)(int id);
        void (SearchWidget::*edit)(int id);
        void (SearchWidget::*remove)(int id);
    };

    template <typename Widget> struct ElementSlots
    {
        void (Widget::*create)();
        int (Widget::*copy)(int id);
        void (Widget::*edit)(int id);
        void (Widget::*remove)(int id);
    };

    void createWidgets();
    template <typename Widget> Widget *createTab(const QString &title);
    template <typename Widget> Widget *createElementTab(const QString &title);
    /// Lets each tab search, and answer for the elements of its type that a search has found.
    void connectSearch();
    template <typename Widget>
    void connectSearch(Widget *widget, const ElementSignals &asked,
                       const ElementSlots<Widget> &answers);
    void createActions();
    void createFileActions();
    void createHelpActions();
    void createToolsActions();
    void createDeleteActions();
    /// @param icon name in the icon set @param slot what the action calls
    template <typename Slot>
    QAction *createAction(const QString &text, const QString &shortcut, const QString &tip,
                          const QString &icon, Slot slot);
    void createMenus();
    /// Empty: the window has no tool bars.
    void createToolBars();
    void createStatusBar();
    void readSettings();
    void writeSettings() const;

    /// Brings title, status line, tabs and actions in line with the open file.
    void updateStatus();

    /// Opens the file named by fileName; clears fileName where that fails.
    /// @param quiet without boxes; a file of another version is then refused
    void connectDB(bool quiet);
    void openDB(const QString &name);
    void tellConnectFailure(int result, const QString &name);
    void tellLocked(const QString &name);
    /// Asks for a file; empty when the user cancels.
    /// @param open an existing one, else one to be written
    QString getDBFileName(const QString &caption, bool open);
    /// Whether the connected file can be used, after questions to the user and an upgrade where
    /// they are needed.
    bool checkDBVersion(DB *file, bool quiet);
    bool upgradeOldVersion(DB *file, int version);
    /// A question with Yes and Cancel.
    bool confirm(const QString &title, const QString &text);
    /// A refusal, with nothing but Cancel.
    void refuse(const QString &title, const QString &text);
    /// Copies the file @p from to @p to, which keeps its content until the copy is complete.
    static bool copyFile(const QString &from, const QString &to);

    void emptyExperimentTables();
    void emptyManipulationTables();
    void emptyMorphologyTables();

    /// What makes sense only with an open file.
    [[nodiscard]] QList<QAction *> fileActions() const;

    QString fileName; // empty while no database is open
    std::unique_ptr<DB> db;

    QAction *newAction = nullptr;
    QAction *openAction = nullptr;
    QAction *saveAsAction = nullptr;
    QAction *closeAction = nullptr;
    QAction *vacuumAction = nullptr;
    QAction *importAction = nullptr;
    QAction *exitAction = nullptr;
    QAction *aboutAction = nullptr;
    QAction *viewHelpAction = nullptr;
    QAction *morDistCalcAction = nullptr;
    QAction *morDistCompAction = nullptr;
    QAction *morDistSearchAction = nullptr;
    QAction *morListViewerAction = nullptr;
    QAction *deleteAllExperimentsAction = nullptr;
    QAction *deleteAllExpAndManipulationsAction = nullptr;
    QAction *deleteAllAction = nullptr;

    QLabel *statusLabel = nullptr;
    QTabWidget *tabWidget = nullptr;
    ExperimentsWidget *experimentsWidget = nullptr;
    ManipulationsWidget *manipulationsWidget = nullptr;
    MorphologiesWidget *morphologiesWidget = nullptr;
    DrugsWidget *drugsWidget = nullptr;
    RNAiWidget *rnaiWidget = nullptr;
    SpeciesWidget *speciesWidget = nullptr;
    PublicationsWidget *publicationsWidget = nullptr;
    SearchWidget *searchWidget = nullptr;
    QList<Tab> tabs; // in their order

    bool readOnly = false; // the open file cannot be written
};

} // namespace Planaria
