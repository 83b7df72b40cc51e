#pragma once

#include "import/LibraryImporter.h"

#include <QDialog>

#include <array>

class QDialogButtonBox;
class QTabWidget;
class QTableWidget;
class QTableWidgetItem;

namespace Planaria {

class DB;

/// Compares the open library with another one, lists what differs, a tab for each type of elements,
/// and takes over what the user leaves ticked.
///
/// It compares once it is on the screen. LibraryImporter does the work; the form shows, asks and
/// passes on. The source is only read.
class LibraryImporterForm final : public QDialog
{
    Q_OBJECT

public:
    /// @param newSource      the library to take from; outlives the form, as does
    /// @param newDestination the library that is open in the window
    LibraryImporterForm(DB *newSource, DB *newDestination, QWidget *parent);
    ~LibraryImporterForm() override;

private slots:
    void populateElements();
    void formAccepted();

private:
    class TablesWidget;

    void createWidgets();
    void createTabs();
    void readSettings();
    void writeSettings() const;

    void showLists(ImportKind kind);
    /// Hands the ticks of all tables to the importer.
    void takeTicks();
    /// @return whether everything was taken over; else the library is as it was
    [[nodiscard]] bool importElements();
    /// Tells why the library could not be written; nothing to tell of an import that was aborted.
    void tellFailure(LibraryImporter::Outcome outcome);
    void tell(const QString &title, const QString &text);

    DB *source;
    DB *destination;
    LibraryImporter importer;

    QTabWidget *tabs = nullptr;
    std::array<TablesWidget *, importKindCount> tables = {};
    QDialogButtonBox *buttons = nullptr;
};

} // namespace Planaria
