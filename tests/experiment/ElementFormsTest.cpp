#include "experiment/Parts.h"
#include "experiment/PublicationForm.h"
#include "experiment/SpeciesForm.h"
#include "model/Publication.h"
#include "model/Species.h"
#include "support/NamedForm.h"
#include "support/StatementLog.h"
#include "support/TemporaryLibrary.h"

#include <QDate>
#include <QFormLayout>
#include <QLabel>
#include <QSettings>
#include <QSpinBox>

using namespace Planaria;

namespace {

const auto emptyName =
    warning("Name is empty",
            "The name of a species cannot be left blank. Please, specify a name for the species.");
const auto takenName = warning("Species with same name found",
                               "The database already contains a species with the same name. "
                               "Please, specify a different name for this species.");
const auto emptyTitle =
    warning("Title is empty",
            "The title of a publication cannot be left blank. Please, specify a title for the "
            "publication.");
const auto takenTitle = warning("Publication with same title found",
                                "The database already contains a publication with the same title. "
                                "Please, specify a different title for this publication.");

} // namespace

/// Most behaviour is told of both forms: each takes an element with a name, which for a publication
/// is its title. The file holds the species "planaria" and the publication "paper", each as row 1.
class ElementFormsTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void bearsItsTitle_data() { addForms(); }
    void bearsItsTitle();
    void namesItsRows();
    void endsWithItsButtons_data() { addForms(); }
    void endsWithItsButtons();
    void growsItsFieldsAsItsStyleHasIt();

    void takesTheNameWhenItsFieldIsLeft_data() { addForms(); }
    void takesTheNameWhenItsFieldIsLeft();
    void takesTheNameByAnyWayToOk_data();
    void takesTheNameByAnyWayToOk();
    void takesTheAddressAndTheYear();
    void takesTheAddressAlsoWithTheCursorInIt();
    void keepsAnAddressThatWasNeverGiven();
    void keepsAYearThatItCannotShow();
    void startsANewPublicationInThisYear();

    void refusesAnEmptyName_data() { addForms(); }
    void refusesAnEmptyName();
    void refusesTheNameOfAnother_data() { addForms(); }
    void refusesTheNameOfAnother();
    void refusesTheNameOfItsSourceForACopy_data() { addForms(); }
    void refusesTheNameOfItsSourceForACopy();
    void letsAStoredElementKeepItsName_data() { addForms(); }
    void letsAStoredElementKeepItsName();
    void takesTheSameNameInOtherCase_data() { addForms(); }
    void takesTheSameNameInOtherCase();

    void leavesTheFileAlone_data();
    void leavesTheFileAlone();
    void remembersItsSize_data() { addForms(); }
    void remembersItsSize();
    void keepsItsNormalSizeWhileItIsMaximized_data() { addForms(); }
    void keepsItsNormalSizeWhileItIsMaximized();
    void opensSmall();

private:
    static void addForms();
    /// Loads row @p id, or makes a new element without, and opens the form that the row of the test
    /// asks for.
    void open(int id);
    void openFormOf(Species *edited);
    void openFormOf(Publication *edited);
    void show();
    void reset();

    [[nodiscard]] QLineEdit *nameEdit() const { return form->findChild<QLineEdit *>(); }
    [[nodiscard]] QLineEdit *urlEdit() const { return form->findChildren<QLineEdit *>().at(1); }
    [[nodiscard]] QSpinBox *yearBox() const { return form->findChild<QSpinBox *>(); }
    [[nodiscard]] QPushButton *formButton(QDialogButtonBox::StandardButton which) const;
    [[nodiscard]] bool isAccepted() const;
    [[nodiscard]] QString name() const { return species ? species->name() : paper->title(); }
    [[nodiscard]] QString storedName() const { return species ? "planaria" : "paper"; }
    [[nodiscard]] QString setting(const QString &key) const;
    void setName(const QString &newName);
    /// Presses OK and expects @p expected in its way, then the cursor in the name.
    void expectRefusal(const ModalAnswerer::Box &expected);

    StatementLog log; // before any connection opens
    std::unique_ptr<TemporaryLibrary> library;
    std::unique_ptr<Species> species; // null where the form is that of a publication
    std::unique_ptr<Publication> paper;
    std::unique_ptr<QDialog> form;
};

