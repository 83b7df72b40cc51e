#include "browse/ElementTabs.h"
#include "model/Experiment.h"
#include "model/Manipulation.h"
#include "model/Morphology.h"
#include "support/ModalAnswerer.h"

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QInputDialog>
#include <QLineEdit>
#include <QtTest>

namespace Planaria {

/// How elements are made, copied and edited in their tabs.
class ElementEditingTest final : public QObject
{
    Q_OBJECT

private slots:
    // By name alone
    void makesANamedElement_data();
    void makesANamedElement();
    void copiesTheNameOfAnElement_data();
    void copiesTheNameOfAnElement();
    void copiesNothingOfAnRnaiButItsName();
    void renamesANamedElement_data();
    void renamesANamedElement();
    void asksAgainForANameThatIsTaken();
    void storesTheNameOnReturn();

    // In a form
    void makesAnElementInItsForm_data();
    void makesAnElementInItsForm();
    void makesAnExperimentOfWhatTheFileHolds();
    void copiesAnElementInItsForm_data();
    void copiesAnElementInItsForm();
    void editsAnElementInItsForm_data();
    void editsAnElementInItsForm();
    void copiesAndEditsAWormWithItsPictures();
    void copiesAnExperimentWithAllItHolds();

    // All
    void makesNothingThatIsCancelled_data();
    void makesNothingThatIsCancelled();
    void copiesNothingThatIsCancelled_data();
    void copiesNothingThatIsCancelled();
    void editsNothingThatIsCancelled_data();
    void editsNothingThatIsCancelled();
    void doesNothingWithoutACurrentRow();
    void editsTheRowThatIsDoubleClicked_data();
    void editsTheRowThatIsDoubleClicked();
    void editsTheCurrentOfSeveralRows();
    void tellsOfAnElementThatTheFileDoesNotTake_data();
    void tellsOfAnElementThatTheFileDoesNotTake();
    void tellsOfAnEditedElementThatIsGone_data();
    void tellsOfAnEditedElementThatIsGone();
};

namespace {

constexpr int experiments = 0;
constexpr int morphologies = 2;
constexpr int drugs = 3;
constexpr int rnai = 4;
constexpr int species = 5;

bool hasNameOnly(int type)
{
    return type >= drugs && type <= species;
}

void addTypes(bool (*suits)(int))
{
    QTest::addColumn<int>("type");
    for (int i = 0; i < tabTypes().size(); ++i) {
        if (suits(i))
            QTest::newRow(qUtf8Printable(tabTypes()[i].title)) << i;
    }
}

void addNamedTypes()
{
    addTypes(hasNameOnly);
}

void addFormTypes()
{
    addTypes([](int type) { return !hasNameOnly(type); });
}

/// What a dialog for an element shows, and a user's answer to it.
class Dialogs final
{
public:
    explicit Dialogs(ElementTab *elementTab) : tab(elementTab) {}

    /// Accepts the next one under @p name; rejects it for a null name.
    void answer(const QString &name)
    {
        answerer.expectDialog([this, name](QDialog *dialog) {
            auto *edit = dialog->findChild<QLineEdit *>();
            seen = {dialog->windowTitle(), edit->text()};
            parent = dialog->parentWidget();
            const auto button = name.isNull() ? QDialogButtonBox::Cancel : QDialogButtonBox::Ok;
            if (!name.isNull())
                edit->setText(name);
            dialog->findChild<QDialogButtonBox *>()->button(button)->click();
        });
    }

    /// Of a command on an element of this type, by the word that the titles of dialogs begin with.
    [[nodiscard]] QStringList expected(const QString &command, const QString &name) const
    {
        static const QString manipulation = "worm manipulation";
        const QString &word = tab->type.word;
        return {command + u' ' + (manipulation.endsWith(word) ? manipulation : word), name};
    }

