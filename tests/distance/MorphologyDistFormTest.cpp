#include "distance/MorphologyDistForm.h"

#include "distance/ShownDistance.h"
#include "distance/StoredWorms.h"
#include "morphology/ChooserParts.h"
#include "morphology/MGRegion.h"
#include "morphology/MorphoGraphView.h"
#include "support/StatementLog.h"

#include <QLabel>
#include <QLayout>
#include <QSettings>
#include <QSqlQueryModel>

#include <cstdlib>
#include <limits>

using namespace Planaria;

namespace {

const auto nothingChosen =
    QStringLiteral("Please, select two morphologies to calculate their distance");

QString distanceText(const QString &number)
{
    return QStringLiteral("The distance between the morphologies is %1 units").arg(number);
}

/// The calculator as a user sees it.
struct OpenForm
{
    explicit OpenForm(TemporaryLibrary *library) : form(library->db(), nullptr) { form.show(); }

    ChooserParts side(int index)
    {
        return ChooserParts(form.findChildren<MorphologyChooser *>().at(index));
    }
    ChooserParts left() { return side(0); }
    ChooserParts right() { return side(1); }
    QLabel *label() { return form.findChild<QLabel *>(); }

    MorphologyDistForm form;
};

/// Deletes the first region in the editor of a worm.
void deleteHead(QDialog *editor)
{
    auto *graph = editor->findChild<MorphoGraphView *>();
    graph->regionNodes().value(graph->morphology()->regions().first())->setSelected(true);
    graph->deleteSelection();
}

/// Null where there is none.
QPushButton *checkButton()
{
    for (QWidget *widget : QApplication::allWidgets()) {
        auto *button = qobject_cast<QPushButton *>(widget);
        if (button && button->text() == "Check algorithm")
            return button;
    }
    return nullptr;
}

/// What a label says each time that it is painted.
class PaintedTexts final : public QObject
{
    Q_OBJECT

public:
    explicit PaintedTexts(QLabel *shown) : label(shown) { label->installEventFilter(this); }

    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && (texts.isEmpty() || texts.last() != label->text()))
            texts += label->text();
        return false;
    }

    QStringList texts;

private:
    QLabel *label;
};

} // namespace

/// The calculator.
class MorphologyDistFormTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void putsTheSidesAboveTheResultAndItsButton();
    void writesTheResultInBold();
    void leadsFromLeftToRightByTab();

    void choosesTheFirstOnBothSides();
    void isZeroForTheSameOnBothSides();
    void showsTheDistanceOfWhatIsChosen_data();
    void showsTheDistanceOfWhatIsChosen();
    void showsTheDistanceFromADamagedWorm_data();
    void showsTheDistanceFromADamagedWorm();
    void writesADistanceWithoutNumberAsInfinite();
    void saysThatItCalculatesWhileItDoes();
    void asksForMorphologiesWhereThereAreNone();
    void keepsAskingUntilBothSidesAreChosen();
    void loadsOneWormForEachChoice();

    void keepsTheOtherSideWhenOneIsEdited_data();
    void keepsTheOtherSideWhenOneIsEdited();
    void keepsTheOtherSideOfALongList();
    void choosesACopyOnItsSideAlone();
    void choosesANewOneOnItsSideAlone();
    void comparesWithTheOtherSideAsItWasLoaded();
    void keepsWhatTheOtherSideChanged_data();
    void keepsWhatTheOtherSideChanged();
    void leavesAllAsItWasWhenTheUserCancels_data();
    void leavesAllAsItWasWhenTheUserCancels();

    void hasNoControlForTheSelfTest();
    void comparesRandomPairsFromOneClickToTheNext();
    void drawsTheSideAndThenTheMorphology();
    void testsNothingWithoutMorphologies();
    void endsTheSelfTestWithTheForm();

private:
    std::unique_ptr<TemporaryLibrary> library;
};

void MorphologyDistFormTest::init()
{
    QSettings().clear();
    library = std::make_unique<TemporaryLibrary>();
}

void MorphologyDistFormTest::cleanup()
{
    QCOMPARE(library->brokenReferences(), QStringList());
}