void ElementFormsTest::addForms()
{
    QTest::addColumn<bool>("ofSpecies");
    QTest::newRow("species") << true;
    QTest::newRow("publication") << false;
}

void ElementFormsTest::init()
{
    reset();
    QSettings().clear();
    library = std::make_unique<TemporaryLibrary>();
    library->run("INSERT INTO Species VALUES(1, 'planaria'), (2, 'Planaria torva')");
    library->run("INSERT INTO Publication VALUES(1, 'paper', 'https://paper.example', 1901), "
                 "(2, 'Older paper', NULL, 0)");
}

void ElementFormsTest::reset()
{
    form.reset();
    species.reset();
    paper.reset();
}

void ElementFormsTest::open(int id)
{
    QFETCH(const bool, ofSpecies);
    reset();
    DB *db = library->db();
    if (ofSpecies) {
        species = id ? std::make_unique<Species>(id, db) : std::make_unique<Species>();
        openFormOf(species.get());
    } else {
        paper = id ? std::make_unique<Publication>(id, db) : std::make_unique<Publication>();
        openFormOf(paper.get());
    }
}

void ElementFormsTest::openFormOf(Species *edited)
{
    form = std::make_unique<SpeciesForm>(edited, library->db(), nullptr);
    show();
}

void ElementFormsTest::openFormOf(Publication *edited)
{
    form = std::make_unique<PublicationForm>(edited, library->db(), nullptr);
    show();
}

void ElementFormsTest::show()
{
    form->show();
    form->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(form.get()));
}

QPushButton *ElementFormsTest::formButton(QDialogButtonBox::StandardButton which) const
{
    return form->findChild<QDialogButtonBox *>()->button(which);
}

bool ElementFormsTest::isAccepted() const
{
    return form->isHidden() && form->result() == QDialog::Accepted;
}

QString ElementFormsTest::setting(const QString &key) const
{
    return (species ? "SpeciesForm/" : "PublicationForm/") + key;
}

void ElementFormsTest::setName(const QString &newName)
{
    if (species)
        species->setName(newName);
    else
        paper->setTitle(newName);
}

void ElementFormsTest::expectRefusal(const ModalAnswerer::Box &expected)
{
    ModalAnswerer answerer;
    answerer.expectBox(expected, QMessageBox::Ok);
    QTest::mouseClick(formButton(QDialogButtonBox::Ok), Qt::LeftButton);
    QCOMPARE(answerer.problems(), QStringList());
    QVERIFY(form->isVisible());
    QCOMPARE(form->focusWidget(), nameEdit());
}

// --- The parts ---

void ElementFormsTest::bearsItsTitle()
{
    open(0);
    const QString kind = species ? "species" : "publication";
    QCOMPARE(form->windowTitle(), "New " + kind);
    QCOMPARE(nameEdit()->text(), "");
    open(1);
    QCOMPARE(form->windowTitle(), "Edit " + kind);
    QCOMPARE(nameEdit()->text(), storedName());
}

void ElementFormsTest::namesItsRows()
{
    paper = std::make_unique<Publication>(1, library->db());
    openFormOf(paper.get());
    const auto *rows = form->findChild<QFormLayout *>();
    QStringList labels;
    QWidgetList fields;
    for (int row = 0; row < 3; ++row) {
        labels +=
            qobject_cast<QLabel *>(rows->itemAt(row, QFormLayout::LabelRole)->widget())->text();
        fields += rows->itemAt(row, QFormLayout::FieldRole)->widget();
    }
    QCOMPARE(labels, QStringList({"&Title:", "&URL:", "&Year:"}));
    QCOMPARE(fields, QWidgetList({nameEdit(), urlEdit(), yearBox()}));
    QCOMPARE(urlEdit()->text(), "https://paper.example");
    QCOMPARE(yearBox()->value(), 1901);
    QCOMPARE(yearBox()->minimum(), 1);
    QCOMPARE(yearBox()->maximum(), 9999);

    species = std::make_unique<Species>(1, library->db());
    openFormOf(species.get());
    QCOMPARE(
        qobject_cast<QLabel *>(form->findChild<QFormLayout *>()->labelForField(nameEdit()))->text(),
        "&Name:");
}