    QStringList seen; // title and name
    const QWidget *parent = nullptr;
    ModalAnswerer answerer;

private:
    ElementTab *tab;
};

/// An element that a user may edit at once: all forms accept what the worked library holds.
QString someName(const ElementTab &tab)
{
    return tab.shown().at(3);
}

} // namespace

// --- By name alone ---

void ElementEditingTest::makesANamedElement_data()
{
    addNamedTypes();
}

void ElementEditingTest::makesANamedElement()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.update();
    const int count = tab.count();
    tab.button("New")->setFocus();
    Dialogs dialogs(&tab);
    dialogs.answer("brand new");
    tab.press("New");
    QCOMPARE(dialogs.answerer.problems(), QStringList());
    QCOMPARE(dialogs.seen, dialogs.expected("New", ""));
    QCOMPARE(dialogs.parent, static_cast<const QWidget *>(tab.widget()->parentWidget()));
    QCOMPARE(tab.count(), count + 1);
    QVERIFY(tab.shown().contains("brand new"));
    QCOMPARE(tab.current(), QString()); // the new row is not selected
    QCOMPARE(tab.focused(), static_cast<QWidget *>(tab.button("New")));
    QCOMPARE(tab.told.last().first().toInt(), count + 1);
    QCOMPARE(tab.library->brokenReferences(), QStringList());
}

void ElementEditingTest::copiesTheNameOfAnElement_data()
{
    addNamedTypes();
}

void ElementEditingTest::copiesTheNameOfAnElement()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.update();
    const int count = tab.count();
    const QString name = someName(tab);
    tab.select({name});
    Dialogs dialogs(&tab);
    dialogs.answer("a copy");
    tab.press("Copy");
    QCOMPARE(dialogs.answerer.problems(), QStringList());
    QCOMPARE(dialogs.seen, dialogs.expected("Copy", name + " - copy"));
    QCOMPARE(tab.count(), count + 1);
    QCOMPARE(tab.current(), QStringLiteral("a copy"));
    QCOMPARE(tab.focused(), static_cast<QWidget *>(tab.view()));
    QVERIFY(tab.shown().contains(name));
    QCOMPARE(tab.told.last().first().toInt(), count + 1);
}

void ElementEditingTest::copiesNothingOfAnRnaiButItsName()
{
    ElementTab tab(rnai);
    tab.library->run("UPDATE RNAi SET BlockedMechanism = 'mitosis' WHERE Id = 3");
    tab.update();
    Dialogs dialogs(&tab);
    dialogs.answer("renamed");
    tab.command("edit", 3);
    dialogs.answer("copied");
    const int id = tab.copy(3);
    const auto blocked = [&tab](int row) {
        return tab.library->value(
            QStringLiteral("SELECT BlockedMechanism FROM RNAi WHERE Id = %1").arg(row));
    };
    QCOMPARE(tab.idOf("copied"), id);
    QVERIFY(blocked(id).isNull());
    QCOMPARE(blocked(3).toString(), QStringLiteral("mitosis"));
}

void ElementEditingTest::renamesANamedElement_data()
{
    addNamedTypes();
}

void ElementEditingTest::renamesANamedElement()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.update();
    const int count = tab.count();
    const QString name = someName(tab);
    const int id = tab.idOf(name);
    tab.select({name});
    Dialogs dialogs(&tab);
    dialogs.answer("another name");
    tab.press("Edit");
    QCOMPARE(dialogs.answerer.problems(), QStringList());
    QCOMPARE(dialogs.seen, dialogs.expected("Edit", name));
    QCOMPARE(tab.count(), count);
    QCOMPARE(tab.idOf("another name"), id);
    QCOMPARE(tab.current(), QStringLiteral("another name"));
    QCOMPARE(tab.focused(), static_cast<QWidget *>(tab.view()));
}

void ElementEditingTest::asksAgainForANameThatIsTaken()
{
    ElementTab tab(drugs);
    tab.update();
    Dialogs dialogs(&tab);
    dialogs.answer("octanol");
    dialogs.answerer.expectBox({"Drug with same name found",
                                "The database already contains a drug with the same name. Please, "
                                "specify a different name for this drug.",
                                QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Warning},
                               QMessageBox::Ok);
    dialogs.answer("nonanol");
    tab.press("New");
    QCOMPARE(dialogs.answerer.problems(), QStringList());
    QCOMPARE(tab.count(), 17);
    QVERIFY(tab.shown().contains("nonanol"));
}

