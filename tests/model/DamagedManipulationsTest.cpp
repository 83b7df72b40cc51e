#include "model/CropAction.h"
#include "model/IrradiationAction.h"
#include "model/JoinAction.h"
#include "model/Manipulation.h"
#include "model/ManipulationLines.h"
#include "model/MorphologyAction.h"
#include "model/RemoveAction.h"
#include "model/SmallTrees.h"
#include "support/TemporaryLibrary.h"

#include <QTest>

using namespace Planaria;

namespace {

/// Manipulation 1 in a new library: a body (action 1) that is cut (2) and takes an irradiated (4)
/// graft (3), joined (5), cropped in the end (6).
void writePlain(TemporaryLibrary *library)
{
    Manipulation manipulation(named("body").release());
    manipulation.setName("plain");
    manipulation.addRemoveAction(manipulation.rootAction())->addAreaPoint({1.0, 2.0});
    JoinAction *join =
        manipulation.addJoinAction(manipulation.rootAction(), named("graft").release());
    manipulation.addIrradiationAction(join->fromAction2())->addAreaPoint({3.0, 4.0});
    manipulation.addCropAction(join)->addAreaPoint({5.0, 6.0});
    if (manipulation.submit(library->db()) != 1)
        qFatal("cannot write a manipulation");
}

/// Puts @p action of the plain manipulation as text into statements: which input of a join is
/// written first is open, so rows are told by what they hold.
QString actionRow(const char *action)
{
    static const QHash<QString, QString> rows{
        {"body", "(SELECT a.Id FROM ManipulationAction a JOIN MorphologyAction m ON "
                 "a.MorphologyAction = m.Id JOIN Morphology w ON m.Morphology = w.Id "
                 "WHERE w.Name = 'body')"},
        {"cut", "(SELECT Id FROM ManipulationAction WHERE RemoveAction = 1)"},
        {"irradiation", "(SELECT Id FROM ManipulationAction WHERE IrradiationAction = 1)"},
        {"join", "(SELECT Id FROM ManipulationAction WHERE JoinAction = 1)"},
        {"crop", "(SELECT Id FROM ManipulationAction WHERE CropAction = 1)"}};
    return rows.value(action);
}

constexpr auto lostLeaf = "DELETE FROM MorphologyAction WHERE Morphology = (SELECT Id FROM "
                          "Morphology WHERE Name = 'body')";
constexpr auto wormWithoutId = "UPDATE MorphologyAction SET Morphology = 0 WHERE Morphology = "
                               "(SELECT Id FROM Morphology WHERE Name = 'body')";

/// Every value in the tables of manipulations and worms.
QStringList content(TemporaryLibrary *library)
{
    QStringList content;
    for (const char *table :
         {"Manipulation", "ManipulationAction", "MorphologyAction", "RemoveAction", "CropAction",
          "JoinAction", "IrradiationAction", "RemoveActionAreaPoint", "CropActionAreaPoint",
          "IrradiationActionAreaPoint", "Morphology"}) {
        for (const QString &row : rows(library, QStringLiteral("SELECT * FROM %1").arg(table)))
            content += QStringLiteral("%1: %2").arg(QLatin1String(table), row);
    }
    return content;
}

} // namespace

/// Trees that no program of ours has written.
class DamagedManipulationsTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void showsWhatMakesSense_data() { addDamages(); }
    void showsWhatMakesSense();
    void canBeLookedAtWithoutAChangeOfTheFile_data() { addDamages(); }
    void canBeLookedAtWithoutAChangeOfTheFile();
    void canBeTakenApart_data() { addDamages(); }
    void canBeTakenApart();
    void canBeErased_data() { addDamages(); }
    void canBeErased();

    void renamingLeavesTheDamageAlone_data();
    void renamingLeavesTheDamageAlone();
    void anotherWormReplacesALostOne();
    void removingTheDamagedJoinMendsTheTree();
    void copyOfADamagedTreeIsNotWritten();
    void pointsWithGapsKeepTheirOrderOverAnEdit();
    void firstOfSeveralKindsCounts_data();
    void firstOfSeveralKindsCounts();
    void endsATreeThatIsDeeperThanAnyone();
    void endsATreeThatDoublesAtEachStep();

private:
    static void addDamages();
    void damage(const QStringList &statements);
    void damage();
    std::unique_ptr<Manipulation> loaded()
    {
        return std::make_unique<Manipulation>(1, library->db());
    }

    std::unique_ptr<TemporaryLibrary> library;
};

void DamagedManipulationsTest::init()
{
    library = std::make_unique<TemporaryLibrary>();
    library->run("PRAGMA synchronous = OFF");
    writePlain(library.get());
}

