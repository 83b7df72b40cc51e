#include "widgets/QuickDialogs.h"

#include "support/ModalAnswerer.h"
#include "support/TemporaryLibrary.h"

#include <QInputDialog>
#include <QLineEdit>
#include <QTest>

using namespace Planaria;

namespace {

/// What an input dialog showed, in one text.
QString described(const QString &title, const QString &prompt, const QString &text)
{
    return QStringLiteral("[%1] %2 <%3>").arg(title, prompt, text);
}

QString described(QDialog *dialog)
{
    const auto *input = qobject_cast<QInputDialog *>(dialog);
    if (input == nullptr)
        return QStringLiteral("no input dialog");
    return described(input->windowTitle(), input->labelText(),
                     input->findChild<QLineEdit *>()->text());
}

} // namespace

class QuickDialogsTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void proposesTheTextUnderTheCallersTitle_data();
    void proposesTheTextUnderTheCallersTitle();
    void takesATextThatTheColumnDoesNotHold();
    void givesAnEmptyTextWhenTheUserGivesUp_data();
    void givesAnEmptyTextWhenTheUserGivesUp();
    void asksAndRefusesOverItsParent();
    void asksAgainWithTheRefusedText();
    void refusesInTheWordsOfTableAndColumn();
    void refusesAsOftenAsTheTextIsTaken();
    void givesAnEmptyTextWhenTheUserGivesUpAfterARefusal_data();
    void givesAnEmptyTextWhenTheUserGivesUpAfterARefusal();

private:
    /// Plans a dialog: notes what it shows, replaces its text by @p typed, and presses Enter, or
    /// Escape where @p cancel.
    void expectInput(const QString &typed, bool cancel = false);
    void expectRefusal();
    void ask(const QString &proposal);

    std::unique_ptr<TemporaryLibrary> library;
    std::unique_ptr<ModalAnswerer> answerer;
    QStringList shown;
    QString text;
};

void QuickDialogsTest::init()
{
    library = std::make_unique<TemporaryLibrary>();
    library->run("INSERT INTO Species VALUES (1, 'Dugesia japonica')");
    library->run("INSERT INTO Species VALUES (2, 'Schmidtea mediterranea')");
    library->run("INSERT INTO Publication (Id, Title) VALUES (1, 'On worms')");
    answerer = std::make_unique<ModalAnswerer>();
    shown.clear();
}

void QuickDialogsTest::expectInput(const QString &typed, bool cancel)
{
    answerer->expectDialog([this, typed, cancel](QDialog *dialog) {
        shown += described(dialog);
        if (auto *edit = dialog->findChild<QLineEdit *>()) {
            edit->clear();
            QTest::keyClicks(edit, typed);
        }
        QTest::keyClick(dialog, cancel ? Qt::Key_Escape : Qt::Key_Return);
    });
}

void QuickDialogsTest::expectRefusal()
{
    answerer->expectBox({.title = "Species with same name found",
                         .text = "The database already contains a species with the same name. "
                                 "Please, specify a different name for this species.",
                         .icon = QMessageBox::Warning},
                        QMessageBox::Ok);
}

void QuickDialogsTest::ask(const QString &proposal)
{
    text = proposal;
    QuickDialogs::getUniqueText(library->db(), nullptr, "New species", "Species", "Name", text);
}

void QuickDialogsTest::proposesTheTextUnderTheCallersTitle_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("column");
    QTest::addColumn<QString>("prompt");
    QTest::newRow("species") << "Species"
                             << "Name"
                             << "Species name:";
    QTest::newRow("drug") << "Drug"
                          << "Name"
                          << "Drug name:";
    QTest::newRow("publication") << "Publication"
                                 << "Title"
                                 << "Publication title:";
}

void QuickDialogsTest::proposesTheTextUnderTheCallersTitle()
{
    QFETCH(const QString, table);
    QFETCH(const QString, column);
    QFETCH(const QString, prompt);
    expectInput("A new one");
    text = "A proposal";
    QuickDialogs::getUniqueText(library->db(), nullptr, "Add it", table, column, text);
    QCOMPARE(shown, QStringList(described("Add it", prompt, "A proposal")));
    QCOMPARE(answerer->problems(), QStringList());
    QCOMPARE(text, "A new one");
}