void ElementEditingTest::storesTheNameOnReturn()
{
    ElementTab tab(drugs);
    tab.update();
    ModalAnswerer answerer;
    answerer.expectDialog([](QDialog *dialog) {
        auto *edit = dialog->findChild<QLineEdit *>();
        QTest::keyClicks(edit, "nonanol");
        QTest::keyClick(edit, Qt::Key_Return);
    });
    tab.press("New");
    QCOMPARE(answerer.problems(), QStringList());
    QVERIFY(tab.shown().contains("nonanol"));
}

// --- In a form ---

void ElementEditingTest::makesAnElementInItsForm_data()
{
    addTypes([](int type) { return type != experiments && !hasNameOnly(type); });
}

void ElementEditingTest::makesAnElementInItsForm()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.update();
    const int count = tab.count();
    Dialogs dialogs(&tab);
    dialogs.answer("brand new");
    tab.press("New");
    QCOMPARE(dialogs.answerer.problems(), QStringList());
    QCOMPARE(dialogs.seen, dialogs.expected("New", ""));
    QCOMPARE(dialogs.parent, static_cast<const QWidget *>(tab.widget()));
    QCOMPARE(tab.count(), count + 1);
    QCOMPARE(tab.current(), QStringLiteral("brand new"));
    QCOMPARE(tab.focused(), static_cast<QWidget *>(tab.view()));
    QCOMPARE(tab.library->brokenReferences(), QStringList());
}

namespace {

/// Chooses something everywhere, and one worm as the only result.
void fillExperimentForm(QDialog *form)
{
    for (auto *box : form->findChildren<QComboBox *>())
        box->setCurrentIndex(1);
    for (auto *button : form->findChildren<QPushButton *>()) {
        if (button->text() == "Add morph.")
            button->click();
    }
    for (auto *number : form->findChildren<QDoubleSpinBox *>())
        number->setValue(1.0);
    form->findChild<QLineEdit *>()->setText("brand new");
    form->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
}

} // namespace

void ElementEditingTest::makesAnExperimentOfWhatTheFileHolds()
{
    ElementTab tab(experiments);
    tab.update();
    ModalAnswerer answerer;
    answerer.expectDialog(fillExperimentForm);
    tab.press("New");
    QCOMPARE(answerer.problems().join(u'\n'), QString());
    QCOMPARE(tab.count(), 101);
    QCOMPARE(tab.current(), QStringLiteral("brand new"));
    QCOMPARE(tab.focused(), static_cast<QWidget *>(tab.view()));
    QCOMPARE(tab.library->brokenReferences(), QStringList());
}

void ElementEditingTest::copiesAnElementInItsForm_data()
{
    addFormTypes();
}

void ElementEditingTest::copiesAnElementInItsForm()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.update();
    const int count = tab.count();
    const QString name = someName(tab);
    tab.select({name});
    Dialogs dialogs(&tab);
    dialogs.answer("a copy");
    tab.press("Copy");
    QCOMPARE(dialogs.answerer.problems(), QStringList());
    QCOMPARE(dialogs.seen, dialogs.expected("New", name + " - copy")); // it has no id yet
    QCOMPARE(dialogs.parent, static_cast<const QWidget *>(tab.widget()));
    QCOMPARE(tab.count(), count + 1);
    QCOMPARE(tab.current(), QStringLiteral("a copy"));
    QVERIFY(tab.shown().contains(name));
    QCOMPARE(tab.focused(), static_cast<QWidget *>(tab.view()));
    QCOMPARE(tab.library->brokenReferences(), QStringList());
}

void ElementEditingTest::editsAnElementInItsForm_data()
{
    addFormTypes();
}