void DamagedManipulationsTest::damage(const QStringList &statements)
{
    library->run("PRAGMA foreign_keys = OFF");
    library->run("PRAGMA ignore_check_constraints = ON");
    for (const QString &statement : statements)
        library->run(statement);
    library->run("PRAGMA ignore_check_constraints = OFF");
    library->run("PRAGMA foreign_keys = ON");
}

void DamagedManipulationsTest::damage()
{
    QFETCH(QString, statement);
    damage(QStringList{statement});
}

void DamagedManipulationsTest::addDamages()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("rest"); // once all that can be removed is

    const QString crop = "crop 0:(5, 6)";
    const QString join = ' ' + joinLine();
    const QStringList cut{"  remove 0:(1, 2)", "   morphology body"};
    const QStringList cutOfNothing{"  remove 0:(1, 2)", "   nothing"};
    const QStringList cutOfNoWorm{"  remove 0:(1, 2)", "   morphology "};
    const QStringList graft{"  irradiation 0:(3, 4)", "   morphology graft"};
    const QStringList whole = QStringList{crop, join} + cut + graft;
    const QStringList withoutBody = QStringList{crop, join, "  nothing"} + graft;
    const QStringList cutOffCrop{crop, " nothing"};
    const QStringList cutOffCut{"remove 0:(1, 2)", " nothing"};
    const auto add = [](const char *name, const QString &statement, const QStringList &lines,
                        const QStringList &rest) {
        QTest::newRow(name) << statement << lines << rest;
    };

    add("nothing", "SELECT 1", whole, {"morphology body"});
    add("action that feeds itself", "UPDATE CropAction SET FromAction = " + actionRow("crop"),
        cutOffCrop, cutOffCrop);
    add("join that feeds itself", "UPDATE JoinAction SET FromAction1 = " + actionRow("join"),
        withoutBody, {"morphology graft"});
    add("circle of three", "UPDATE RemoveAction SET FromAction = " + actionRow("crop"),
        QStringList{crop, join} + cutOfNothing + graft, {crop, " remove 0:(1, 2)", "  nothing"});
    add("action that two share", "UPDATE JoinAction SET FromAction2 = FromAction1",
        QStringList{crop, join} + cut + QStringList{"  nothing"},
        {"remove 0:(1, 2)", " morphology body"});
    add("action that is missing", "DELETE FROM ManipulationAction WHERE RemoveAction = 1",
        withoutBody, {"morphology graft"});
    add("id beyond all", "UPDATE RemoveAction SET FromAction = 9000000000000000000",
        QStringList{crop, join} + cutOfNothing + graft, cutOffCut);
    add("negative id", "UPDATE RemoveAction SET FromAction = -1",
        QStringList{crop, join} + cutOfNothing + graft, cutOffCut);
    add("root that is missing", "UPDATE Manipulation SET RootAction = 99", {"nothing"},
        {"nothing"});
    add("action without a kind",
        "UPDATE ManipulationAction SET RemoveAction = NULL WHERE RemoveAction = 1", withoutBody,
        {"morphology graft"});
    add("action of kinds without a row",
        "UPDATE ManipulationAction SET MorphologyAction = 0, RemoveAction = 0, CropAction = 0, "
        "JoinAction = 0, IrradiationAction = 0 WHERE RemoveAction = 1",
        withoutBody, {"morphology graft"});
    add("cut that is missing", "DELETE FROM RemoveAction", withoutBody, {"morphology graft"});
    add("join that is missing", "DELETE FROM JoinAction", cutOffCrop, cutOffCrop);
    add("leaf that is missing", lostLeaf, QStringList{crop, join} + cutOfNothing + graft,
        cutOffCut);
    add("worm that is missing", "DELETE FROM Morphology WHERE Name = 'body'",
        QStringList{crop, join} + cutOfNoWorm + graft, {"morphology "});
    add("worm without an id", wormWithoutId, QStringList{crop, join} + cutOfNoWorm + graft,
        {"morphology "});
    add("numbers that are none", "UPDATE CropActionAreaPoint SET PointX = 'x', PointInd = 'y'",
        QStringList{"crop 0:(0, 6)", join} + cut + graft, {"morphology body"});
    add("point numbers with gaps", "UPDATE CropActionAreaPoint SET PointInd = 7", whole,
        {"morphology body"});
}

void DamagedManipulationsTest::showsWhatMakesSense()
{
    damage();
    const auto manipulation = loaded();
    QTEST(manipulationLines(*manipulation, Ids::Without).mid(1), "lines");
}

