#include "main/ProgramRun.h"

#include "BuildConfig.h"
#include "browse/DataTableView.h"
#include "db/DB.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>
#include <QSqlRecord>
#include <QStatusBar>
#include <QTabWidget>

#include <algorithm>
#include <array>

namespace Planaria {

// --- The command line ---

namespace {

constexpr int maxWords = 8;
int wordCount = 0;
std::array<char *, maxWords> wordPointers = {};
char programName[] = "vermidex";

} // namespace

CommandLine::CommandLine(const QStringList &arguments)
{
    wordCount = 0;
    wordPointers.at(wordCount++) = programName;
    for (const QString &argument : arguments)
        texts += argument.toLocal8Bit();
    for (QByteArray &text : texts)
        wordPointers.at(wordCount++) = text.data();
}

CommandLine::~CommandLine()
{
    wordCount = 1;
}

int &CommandLine::count()
{
    return wordCount;
}

char **CommandLine::words()
{
    return wordPointers.data();
}

// --- A run ---

namespace {

const QString newText = QStringLiteral("&New database...");
const QString openText = QStringLiteral("&Open database...");
const QString saveAsText = QStringLiteral("&Save database as...");
const QString importText = QStringLiteral("&Import...");

void letItWork()
{
    QCoreApplication::processEvents();
}

/// The entries of a menu bar or a menu, and of the menus in it.
QList<QAction *> entries(const QWidget *menu)
{
    QList<QAction *> all;
    for (QAction *entry : menu->actions())
        all += entry->menu() ? entries(entry->menu()) : QList<QAction *>{entry};
    return all;
}

} // namespace

ProgramRun::ProgramRun(const QStringList &arguments) : commandLine(arguments) {}

void ProgramRun::start(const Answers &answers)
{
    expect(answers);
    window.show();
    letItWork();
}

void ProgramRun::createFile(const QString &path, const Answers &answers)
{
    expectFileDialog({QStringLiteral("New database"),
                      QStringLiteral("Experiment Databases (*.edb)"), QFileDialog::AcceptSave},
                     path);
    choose(newText, answers);
}

void ProgramRun::openFile(const QString &path, const Answers &answers)
{
    expectFileDialog({QStringLiteral("Open database"),
                      QStringLiteral("Experiment databases (*.edb)"), QFileDialog::AcceptOpen},
                     path);
    choose(openText, answers);
}

void ProgramRun::saveFileAs(const QString &path, const Answers &answers)
{
    expectFileDialog({QStringLiteral("Save database"),
                      QStringLiteral("Experiment Databases (*.edb)"), QFileDialog::AcceptSave},
                     path);
    choose(saveAsText, answers);
}

void ProgramRun::importFile(const QString &path, const Answers &answers,
                            const std::function<void(QDialog *)> &use)
{
    expectFileDialog({QStringLiteral("Open database to import"),
                      QStringLiteral("Experiment databases (*.edb)"), QFileDialog::AcceptOpen},
                     path);
    expect(answers);
    if (use)
        answerer.expectDialog(use);
    choose(importText);
}

void ProgramRun::choose(const QString &text, const Answers &answers)
{
    expect(answers);
    action(text)->trigger();
    letItWork();
}

void ProgramRun::expect(const Answers &answers)
{
    for (const Answer &answer : answers)
        answerer.expectBox(answer.box, answer.button);
}

void ProgramRun::expectFileDialog(const FileDialog &expected, const QString &path)
{
    answerer.expectDialog(
        [this, expected, path](QDialog *dialog) { answerFileDialog(dialog, expected, path); });
    if (expected.mode != QFileDialog::AcceptSave || path.isEmpty() || !QFile::exists(path))
        return;
    answerer.expectBox({expected.caption,
                        QStringLiteral("%1 already exists.\nDo you want to replace it?")
                            .arg(QFileInfo(path).fileName()),
                        QMessageBox::Yes | QMessageBox::No, QMessageBox::No},
                       QMessageBox::Yes);
}

void ProgramRun::answerFileDialog(QDialog *dialog, const FileDialog &expected, const QString &path)
{
    const auto *files = qobject_cast<QFileDialog *>(dialog);
    if (!files) {
        found += QStringLiteral("\"%1\" instead of a file dialog").arg(dialog->windowTitle());
        dialog->reject();
        return;
    }
    if (files->windowTitle() != expected.caption || files->acceptMode() != expected.mode ||
        files->nameFilters() != QStringList(expected.filter))
        found += QStringLiteral("the file dialog \"%1\" (%2) instead of \"%3\" (%4)")
                     .arg(files->windowTitle(), files->nameFilters().join(QStringLiteral("; ")),
                          expected.caption, expected.filter);
    shownFolder = files->directory().absolutePath();

    if (path.isEmpty()) {
        dialog->reject();
        return;
    }
    files->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(path);
    dialog->accept();
    if (fileDialogEvent)
        std::exchange(fileDialogEvent, nullptr)();
}

QAction *ProgramRun::action(const QString &text) const
{
    for (QAction *entry : entries(window.menuBar())) {
        if (entry->text() == text)
            return entry;
    }
    qFatal("no menu entry \"%s\"", qUtf8Printable(text));
}

QTabWidget *ProgramRun::tabs() const
{
    return qobject_cast<QTabWidget *>(window.centralWidget());
}

bool ProgramRun::tabsHoldRows() const
{
    const auto all = tabs()->findChildren<DataTableView *>();
    return std::any_of(all.cbegin(), all.cend(),
                       [](auto *view) { return view->model()->columnCount() > 0; });
}

QString ProgramRun::status() const
{
    return window.statusBar()->findChild<QLabel *>()->text();
}

QString ProgramRun::problems() const
{
    return (found + answerer.problems()).join(QLatin1Char('\n'));
}

QStringList ProgramRun::frame() const
{
    QStringList seen = {window.windowTitle(), status(),
                        tabs()->isEnabled() ? QStringLiteral("tabs on")
                                            : QStringLiteral("tabs off")};
    for (const QAction *entry : entries(window.menuBar())) {
        if (entry->isEnabled() && !entry->isSeparator())
            seen += entry->text();
    }
    return seen;
}

QStringList ProgramRun::closedFrame()
{
    return {QStringLiteral("Vermidex"),
            QStringLiteral("No database opened"),
            QStringLiteral("tabs off"),
            newText,
            openText,
            QStringLiteral("Exit"),
            QStringLiteral("View help"),
            QStringLiteral("&About")};
}

QStringList ProgramRun::openFrame(const QString &title, const QString &status)
{
    return {title,
            status,
            QStringLiteral("tabs on"),
            newText,
            openText,
            saveAsText,
            QStringLiteral("&Close database"),
            QStringLiteral("&Vacuum database"),
            importText,
            QStringLiteral("Exit"),
            QStringLiteral("Delete all experiments"),
            QStringLiteral("Delete all experiments and manipulations"),
            QStringLiteral("Delete all"),
            QStringLiteral("Morphology graphical search"),
            QStringLiteral("Morphology list viewer"),
            QStringLiteral("Morphology distance calculator"),
            QStringLiteral("Morphology distance comparator"),
            QStringLiteral("View help"),
            QStringLiteral("&About")};
}

// --- What the tests of the window share ---

ModalAnswerer::Box refusal(const QString &title, const QString &text)
{
    return {title, text, QMessageBox::Cancel, QMessageBox::Cancel, QMessageBox::Critical};
}

ModalAnswerer::Box question(const QString &title, const QString &text)
{
    return {title, text, QMessageBox::Yes | QMessageBox::Cancel, QMessageBox::Cancel,
            QMessageBox::Warning};
}

QByteArray fileContent(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qUtf8Printable(path));
    return file.readAll();
}

QStringList allRows(const QString &path)
{
    DB db;
    if (db.connect(path, false) != DB::Opened)
        qFatal("cannot open %s", qUtf8Printable(path));
    QStringList rows;
    const auto tables =
        db.newQuery(QStringLiteral("SELECT name FROM sqlite_master WHERE type='table'"));
    while (tables->next()) {
        const QString table = tables->value(0).toString();
        const auto query = db.newTableQuery(table);
        while (query->next()) {
            QStringList values;
            for (int column = 0; column < query->record().count(); ++column)
                values += query->value(column).toString();
            rows += table + QStringLiteral(": ") + values.join(QStringLiteral(", "));
        }
    }
    rows.sort();
    return rows;
}

void forgetSettings()
{
    QCoreApplication::setOrganizationName(QLatin1String(BuildConfig::organisation));
    QCoreApplication::setOrganizationDomain(QLatin1String(BuildConfig::organisationDomain));
    QCoreApplication::setApplicationName(QStringLiteral("Vermidex"));
    QSettings().clear();
}

} // namespace Planaria