void ElementEditingTest::editsAnElementInItsForm()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.update();
    const int count = tab.count();
    const QString name = someName(tab);
    const int id = tab.idOf(name);
    tab.select({name});
    Dialogs dialogs(&tab);
    dialogs.answer("another name");
    tab.press("Edit");
    QCOMPARE(dialogs.answerer.problems(), QStringList());
    QCOMPARE(dialogs.seen, dialogs.expected("Edit", name));
    QCOMPARE(tab.count(), count);
    QCOMPARE(tab.idOf("another name"), id);
    QCOMPARE(tab.current(), QStringLiteral("another name"));
    QCOMPARE(tab.focused(), static_cast<QWidget *>(tab.view()));
    QCOMPARE(tab.library->brokenReferences(), QStringList());
}

void ElementEditingTest::copiesAndEditsAWormWithItsPictures()
{
    ElementTab tab(morphologies);
    tab.update();
    const auto pictures = [&tab](int id) {
        return tab.library
            ->value(QStringLiteral("SELECT COUNT(*) FROM MorphologyImage WHERE Morphology = %1")
                        .arg(id))
            .toInt();
    };
    constexpr int pictured = 11;
    QCOMPARE(pictures(pictured), 1);
    Dialogs dialogs(&tab);
    dialogs.answer("edited");
    tab.command("edit", pictured);
    QCOMPARE(pictures(pictured), 1);
    dialogs.answer("copied");
    const int id = tab.copy(pictured);
    QCOMPARE(pictures(id), 1);
    const Morphology source(pictured, tab.library->db(), true);
    Morphology copied(id, tab.library->db(), true);
    copied.setName(source.name());
    QVERIFY(copied == source);
}

void ElementEditingTest::copiesAnExperimentWithAllItHolds()
{
    ElementTab tab(experiments);
    tab.update();
    Dialogs dialogs(&tab);
    dialogs.answer("copied");
    const int sourceId = tab.idOf(someName(tab));
    const int id = tab.copy(sourceId);
    QCOMPARE(dialogs.answerer.problems(), QStringList());
    const Experiment source(sourceId, tab.library->db());
    Experiment copied(id, tab.library->db());
    copied.setName(source.name());
    QVERIFY(id > 0 && id != sourceId);
    QVERIFY(!source.resultSets().isEmpty());
    QVERIFY(copied == source);
    QCOMPARE(tab.library->brokenReferences(), QStringList());
}

// --- All ---

void ElementEditingTest::makesNothingThatIsCancelled_data()
{
    addTabTypes();
}

void ElementEditingTest::makesNothingThatIsCancelled()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.update();
    const int count = tab.count();
    Dialogs dialogs(&tab);
    dialogs.answer(QString());
    tab.press("New");
    QCOMPARE(dialogs.answerer.problems(), QStringList());
    QCOMPARE(tab.count(), count);
    QCOMPARE(tab.told.size(), 1); // the table is not read anew
}

void ElementEditingTest::copiesNothingThatIsCancelled_data()
{
    addTabTypes();
}

void ElementEditingTest::copiesNothingThatIsCancelled()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.update();
    const int count = tab.count();
    const QString name = someName(tab);
    Dialogs dialogs(&tab);
    dialogs.answer(QString());
    QCOMPARE(tab.copy(tab.idOf(name)), 0);

    tab.select({name});
    dialogs.answer(QString());
    tab.press("Copy");
    QCOMPARE(dialogs.answerer.problems(), QStringList());
    QCOMPARE(tab.count(), count);
    QCOMPARE(tab.told.size(), 1);
    QCOMPARE(tab.selected(), QStringList(name));
    QCOMPARE(tab.focused(), static_cast<QWidget *>(tab.view()));
}

void ElementEditingTest::editsNothingThatIsCancelled_data()
{
    addTabTypes();
}

void ElementEditingTest::editsNothingThatIsCancelled()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.update();
    const QStringList names = tab.shown();
    const QString name = someName(tab);
    tab.select({name});
    Dialogs dialogs(&tab);
    dialogs.answer(QString());
    tab.press("Edit");
    QCOMPARE(dialogs.answerer.problems(), QStringList());
    QCOMPARE(tab.shown(), names);
    QCOMPARE(tab.told.size(), 2);
    QCOMPARE(tab.current(), name);
}