// --- The parts ---

void MorphologyDistFormTest::putsTheSidesAboveTheResultAndItsButton()
{
    OpenForm open(library.get());
    const QLayout *layout = open.form.layout();
    QCOMPARE(layout->count(), 3);
    const QLayout *sides = layout->itemAt(0)->layout();
    QCOMPARE(sides->count(), 2);
    QCOMPARE(sides->itemAt(0)->widget(), open.left().chooser);
    QCOMPARE(sides->itemAt(1)->widget(), open.right().chooser);
    QCOMPARE(open.left().chooser->width(), open.right().chooser->width());
    QCOMPARE(layout->itemAt(1)->widget(), open.label());

    const QLayout *row = layout->itemAt(2)->layout();
    QCOMPARE(row->count(), 2);
    QVERIFY(row->itemAt(0)->spacerItem());
    const auto *close = qobject_cast<QPushButton *>(row->itemAt(1)->widget());
    QVERIFY(close);
    QCOMPARE(close->text(), "Close");
}

void MorphologyDistFormTest::writesTheResultInBold()
{
    OpenForm open(library.get());
    const QFont font = open.label()->font();
    QCOMPARE(font.family(), "Arial");
    QCOMPARE(font.pointSize(), 12);
    QCOMPARE(font.weight(), QFont::Bold);
    QCOMPARE(open.label()->alignment(), Qt::AlignCenter);
}

