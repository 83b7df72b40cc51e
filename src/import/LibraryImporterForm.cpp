#include "import/LibraryImporterForm.h"

#include "db/DB.h"
#include "import/ImportProgressDialog.h"
#include "widgets/WindowSettings.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>

#include <memory>
#include <utility>

namespace Planaria {

namespace {

constexpr auto settingsGroup = "LibraryImporterForm";

/// Labels of the tabs, by ImportKind.
constexpr std::array<const char *, importKindCount> tabLabels = {
    "Experiments", "Manipulations", "Morphologies", "Drugs", "RNAi", "Species", "Publications"};

QString withCount(const QString &label, int count)
{
    return QStringLiteral("%1 (%2)").arg(label).arg(count);
}

QString shortFileName(const DB *db)
{
    QString name = db->fileName();
    name = name.mid(name.lastIndexOf(QLatin1Char('/')) + 1);
    return name.mid(name.lastIndexOf(QLatin1Char('\\')) + 1);
}

QTableWidgetItem *createCheckItem(const QString &text, const QVariant &data, bool checked)
{
    auto *item = new QTableWidgetItem(text);
    item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemIsEnabled);
    item->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
    item->setData(Qt::UserRole, data);
    // For a name that is wider than its column. Rich text, since that is broken into lines.
    item->setToolTip(QStringLiteral("<qt>%1</qt>").arg(text.toHtmlEscaped()));
    return item;
}

} // namespace

// --- The lists of one type of elements ---

/// What is modified, new and deleted among the elements of one type: three tables side by side,
/// each below the label that counts it.
class LibraryImporterForm::TablesWidget final : public QWidget
{
public:
    explicit TablesWidget(const QString &elements, QWidget *parent = nullptr) : QWidget(parent)
    {
        auto *layout = new QGridLayout;
        setLayout(layout);
        int place = 0;
        for (Column &column : columns) {
            const QString text = QLatin1String(column.text);
            column.label = new QLabel(text, this);
            column.table = createTable();
            column.table->setAccessibleName(QStringLiteral("%1: %2").arg(elements, text.toLower()));
            layout->addWidget(column.label, 0, place);
            layout->addWidget(column.table, 1, place++);
        }
    }

    void showLists(const ImportLists &lists)
    {
        for (const Column &column : columns) {
            fill(column.table, lists.*column.rows);
            if (lists.complete)
                column.label->setText(
                    withCount(QLatin1String(column.text), column.table->rowCount()));
        }
    }

    void takeTicks(ImportLists &lists) const
    {
        for (const Column &column : columns) {
            int row = 0;
            for (ImportRow &each : lists.*column.rows)
                each.checked = column.table->item(row++, 0)->checkState() != Qt::Unchecked;
        }
    }

private:
    struct Column
    {
        const char *text;
        std::vector<ImportRow> ImportLists::*rows;
        QLabel *label = nullptr;
        QTableWidget *table = nullptr;
    };

    QTableWidget *createTable()
    {
        auto *table = new QTableWidget(0, 1, this);
        table->horizontalHeader()->hide();
        table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
        breakLongTitles(table);
        table->setTabKeyNavigation(false); // Tab leads on to the next table
        table->setMinimumHeight(16 * table->fontMetrics().height()); // for the first opening
        return table;
    }

    /// Gives each row room for all lines of its title, once for all changes of the width that come
    /// together.
    static void breakLongTitles(QTableWidget *table)
    {
        auto *delay = new QTimer(table);
        delay->setSingleShot(true);
        const auto start = qOverload<>(&QTimer::start);
        QObject::connect(table->horizontalHeader(), &QHeaderView::sectionResized, delay, start);
        QObject::connect(table->model(), &QAbstractItemModel::rowsInserted, delay, start);
        QObject::connect(delay, &QTimer::timeout, table, [table] {
            if (table->isVisible()) // else it gets another width when it is shown
                table->resizeRowsToContents();
        });
    }

    static void fill(QTableWidget *table, const std::vector<ImportRow> &rows)
    {
        table->setRowCount(static_cast<int>(rows.size()));
        int place = 0;
        for (const ImportRow &row : rows)
            table->setItem(place++, 0, createCheckItem(row.name, row.id, row.checked));
    }

    std::array<Column, 3> columns = {{{"Modified", &ImportLists::modified},
                                      {"New", &ImportLists::added},
                                      {"Deleted", &ImportLists::deleted}}};
};

// --- The form ---

