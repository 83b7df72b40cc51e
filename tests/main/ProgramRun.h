#pragma once

#include "main/MainWindow.h"
#include "support/ModalAnswerer.h"

#include <QApplication>
#include <QFileDialog>
#include <QList>
#include <QString>
#include <QStringList>
#include <QtTest>

#include <functional>

class QAction;
class QTabWidget;

namespace Planaria {

/// The words that the application object of a window test takes for its command line. They are
/// those of the test's own choice, while the test program's go to QtTest alone.
class CommandLine final
{
public:
    explicit CommandLine(const QStringList &arguments);
    ~CommandLine();

    CommandLine(const CommandLine &) = delete;
    CommandLine &operator=(const CommandLine &) = delete;

    static int &count();
    static char **words();

private:
    QList<QByteArray> texts;
};

/// One run of the program inside a test, from its start to its exit: the window, and the answers
/// to all that it asks.
///
/// Each operation plans the answers to the dialogs that it will open, does what a user would do,
/// and returns when the window is at rest again. What goes otherwise than planned is kept for
/// problems().
class ProgramRun final
{
public:
    struct Answer
    {
        ModalAnswerer::Box box;
        QMessageBox::StandardButton button = QMessageBox::NoButton;
    };
    using Answers = QList<Answer>;

    /// @param arguments the command line after the program's name
    explicit ProgramRun(const QStringList &arguments = {});

    /// Shows the window and lets it open its first file.
    void start(const Answers &answers = {});

    // The commands with a file dialog. An empty path cancels it. Where it has to ask whether the
    // file is to be replaced, that is answered with Yes.

    void createFile(const QString &path, const Answers &answers = {});
    void openFile(const QString &path, const Answers &answers = {});
    void saveFileAs(const QString &path, const Answers &answers = {});
    /// @param use what is done in the importer; it must close it
    void importFile(const QString &path, const Answers &answers = {},
                    const std::function<void(QDialog *)> &use = nullptr);
    /// What happens to the files between the next file dialog and the command itself.
    void afterFileDialog(const std::function<void()> &event) { fileDialogEvent = event; }
    /// The folder that the last file dialog showed first.
    [[nodiscard]] QString dialogFolder() const { return shownFolder; }

    /// Triggers the menu entry with this text.
    void choose(const QString &text, const Answers &answers = {});
    [[nodiscard]] QAction *action(const QString &text) const;
    [[nodiscard]] QTabWidget *tabs() const;
    /// Whether any tab holds rows of a file.
    [[nodiscard]] bool tabsHoldRows() const;
    [[nodiscard]] QString status() const;

    /// All that tells whether a file is open: the title, the status line, whether the tabs are
    /// enabled, and the enabled actions.
    [[nodiscard]] QStringList frame() const;
    static QStringList closedFrame();
    static QStringList openFrame(const QString &title, const QString &status);

    /// What went otherwise than planned; empty where nothing did.
    [[nodiscard]] QString problems() const;

private:
    struct FileDialog
    {
        QString caption;
        QString filter;
        QFileDialog::AcceptMode mode = QFileDialog::AcceptOpen;
    };

    void expect(const Answers &answers);
    void expectFileDialog(const FileDialog &expected, const QString &path);
    void answerFileDialog(QDialog *dialog, const FileDialog &expected, const QString &path);

    CommandLine commandLine;

public:
    MainWindow window;
    ModalAnswerer answerer;

private:
    std::function<void()> fileDialogEvent;
    QString shownFolder;
    QStringList found;
};

/// A box with nothing but Cancel.
ModalAnswerer::Box refusal(const QString &title, const QString &text);
/// A box with Yes and Cancel.
ModalAnswerer::Box question(const QString &title, const QString &text);

QByteArray fileContent(const QString &path);
/// All rows of all tables, "TABLE: VALUE, VALUE", sorted.
QStringList allRows(const QString &path);

/// Makes the settings of the program those of its very first start.
void forgetSettings();

/// main() for a test of the window.
template <typename Test> int runWindowTest(int argc, char *argv[])
{
    const CommandLine empty{QStringList()};
    const QApplication application(CommandLine::count(), CommandLine::words());
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace Planaria