void ElementFormsTest::endsWithItsButtons()
{
    open(0);
    const auto *rows = form->findChild<QFormLayout *>();
    const auto *buttons = form->findChild<QDialogButtonBox *>();
    QCOMPARE(rows->itemAt(rows->count() - 1)->widget(), buttons);
    QCOMPARE(buttons->standardButtons(), QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QCOMPARE(buttons->orientation(), Qt::Horizontal);
}

void ElementFormsTest::growsItsFieldsAsItsStyleHasIt()
{
    species = std::make_unique<Species>();
    openFormOf(species.get());
    const QFormLayout plain;
    QCOMPARE(form->findChild<QFormLayout *>()->fieldGrowthPolicy(), plain.fieldGrowthPolicy());
    paper = std::make_unique<Publication>();
    openFormOf(paper.get());
    QCOMPARE(form->findChild<QFormLayout *>()->fieldGrowthPolicy(),
             QFormLayout::AllNonFixedFieldsGrow);
}

// --- What is typed ---

void ElementFormsTest::takesTheNameWhenItsFieldIsLeft()
{
    open(1);
    typeInto(nameEdit(), "another");
    QCOMPARE(name(), storedName());
    QTest::keyClick(nameEdit(), Qt::Key_Tab);
    QCOMPARE(name(), "another");
}

void ElementFormsTest::takesTheNameByAnyWayToOk_data()
{
    QTest::addColumn<bool>("ofSpecies");
    QTest::addColumn<int>("way");
    for (int way = 0; way < waysToOk().size(); ++way) {
        QTest::addRow("species, %s", waysToOk()[way].name) << true << way;
        QTest::addRow("publication, %s", waysToOk()[way].name) << false << way;
    }
}

void ElementFormsTest::takesTheNameByAnyWayToOk()
{
    QFETCH(const int, way);
    open(0);
    typeInto(nameEdit(), "a new name");
    waysToOk()[way].go(nameEdit(), formButton(QDialogButtonBox::Ok));
    QTRY_VERIFY(isAccepted());
    QCOMPARE(name(), "a new name");
}

void ElementFormsTest::takesTheAddressAndTheYear()
{
    paper = std::make_unique<Publication>(1, library->db());
    openFormOf(paper.get());
    typeInto(urlEdit(), "https://new.example");
    QCOMPARE(paper->url(), "https://paper.example");
    QTest::keyClick(urlEdit(), Qt::Key_Tab);
    QCOMPARE(paper->url(), "https://new.example");
    QTest::keyClick(yearBox(), Qt::Key_Up);
    QCOMPARE(paper->year(), 1902);
    typeNumber(yearBox(), "1898");
    QCOMPARE(paper->year(), 1898);
}

void ElementFormsTest::takesTheAddressAlsoWithTheCursorInIt()
{
    paper = std::make_unique<Publication>(1, library->db());
    openFormOf(paper.get());
    typeInto(urlEdit(), "https://new.example");
    formButton(QDialogButtonBox::Ok)->click();
    QVERIFY(isAccepted());
    QCOMPARE(paper->url(), "https://new.example");
}

void ElementFormsTest::keepsAnAddressThatWasNeverGiven()
{
    paper = std::make_unique<Publication>(2, library->db());
    openFormOf(paper.get());
    urlEdit()->setFocus();
    QTest::keyClick(urlEdit(), Qt::Key_Return);
    QVERIFY(isAccepted());
    paper->submit(library->db());
    QVERIFY(library->value("SELECT URL FROM Publication WHERE Id=2").isNull());
}

void ElementFormsTest::keepsAYearThatItCannotShow()
{
    paper = std::make_unique<Publication>(2, library->db());
    openFormOf(paper.get());
    QCOMPARE(yearBox()->value(), 1);
    QTest::mouseClick(formButton(QDialogButtonBox::Ok), Qt::LeftButton);
    QVERIFY(isAccepted());
    QCOMPARE(paper->year(), 0);
}

void ElementFormsTest::startsANewPublicationInThisYear()
{
    paper = std::make_unique<Publication>();
    openFormOf(paper.get());
    QCOMPARE(yearBox()->value(), QDate::currentDate().year());
}

// --- Names that are refused ---

void ElementFormsTest::refusesAnEmptyName()
{
    open(0);
    expectRefusal(species ? emptyName : emptyTitle);
    open(1);
    typeInto(nameEdit(), "");
    expectRefusal(species ? emptyName : emptyTitle);
}

void ElementFormsTest::refusesTheNameOfAnother()
{
    open(0);
    typeInto(nameEdit(), storedName());
    expectRefusal(species ? takenName : takenTitle);
    open(2);
    typeInto(nameEdit(), storedName());
    expectRefusal(species ? takenName : takenTitle);
    typeInto(nameEdit(), "a free name");
    QTest::mouseClick(formButton(QDialogButtonBox::Ok), Qt::LeftButton);
    QVERIFY(isAccepted());
}

void ElementFormsTest::refusesTheNameOfItsSourceForACopy()
{
    open(0);
    setName(storedName()); // as a copy that was not renamed
    if (species)
        openFormOf(species.get());
    else
        openFormOf(paper.get());
    QVERIFY(form->windowTitle().startsWith("New"));
    expectRefusal(species ? takenName : takenTitle);
}

void ElementFormsTest::letsAStoredElementKeepItsName()
{
    open(1);
    log.take();
    QTest::mouseClick(formButton(QDialogButtonBox::Ok), Qt::LeftButton);
    QVERIFY(isAccepted());
    QCOMPARE(log.take(), QStringList()); // it does not even ask
}

void ElementFormsTest::takesTheSameNameInOtherCase()
{
    open(1);
    typeInto(nameEdit(), storedName().toUpper());
    QTest::mouseClick(formButton(QDialogButtonBox::Ok), Qt::LeftButton);
    QVERIFY(isAccepted());
    QCOMPARE(name(), storedName().toUpper());
}

// --- File and settings ---

void ElementFormsTest::leavesTheFileAlone_data()
{
    QTest::addColumn<bool>("ofSpecies");
    QTest::addColumn<bool>("accept");
    QTest::newRow("species, OK") << true << true;
    QTest::newRow("species, Cancel") << true << false;
    QTest::newRow("publication, OK") << false << true;
    QTest::newRow("publication, Cancel") << false << false;
}

void ElementFormsTest::leavesTheFileAlone()
{
    QFETCH(const bool, accept);
    for (const int id : {0, 1}) {
        open(id);
        typeInto(nameEdit(), QStringLiteral("changed %1").arg(id));
        QTest::mouseClick(formButton(accept ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel),
                          Qt::LeftButton);
        QCOMPARE(isAccepted(), accept);
        QVERIFY(form->isHidden());
    }
    QCOMPARE(library->count("Species"), 2);
    QCOMPARE(library->count("Publication"), 2);
    QCOMPARE(library->value("SELECT Name FROM Species WHERE Id=1").toString(), "planaria");
    QCOMPARE(library->value("SELECT Title FROM Publication WHERE Id=1").toString(), "paper");
}

void ElementFormsTest::remembersItsSize()
{
    open(0);
    form->resize(501, 211);
    QTest::mouseClick(formButton(QDialogButtonBox::Cancel), Qt::LeftButton);
    form.reset();
    QCOMPARE(QSettings().value(setting("size")).toSize(), QSize(501, 211));
    QCOMPARE(QSettings().value(setting("maximized")).toBool(), false);
    open(0);
    QCOMPARE(form->size(), QSize(501, 211));
}

void ElementFormsTest::keepsItsNormalSizeWhileItIsMaximized()
{
    open(0);
    form.reset();
    QSettings().setValue(setting("size"), QSize(501, 211));
    QSettings().setValue(setting("maximized"), true);
    open(0);
    QVERIFY(form->isMaximized());
    form.reset();
    QCOMPARE(QSettings().value(setting("maximized")).toBool(), true);
    QCOMPARE(QSettings().value(setting("size")).toSize(), QSize(501, 211));
}

void ElementFormsTest::opensSmall()
{
    paper = std::make_unique<Publication>();
    openFormOf(paper.get());
    QCOMPARE(form->size(), QSize(300, 128).expandedTo(form->minimumSizeHint()));
    species = std::make_unique<Species>();
    openFormOf(species.get());
    QVERIFY(form->height() < 128);
}

QTEST_MAIN(ElementFormsTest)
#include "ElementFormsTest.moc"