void DamagedManipulationsTest::canBeLookedAtWithoutAChangeOfTheFile()
{
    damage();
    const QStringList before = content(library.get());
    {
        const auto manipulation = loaded();
        const Manipulation copy(*manipulation, true);
        QCOMPARE(manipulationLines(copy, Ids::With), manipulationLines(*manipulation, Ids::With));
        QVERIFY(copy == *manipulation);
        QVERIFY(*loaded() == *manipulation);
        QVERIFY(manipulation->calcMorphologiesList().size() <= 2);
        Manipulation assigned(named("worm").release());
        assigned = *manipulation;
        assigned.copy(*manipulation);
        QVERIFY(assigned == *manipulation);
    }
    QCOMPARE(content(library.get()), before);
}

void DamagedManipulationsTest::canBeTakenApart()
{
    damage();
    const QStringList broken = library->brokenReferences();
    const auto manipulation = loaded();
    for (ManipulationAction *action : QList(manipulation->actions()))
        manipulation->addCropAction(action);
    for (ManipulationAction *action : QList(manipulation->actions()))
        manipulation->removeAction(action);
    QTEST(manipulationLines(*manipulation, Ids::Without).mid(1), "rest");

    QCOMPARE(manipulation->submit(library->db()), 1);
    QCOMPARE(firstDifference(*loaded(), *manipulation), QString());
    for (const QString &reference : library->brokenReferences())
        QVERIFY2(broken.contains(reference), qPrintable(reference));

    manipulation->removeAndDeleteAll();
    QVERIFY(manipulation->actions().isEmpty());
}

void DamagedManipulationsTest::canBeErased()
{
    damage();
    const auto manipulation = loaded();
    const QStringList before = content(library.get());
    // Where a row of the tree is used by what is out of its sight, nothing goes.
    if (manipulation->erase())
        QCOMPARE(library->count("Manipulation"), 0);
    else
        QCOMPARE(content(library.get()), before);
}

void DamagedManipulationsTest::renamingLeavesTheDamageAlone_data()
{
    QTest::addColumn<QString>("statement");
    const auto add = [](const char *name, const QString &statement) {
        QTest::newRow(name) << statement;
    };
    add("action that feeds itself", "UPDATE CropAction SET FromAction = " + actionRow("crop"));
    add("action that two share", "UPDATE JoinAction SET FromAction2 = FromAction1");
    add("input that is missing", "UPDATE CropAction SET FromAction = 99");
    add("input of a join that is missing", "UPDATE JoinAction SET FromAction2 = 99");
    add("root that is missing", "UPDATE Manipulation SET RootAction = 99");
    add("worm that is missing", "DELETE FROM Morphology WHERE Name = 'body'");
    add("worm without an id", wormWithoutId);
    add("cut that is missing", "DELETE FROM RemoveAction");
    add("join that is missing", "DELETE FROM JoinAction");
    add("leaf that is missing", lostLeaf);
}

void DamagedManipulationsTest::renamingLeavesTheDamageAlone()
{
    damage();
    QStringList expected = content(library.get());
    const QStringList broken = library->brokenReferences();
    const auto manipulation = loaded();
    manipulation->setName("renamed");

    QCOMPARE(manipulation->submit(library->db()), 1);
    expected.replaceInStrings("Manipulation: 1 plain", "Manipulation: 1 renamed");
    QCOMPARE(content(library.get()), expected);
    QCOMPARE(library->brokenReferences(), broken);
}

void DamagedManipulationsTest::anotherWormReplacesALostOne()
{
    damage({"DELETE FROM Morphology WHERE Name = 'body'"});
    const auto manipulation = loaded();
    for (ManipulationAction *action : manipulation->actions()) {
        auto *leaf = dynamic_cast<MorphologyAction *>(action);
        if (leaf && leaf->morphology()->name().isEmpty())
            leaf->setMorphology(named("another").release());
    }
    QCOMPARE(manipulation->submit(library->db()), 1);
    QCOMPARE(library->brokenReferences(), QStringList());
    QCOMPARE(firstDifference(*loaded(), *manipulation), QString());
}

void DamagedManipulationsTest::removingTheDamagedJoinMendsTheTree()
{
    damage({"UPDATE JoinAction SET FromAction2 = 99"});
    const auto manipulation = loaded();
    QVERIFY(manipulation->removeAction(
        dynamic_cast<CropAction *>(manipulation->rootAction())->fromAction()));
    QCOMPARE(manipulation->submit(library->db()), 1);
    QCOMPARE(library->brokenReferences(), QStringList());
    QCOMPARE(manipulationLines(*loaded(), Ids::Without).mid(1),
             (QStringList{"crop 0:(5, 6)", " remove 0:(1, 2)", "  morphology body"}));
}

void DamagedManipulationsTest::copyOfADamagedTreeIsNotWritten()
{
    damage({"UPDATE JoinAction SET FromAction2 = 99"});
    const QStringList before = content(library.get());
    Manipulation copy(*loaded(), false);
    copy.setName("copy");
    QVERIFY(copy.submit(library->db()) < 1);
    QCOMPARE(content(library.get()), before);
}