void MorphologyDistFormTest::leadsFromLeftToRightByTab()
{
    storeWorm(library.get(), "Cyclops");
    OpenForm open(library.get());
    open.left().list()->setFocus();
    QStringList seen;
    for (int i = 0; i < 11; ++i) {
        const QWidget *focus = open.form.focusWidget();
        const auto *button = qobject_cast<const QPushButton *>(focus);
        seen += (button ? button->text() + QLatin1Char(' ') : QString()) +
                (button ? focus->accessibleDescription() : focus->accessibleName());
        QTest::keyClick(open.form.focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(seen,
             QStringList({"Left morphology", "Edit Left morphology", "Copy Left morphology",
                          "New Left morphology", "Drawing of morphology Cyclops",
                          "Right morphology", "Edit Right morphology", "Copy Right morphology",
                          "New Right morphology", "Drawing of morphology Cyclops", "Close "}));
}

// --- The distance ---

void MorphologyDistFormTest::choosesTheFirstOnBothSides()
{
    storeWorm(library.get(), "Two heads", 10.0);
    storeWorm(library.get(), "Cyclops");
    OpenForm open(library.get());
    for (const int index : {0, 1}) {
        QCOMPARE(open.side(index).names(), QStringList({"Cyclops", "Two heads"}));
        QCOMPARE(open.side(index).chosenName(), "Cyclops");
        QCOMPARE(open.side(index).shownName(), "Cyclops");
    }
    QVERIFY(open.left().chooser->morphology() != open.right().chooser->morphology());
    QCOMPARE(open.label()->text(), distanceText("0.00"));
}

void MorphologyDistFormTest::isZeroForTheSameOnBothSides()
{
    storeWorm(library.get(), "Cyclops");
    storeWorm(library.get(), "Two heads", 10.0);
    OpenForm open(library.get());
    open.left().choose("Two heads");
    open.right().choose("Two heads");
    QCOMPARE(open.label()->text(), distanceText("0.00"));
}

void MorphologyDistFormTest::showsTheDistanceOfWhatIsChosen_data()
{
    QTest::addColumn<double>("longer");
    QTest::addColumn<QString>("text");
    QTest::newRow("whole") << 10.0 << "1.00";
    QTest::newRow("two decimals") << 123.4 << "12.34";
    QTest::newRow("rounded") << 0.56 << "0.06";
    QTest::newRow("too small to see") << 0.01 << "0.00";
    QTest::newRow("large") << 9999.0 << "999.90";
    QTest::newRow("larger than a change of type") << 12345.0 << "1234.50";
}

void MorphologyDistFormTest::showsTheDistanceOfWhatIsChosen()
{
    QFETCH(const double, longer);
    storeWorm(library.get(), "A");
    storeWorm(library.get(), "B", longer);
    OpenForm open(library.get());
    open.right().choose("B");
    QCOMPARE(open.right().shownName(), "B");
    QCOMPARE(open.left().shownName(), "A");
    QFETCH(const QString, text);
    QCOMPARE(open.label()->text(), distanceText(text));
    open.left().choose("B");
    QCOMPARE(open.label()->text(), distanceText("0.00"));
    open.right().choose("A");
    QCOMPARE(open.label()->text(), distanceText(text));
}

void MorphologyDistFormTest::showsTheDistanceFromADamagedWorm_data()
{
    addDamageRows();
}

void MorphologyDistFormTest::showsTheDistanceFromADamagedWorm()
{
    QFETCH(const QString, damage);
    storeWorm(library.get(), "A");
    library->run(damage.arg(storeWorm(library.get(), "B")));
    OpenForm open(library.get());
    open.right().choose("B");
    QFETCH(const QString, distance);
    QCOMPARE(open.label()->text(), distanceText(distance));
    open.left().choose("B");
    QVERIFY(!open.label()->text().contains("nan"));
}

void MorphologyDistFormTest::writesADistanceWithoutNumberAsInfinite()
{
    QCOMPARE(Planaria::distanceText(std::numeric_limits<double>::quiet_NaN()), "inf");
    QCOMPARE(Planaria::distanceText(std::numeric_limits<double>::infinity()), "inf");
    QCOMPARE(Planaria::distanceText(12.346), "12.35");
}

void MorphologyDistFormTest::saysThatItCalculatesWhileItDoes()
{
    storeWorm(library.get(), "A");
    storeWorm(library.get(), "B", 10.0);
    OpenForm open(library.get());
    QVERIFY(QTest::qWaitForWindowExposed(&open.form));
    const PaintedTexts painted(open.label());
    open.right().choose("B");
    QCOMPARE(painted.texts, QStringList({"Calculating distance..."}));
    QTRY_COMPARE(painted.texts, QStringList({"Calculating distance...", distanceText("1.00")}));
}

void MorphologyDistFormTest::asksForMorphologiesWhereThereAreNone()
{
    OpenForm open(library.get());
    QCOMPARE(open.left().list()->count(), 0);
    QCOMPARE(open.right().list()->count(), 0);
    QCOMPARE(open.label()->text(), nothingChosen);
}

void MorphologyDistFormTest::keepsAskingUntilBothSidesAreChosen()
{
    OpenForm open(library.get());
    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, "First");
    open.right().press("New");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(open.right().shownName(), "First");
    QCOMPARE(open.left().names(), QStringList({"First"}));
    QCOMPARE(open.left().list()->currentIndex(), -1);
    QCOMPARE(open.label()->text(), nothingChosen);
    open.left().choose("First");
    QCOMPARE(open.label()->text(), distanceText("0.00"));
}

void MorphologyDistFormTest::loadsOneWormForEachChoice()
{
    storeWorms(library.get(), 3);
    StatementLog log;
    DB db;
    QCOMPARE(db.connect(library->fileName(), false), int(DB::Opened));
    MorphologyDistForm form(&db);
    const auto loads = [&log] { return log.take().filter("FROM Morphology WHERE Id").size(); };
    QCOMPARE(loads(), 2);
    const ChooserParts right(form.findChildren<MorphologyChooser *>().at(1));
    right.choose("Worm 0002");
    QCOMPARE(loads(), 1);
    right.choose("Worm 0002");
    QCOMPARE(loads(), 0);
}

// --- Editing ---

void MorphologyDistFormTest::keepsTheOtherSideWhenOneIsEdited_data()
{
    QTest::addColumn<int>("edited");
    QTest::addColumn<QString>("newName");
    for (const int side : {0, 1}) {
        const char *name = side == 0 ? "left" : "right";
        QTest::addRow("%s, same name", name) << side << "B";
        QTest::addRow("%s, before the others", name) << side << "0";
        QTest::addRow("%s, behind the others", name) << side << "Z";
    }
}

void MorphologyDistFormTest::keepsTheOtherSideWhenOneIsEdited()
{
    QFETCH(const int, edited);
    QFETCH(const QString, newName);
    for (const char *name : {"A", "B", "C"})
        storeWorm(library.get(), name);
    OpenForm open(library.get());
    const ChooserParts side = open.side(edited);
    const ChooserParts other = open.side(1 - edited);
    side.choose("B");
    other.choose("C");
    const Morphology *kept = other.chooser->morphology();

    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, newName);
    side.press("Edit");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(side.shownName(), newName);
    QCOMPARE(side.list()->currentIndex(), 1);
    QCOMPARE(other.chosenName(), "C");
    QCOMPARE(other.chooser->morphology(), kept);
    QCOMPARE(open.label()->text(), distanceText("0.00"));
    QCOMPARE(library->count("Morphology"), 3);
}