LibraryImporterForm::LibraryImporterForm(DB *newSource, DB *newDestination, QWidget *parent)
    : QDialog(parent), source(newSource), destination(newDestination),
      importer(newSource, newDestination)
{
    setWindowFlags(windowFlags() | Qt::WindowMaximizeButtonHint);
    setWindowTitle(QStringLiteral("Import data: %1 -> %2")
                       .arg(shortFileName(source), shortFileName(destination)));
    createWidgets();
    readSettings();
    // The comparison shows its progress over a dialog that is already there.
    QTimer::singleShot(0, this, &LibraryImporterForm::populateElements);
}

LibraryImporterForm::~LibraryImporterForm()
{
    writeSettings();
}

void LibraryImporterForm::createWidgets()
{
    createTabs();
    buttons =
        new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, Qt::Horizontal, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &LibraryImporterForm::formAccepted);
    connect(buttons, &QDialogButtonBox::rejected, this, &LibraryImporterForm::reject);
    buttons->button(QDialogButtonBox::Ok)->setEnabled(false); // until there is something to see

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(tabs);
    layout->addWidget(buttons);
}

void LibraryImporterForm::createTabs()
{
    tabs = new QTabWidget(this);
    tabs->setUsesScrollButtons(false); // all are in sight, which gives the lists room as well
    tabs->setAccessibleName(QStringLiteral("Differences between the databases"));
    for (std::size_t kind = 0; kind < tables.size(); ++kind) {
        const QString label = QLatin1String(tabLabels.at(kind));
        tables.at(kind) = new TablesWidget(label);
        tabs->addTab(tables.at(kind), label);
    }
}

void LibraryImporterForm::readSettings()
{
    resize(300, 128);
    WindowSettings::read(this, QLatin1String(settingsGroup));
}

void LibraryImporterForm::writeSettings() const
{
    WindowSettings::write(this, QLatin1String(settingsGroup));
}

// --- The comparison ---

void LibraryImporterForm::populateElements()
{
    if (!isVisible())
        return; // closed before it began
    auto progress = std::make_unique<ImportProgressDialog>(this);
    if (importer.populateElements(*progress, [this](ImportKind kind) { showLists(kind); })) {
        buttons->button(QDialogButtonBox::Ok)->setEnabled(true);
        return;
    }
    const bool canceled = progress->wasCanceled();
    progress.reset(); // gone before anything is told
    if (!canceled)
        tell(QStringLiteral("Cannot compare databases"),
             QStringLiteral("Unable to read both database files. Another program may be using "
                            "one of them."));
    reject();
}

void LibraryImporterForm::showLists(ImportKind kind)
{
    const auto tab = static_cast<std::size_t>(kind);
    const ImportLists &lists = std::as_const(importer).lists(kind);
    tables.at(tab)->showLists(lists);
    tabs->setTabText(static_cast<int>(tab),
                     withCount(QLatin1String(tabLabels.at(tab)), lists.total()));
}

// --- The import ---

void LibraryImporterForm::formAccepted()
{
    if (importElements())
        accept();
}

void LibraryImporterForm::takeTicks()
{
    for (std::size_t kind = 0; kind < tables.size(); ++kind)
        tables.at(kind)->takeTicks(importer.lists(static_cast<ImportKind>(kind)));
}

bool LibraryImporterForm::importElements()
{
    takeTicks();
    auto progress = std::make_unique<ImportProgressDialog>(this);
    const LibraryImporter::Outcome outcome = importer.importElements(*progress);
    progress.reset(); // gone before anything is told
    tellFailure(outcome);
    return outcome == LibraryImporter::Outcome::Done;
}

void LibraryImporterForm::tellFailure(LibraryImporter::Outcome outcome)
{
    const QString file = shortFileName(destination);
    const QString element = importer.failedElement();
    if (outcome == LibraryImporter::Outcome::Locked)
        tell(QStringLiteral("Database is locked"),
             QStringLiteral("Another program is using the database file (%1). Nothing was "
                            "imported. Please, try again later.")
                 .arg(file));
    else if (outcome == LibraryImporter::Outcome::Failed && element.isEmpty())
        tell(QStringLiteral("Import error"),
             QStringLiteral("Unable to import into the database file (%1): it cannot be written, "
                            "or one of the files cannot be read or has changed since they were "
                            "compared. Nothing was imported. Please, close the dialog and try "
                            "again.")
                 .arg(file));
    else if (outcome == LibraryImporter::Outcome::Failed)
        tell(QStringLiteral("Import error"),
             QStringLiteral("Unable to write \"%1\" into the database file (%2). Nothing was "
                            "imported.")
                 .arg(element, file));
}

void LibraryImporterForm::tell(const QString &title, const QString &text)
{
    QMessageBox::critical(this, title, text, QMessageBox::Cancel);
}

} // namespace Planaria