void DamagedManipulationsTest::pointsWithGapsKeepTheirOrderOverAnEdit()
{
    damage({"INSERT INTO CropActionAreaPoint (CropAction, PointInd, PointX, PointY) "
            "VALUES (1, 5, 7, 8), (1, 9, 9, 10)"});
    const QVector<QPointF> corners{{5.0, 6.0}, {7.0, 8.0}, {9.0, 10.0}, {11.0, 12.0}};
    const auto manipulation = loaded();
    auto *crop = dynamic_cast<CropAction *>(manipulation->rootAction());
    crop->addAreaPoint(corners.last());
    QCOMPARE(crop->calcAreaVector(), corners);
    QCOMPARE(manipulation->submit(library->db()), 1);

    const auto again = loaded();
    QCOMPARE(dynamic_cast<CropAction *>(again->rootAction())->calcAreaVector(), corners);
    QCOMPARE(rows(library.get(), "SELECT PointInd, PointX FROM CropActionAreaPoint"),
             (QStringList{"0 5", "1 7", "2 9", "3 11"}));
}

void DamagedManipulationsTest::firstOfSeveralKindsCounts_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("laterKind");
    QTest::newRow("morphology before remove") << "body"
                                              << "RemoveAction";
    QTest::newRow("remove before crop") << "cut"
                                        << "CropAction";
    QTest::newRow("crop before join") << "crop"
                                      << "JoinAction";
    QTest::newRow("join before irradiation") << "join"
                                             << "IrradiationAction";
}

void DamagedManipulationsTest::firstOfSeveralKindsCounts()
{
    QFETCH(QString, action);
    QFETCH(QString, laterKind);
    const QStringList sound = content(library.get());
    const QStringList lines = manipulationLines(*loaded(), Ids::With);
    library->run(QStringLiteral("UPDATE ManipulationAction SET %1 = 1 WHERE Id = %2")
                     .arg(laterKind, actionRow(qPrintable(action))));
    QVERIFY(content(library.get()) != sound);

    const auto manipulation = loaded();
    QCOMPARE(manipulationLines(*manipulation, Ids::With), lines);
    QCOMPARE(manipulation->submit(library->db()), 1);
    QCOMPARE(content(library.get()), sound);
}

void DamagedManipulationsTest::endsATreeThatIsDeeperThanAnyone()
{
    // Each of a hundred thousand cuts takes the product of the one before.
    damage({"INSERT INTO RemoveAction WITH RECURSIVE n(i) AS (SELECT 1001 UNION ALL SELECT i + 1 "
            "FROM n WHERE i < 101000) SELECT i, i - 1 FROM n",
            "INSERT INTO ManipulationAction (Id, RemoveAction) SELECT Id, Id FROM RemoveAction "
            "WHERE Id > 1000",
            "UPDATE Manipulation SET RootAction = 101000"});

    const auto manipulation = loaded();
    const qsizetype depth = manipulation->actions().size();
    QVERIFY(depth >= 100);
    QVERIFY(depth <= 1000);
    const Manipulation copy(*manipulation, true);
    QVERIFY(copy == *manipulation);
    manipulation->setName("deep");
    QCOMPARE(manipulation->submit(library->db()), 1);
    QCOMPARE(library
                 ->value("SELECT MIN(Id) - MAX(Id - FromAction) FROM RemoveAction "
                         "WHERE Id > 1000")
                 .toInt(),
             1000);
    // The last one that was loaded has an input in the file alone.
    QVERIFY(!manipulation->removeAction(manipulation->actions().last()));
    QVERIFY(manipulation->removeAction(manipulation->rootAction()));
    QCOMPARE(manipulation->submit(library->db()), 1);
    QCOMPARE(library->value("SELECT RootAction FROM Manipulation").toInt(), 100999);
    manipulation->removeAndDeleteAll();
    QCOMPARE(manipulation->record().removedReferences().size(), depth - 1);
}

void DamagedManipulationsTest::endsATreeThatDoublesAtEachStep()
{
    // Both inputs of each of sixty joins are the join before.
    damage({"INSERT INTO JoinAction WITH RECURSIVE n(i) AS (SELECT 1001 UNION ALL SELECT i + 1 "
            "FROM n WHERE i < 1060) SELECT i, i - 1, i - 1, 0, 0, 0 FROM n",
            "INSERT INTO ManipulationAction (Id, JoinAction) SELECT Id, Id FROM JoinAction "
            "WHERE Id > 1000",
            "UPDATE Manipulation SET RootAction = 1060"});

    const auto manipulation = loaded();
    QCOMPARE(manipulation->actions().size(), 60);
    QVERIFY(manipulation->calcMorphologiesList().isEmpty());
}

QTEST_GUILESS_MAIN(DamagedManipulationsTest)
#include "DamagedManipulationsTest.moc"