void MorphologyDistFormTest::keepsTheOtherSideOfALongList()
{
    storeWorms(library.get(), 600);
    OpenForm open(library.get());
    open.left().choose("Worm 0590");
    const Morphology *kept = open.left().chooser->morphology();
    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, "Worm 0580b");
    open.right().press("Copy");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(open.right().chosenName(), "Worm 0580b");
    QCOMPARE(open.left().chosenName(), "Worm 0590");
    QCOMPARE(open.left().chooser->morphology(), kept);
}

void MorphologyDistFormTest::choosesACopyOnItsSideAlone()
{
    storeWorm(library.get(), "A");
    storeWorm(library.get(), "B", 10.0);
    OpenForm open(library.get());
    open.right().choose("B");
    ModalAnswerer answerer;
    const auto seen = expectMorphologyForm(&answerer, "0");
    open.right().press("Copy");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(seen->name, "B - copy");
    QCOMPARE(seen->parent, &open.form);
    QCOMPARE(open.right().chosenName(), "0");
    QCOMPARE(open.right().shownName(), "0");
    QCOMPARE(open.left().chosenName(), "A");
    QCOMPARE(open.left().shownName(), "A");
    QCOMPARE(open.left().names(), QStringList({"0", "A", "B"}));
    QCOMPARE(open.label()->text(), distanceText("1.00"));
}

void MorphologyDistFormTest::choosesANewOneOnItsSideAlone()
{
    storeWorm(library.get(), "B");
    OpenForm open(library.get());
    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, "A");
    open.left().press("New");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(open.left().chosenName(), "A");
    QCOMPARE(open.left().shownName(), "A");
    QCOMPARE(open.right().chosenName(), "B");
    QCOMPARE(open.right().shownName(), "B");
    // Three regions, two links and seven organs are missing.
    QCOMPARE(open.label()->text(), distanceText("6850.00"));
}

void MorphologyDistFormTest::comparesWithTheOtherSideAsItWasLoaded()
{
    storeWorm(library.get(), "A");
    OpenForm open(library.get());
    const Morphology *other = open.right().chooser->morphology();
    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, "B");
    open.left().press("Edit");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(open.left().shownName(), "B");
    QCOMPARE(open.right().chooser->morphology(), other);
    QCOMPARE(open.right().shownName(), "A");
    QCOMPARE(open.right().chosenName(), "B");
}

void MorphologyDistFormTest::keepsWhatTheOtherSideChanged_data()
{
    QTest::addColumn<int>("first");
    QTest::newRow("left, then right") << 0;
    QTest::newRow("right, then left") << 1;
}

void MorphologyDistFormTest::keepsWhatTheOtherSideChanged()
{
    QFETCH(const int, first);
    const int id = storeWorm(library.get(), "A");
    OpenForm open(library.get());
    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, "B", deleteHead);
    open.side(first).press("Edit");
    QCOMPARE(library->count("Region"), 2);

    const auto seen = expectMorphologyForm(&answerer, "B");
    open.side(1 - first).press("Edit");
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(seen->name, "B");
    QCOMPARE(library->value("SELECT Name FROM Morphology"), "B");
    QCOMPARE(library->count("Region"), 2);
    QVERIFY(Morphology(id, library->db(), true) == *open.side(first).chooser->morphology());
    QCOMPARE(open.label()->text(), distanceText("0.00"));
}