void ElementEditingTest::doesNothingWithoutACurrentRow()
{
    ElementTab tab(drugs);
    tab.update();
    ModalAnswerer answerer;
    for (const char *text : {"Copy", "Edit"}) {
        tab.button(text)->setEnabled(true);
        tab.press(text);
    }
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(tab.told.size(), 1);
}

void ElementEditingTest::editsTheRowThatIsDoubleClicked_data()
{
    addTabTypes();
}

void ElementEditingTest::editsTheRowThatIsDoubleClicked()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.update();
    const QString name = someName(tab);
    tab.select({name});
    Dialogs dialogs(&tab);
    dialogs.answer(QString());
    QTest::mouseDClick(tab.view()->viewport(), Qt::LeftButton, Qt::NoModifier, tab.centre(name));
    QCOMPARE(dialogs.answerer.problems(), QStringList());
    QCOMPARE(dialogs.seen, dialogs.expected("Edit", name));
}

void ElementEditingTest::editsTheCurrentOfSeveralRows()
{
    ElementTab tab(drugs);
    tab.update();
    const QStringList names = tab.shown();
    tab.select({names.at(1), names.at(4)});
    QCOMPARE(tab.enabledButtons(), QStringList("Delete"));
    Dialogs dialogs(&tab);
    dialogs.answer("renamed");
    // The second press of a double click with Ctrl, whose first one has selected the row.
    const QPoint place = tab.centre(names.at(4));
    QMouseEvent twice(QEvent::MouseButtonDblClick, place,
                      tab.view()->viewport()->mapToGlobal(place), Qt::LeftButton, Qt::LeftButton,
                      Qt::ControlModifier);
    QApplication::sendEvent(tab.view()->viewport(), &twice);
    QCOMPARE(dialogs.answerer.problems(), QStringList());
    QCOMPARE(dialogs.seen, dialogs.expected("Edit", names.at(4)));
    QVERIFY(tab.shown().contains("renamed"));
}

namespace {

void expectStoreFailure(ModalAnswerer *answerer, const QString &word)
{
    answerer->expectBox({"Cannot store " + word,
                         "The " + word + " could not be written to the file.", QMessageBox::Ok,
                         QMessageBox::Ok, QMessageBox::Critical},
                        QMessageBox::Ok);
}

} // namespace

void ElementEditingTest::tellsOfAnElementThatTheFileDoesNotTake_data()
{
    addTabTypes();
}

void ElementEditingTest::tellsOfAnElementThatTheFileDoesNotTake()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.update();
    const int count = tab.count();
    tab.library->run("CREATE TRIGGER full BEFORE INSERT ON " + tab.type.table +
                     " BEGIN SELECT RAISE(ABORT, 'full'); END");
    Dialogs dialogs(&tab);
    dialogs.answer("a copy");
    expectStoreFailure(&dialogs.answerer, tab.type.word);
    QCOMPARE(tab.copy(tab.idOf(someName(tab))), 0);
    QCOMPARE(dialogs.answerer.problems(), QStringList());
    QCOMPARE(tab.count(), count);
    QVERIFY(!tab.library->db()->inTransaction());
    QCOMPARE(tab.library->brokenReferences(), QStringList());
}

void ElementEditingTest::tellsOfAnEditedElementThatIsGone_data()
{
    addNamedTypes();
}

void ElementEditingTest::tellsOfAnEditedElementThatIsGone()
{
    QFETCH(const int, type);
    ElementTab tab(type);
    tab.update();
    Dialogs dialogs(&tab);
    dialogs.answer("renamed");
    expectStoreFailure(&dialogs.answerer, tab.type.word);
    tab.command("edit", 12345);
    QCOMPARE(dialogs.answerer.problems(), QStringList());
    QCOMPARE(tab.idOf("renamed"), 0);
}

} // namespace Planaria

QTEST_MAIN(Planaria::ElementEditingTest)
#include "ElementEditingTest.moc"