void QuickDialogsTest::takesATextThatTheColumnDoesNotHold()
{
    expectInput("Girardia tigrina");
    ask({});
    QCOMPARE(answerer->problems(), QStringList());
    QCOMPARE(text, "Girardia tigrina");
    QCOMPARE(library->count("Species"), 2); // to store it is the caller's
}

void QuickDialogsTest::givesAnEmptyTextWhenTheUserGivesUp_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("cancel");
    QTest::newRow("an empty answer") << "" << false;
    QTest::newRow("cancelled with a new name") << "Girardia tigrina" << true;
    QTest::newRow("cancelled with a name that is taken") << "Dugesia japonica" << true;
    QTest::newRow("cancelled and empty") << "" << true;
}

void QuickDialogsTest::givesAnEmptyTextWhenTheUserGivesUp()
{
    QFETCH(const QString, typed);
    QFETCH(const bool, cancel);
    library->run("INSERT INTO Species VALUES (3, '')"); // is no reason to refuse an empty answer
    expectInput(typed, cancel);
    ask("Girardia");
    QCOMPARE(shown.size(), 1);
    QCOMPARE(answerer->problems(), QStringList());
    QCOMPARE(text, "");
}

void QuickDialogsTest::asksAndRefusesOverItsParent()
{
    QWidget parent;
    QList<QWidget *> parents;
    const auto expect = [&](Qt::Key key) {
        answerer->expectDialog([&parents, key](QDialog *dialog) {
            parents += dialog->parentWidget();
            QTest::keyClick(dialog, key);
        });
    };
    expect(Qt::Key_Return);
    expect(Qt::Key_Return); // the refusal
    expect(Qt::Key_Escape);
    text = "Dugesia japonica";
    QuickDialogs::getUniqueText(library->db(), &parent, "New species", "Species", "Name", text);
    QCOMPARE(answerer->problems(), QStringList());
    QCOMPARE(parents, QList<QWidget *>(3, &parent));
}

void QuickDialogsTest::asksAgainWithTheRefusedText()
{
    expectInput("Dugesia japonica");
    expectRefusal();
    expectInput("Dugesia sicula");
    ask("Girardia");
    QCOMPARE(answerer->problems(), QStringList());
    QCOMPARE(shown, QStringList({described("New species", "Species name:", "Girardia"),
                                 described("New species", "Species name:", "Dugesia japonica")}));
    QCOMPARE(text, "Dugesia sicula");
}

void QuickDialogsTest::refusesInTheWordsOfTableAndColumn()
{
    expectInput("On worms");
    answerer->expectBox({.title = "Publication with same title found",
                         .text = "The database already contains a publication with the same "
                                 "title. Please, specify a different title for this publication.",
                         .icon = QMessageBox::Warning},
                        QMessageBox::Ok);
    expectInput("On more worms");
    text = "On worms";
    QuickDialogs::getUniqueText(library->db(), nullptr, "Rename", "Publication", "Title", text);
    QCOMPARE(answerer->problems(), QStringList());
    QCOMPARE(text, "On more worms");
}

void QuickDialogsTest::refusesAsOftenAsTheTextIsTaken()
{
    for (const char *taken : {"Dugesia japonica", "Schmidtea mediterranea", "Dugesia japonica"}) {
        expectInput(taken);
        expectRefusal();
    }
    expectInput("Dugesia japonica sp. nov.");
    ask({});
    QCOMPARE(answerer->problems(), QStringList());
    QCOMPARE(text, "Dugesia japonica sp. nov.");
}

void QuickDialogsTest::givesAnEmptyTextWhenTheUserGivesUpAfterARefusal_data()
{
    QTest::addColumn<bool>("cancel");
    QTest::newRow("an empty answer") << false;
    QTest::newRow("cancelled") << true;
}

void QuickDialogsTest::givesAnEmptyTextWhenTheUserGivesUpAfterARefusal()
{
    QFETCH(const bool, cancel);
    expectInput("Dugesia japonica");
    expectRefusal();
    expectInput({}, cancel);
    ask({});
    QCOMPARE(answerer->problems(), QStringList());
    QCOMPARE(text, "");
}

QTEST_MAIN(QuickDialogsTest)
#include "QuickDialogsTest.moc"