void MorphologyDistFormTest::leavesAllAsItWasWhenTheUserCancels_data()
{
    QTest::addColumn<QString>("button");
    for (const char *button : {"Edit", "Copy", "New"})
        QTest::newRow(button) << button;
}

void MorphologyDistFormTest::leavesAllAsItWasWhenTheUserCancels()
{
    QFETCH(const QString, button);
    storeWorm(library.get(), "A");
    storeWorm(library.get(), "B", 10.0);
    OpenForm open(library.get());
    open.right().choose("B");
    const PaintedTexts painted(open.label());
    ModalAnswerer answerer;
    expectMorphologyForm(&answerer, QString());
    open.right().press(button);
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(open.right().chosenName(), "B");
    QCOMPARE(open.label()->text(), distanceText("1.00"));
    QVERIFY(!painted.texts.contains("Calculating distance..."));
    QCOMPARE(library->count("Morphology"), 2);
}

// --- Self-test ---

void MorphologyDistFormTest::hasNoControlForTheSelfTest()
{
    storeWorm(library.get(), "A");
    OpenForm open(library.get());
    for (const auto *button : open.form.findChildren<QPushButton *>())
        QVERIFY(button->text() != "Check algorithm");
    const QPushButton *hidden = checkButton();
    QVERIFY(hidden);
    QVERIFY(!hidden->parent());
    QVERIFY(!hidden->isVisible());
}

void MorphologyDistFormTest::comparesRandomPairsFromOneClickToTheNext()
{
    storeWorms(library.get(), 5);
    OpenForm open(library.get());
    QSet<QString> pairs;
    const auto note = [&] { pairs += open.left().shownName() + open.right().shownName(); };
    connect(open.left().list(), &QComboBox::currentIndexChanged, &open.form, note);
    connect(open.right().list(), &QComboBox::currentIndexChanged, &open.form, note);

    checkButton()->click();
    QTRY_VERIFY(pairs.size() > 15);
    checkButton()->click();
    QCoreApplication::processEvents();
    pairs.clear();
    QTest::qWait(50);
    QVERIFY(pairs.isEmpty());
    QVERIFY(open.label()->text().startsWith("The distance between the morphologies is "));
}

void MorphologyDistFormTest::drawsTheSideAndThenTheMorphology()
{
    storeWorms(library.get(), 7);
    OpenForm open(library.get());
    constexpr unsigned seed = 20;
    std::srand(seed);
    QList<int> rows = {0, 0};
    for (int i = 0; i < 10; ++i) {
        const int side = std::rand() <= 1073741823 ? 1 : 0;
        rows[side] = std::rand() % 7;
    }

    std::srand(seed);
    open.form.checkAlgorithmStartStop(); // the first pair
    for (int i = 1; i < 10; ++i)
        QCoreApplication::processEvents();
    open.form.checkAlgorithmStartStop();
    QCOMPARE(QList<int>({open.left().list()->currentIndex(), open.right().list()->currentIndex()}),
             rows);
    QCOMPARE(open.label()->text(),
             distanceText(QString::number(std::abs(rows[0] - rows[1])) + QStringLiteral(".00")));
}

void MorphologyDistFormTest::testsNothingWithoutMorphologies()
{
    OpenForm open(library.get());
    open.form.checkAlgorithmStartStop();
    QCoreApplication::processEvents();
    QCOMPARE(open.label()->text(), nothingChosen);
}

void MorphologyDistFormTest::endsTheSelfTestWithTheForm()
{
    StatementLog log;
    init(); // another library, whose connections the log knows
    storeWorms(library.get(), 3);
    auto open = std::make_unique<OpenForm>(library.get());
    open->form.checkAlgorithmStartStop();
    QVERIFY(!log.take().isEmpty());
    open.reset();
    log.take();
    QTest::qWait(20);
    QCOMPARE(log.take(), QStringList());
}

QTEST_MAIN(MorphologyDistFormTest)
#include "MorphologyDistFormTest.moc"
