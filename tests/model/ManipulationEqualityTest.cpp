#include "model/CropAction.h"
#include "model/IrradiationAction.h"
#include "model/JoinAction.h"
#include "model/Manipulation.h"
#include "model/MorphologyAction.h"
#include "model/Region.h"
#include "model/RemoveAction.h"
#include "model/Shorthand.h"
#include "model/SmallTrees.h"

#include <QTest>

#include <array>
#include <limits>

using namespace Planaria;

namespace {

/// A cut body with a graft that is cropped, and access to its parts.
class Subject
{
public:
    Subject() : manipulation(named("body").release())
    {
        manipulation.setName("subject");
        cut = manipulation.addRemoveAction(manipulation.rootAction());
        cut->addAreaPoint({1.0, 2.0});
        cut->addAreaPoint({3.0, 4.0});
        join = manipulation.addJoinAction(cut, named("graft").release());
        join->setVectX(5.0);
        join->setVectY(6.0);
        join->setRot(0.7);
        crop = manipulation.addCropAction(join->fromAction2());
    }

    Manipulation manipulation;
    RemoveAction *cut;
    JoinAction *join;
    CropAction *crop;
};

struct Change
{
    const char *name;
    void (*apply)(Subject *subject);
    bool staysEqual;
};

constexpr double below = 1e-13;
constexpr double above = 1e-11;
constexpr double infinity = std::numeric_limits<double>::infinity();

MorphologyAction *body(Subject *subject)
{
    return dynamic_cast<MorphologyAction *>(subject->cut->fromAction());
}

constexpr std::array changes{
    Change{"nothing", [](Subject *) {}, true},
    Change{"name", [](Subject *s) { s->manipulation.setName("other"); }, false},
    Change{"name of a worm", [](Subject *s) { body(s)->setMorphology(named("other").release()); },
           false},
    Change{"body of a worm", [](Subject *s) { body(s)->morphology()->addRegion(headType()); },
           true},
    Change{"kind of a leaf",
           [](Subject *s) { s->manipulation.addRemoveAction(s->cut->fromAction()); }, false},
    Change{"one action more",
           [](Subject *s) { s->manipulation.addCropAction(s->manipulation.rootAction()); }, false},
    Change{"kind of an action",
           [](Subject *s) {
               s->manipulation.addRemoveAction(s->crop);
               s->manipulation.removeAction(s->crop);
           },
           false},
    Change{"input of an area action", [](Subject *s) { s->cut->setFromAction(nullptr); }, false},
    Change{"point left out", [](Subject *s) { s->cut->removeAreaPoint(1); }, false},
    Change{"point in an empty area", [](Subject *s) { s->crop->addAreaPoint({}); }, false},
    Change{"order of points",
           [](Subject *s) {
               s->cut->setAreaPoint(0, {3.0, 4.0});
               s->cut->setAreaPoint(1, {1.0, 2.0});
           },
           false},
    Change{"number of a point", [](Subject *s) { s->cut->area().at(1)->setPointInd(2); }, false},
    Change{"x of a point, a trace",
           [](Subject *s) {
               s->cut->setAreaPoint(0, {1.0 + below, 2.0});
           },
           true},
    Change{"y of a point, a trace",
           [](Subject *s) {
               s->cut->setAreaPoint(0, {1.0, 2.0 - below});
           },
           true},
    Change{"x of a point",
           [](Subject *s) {
               s->cut->setAreaPoint(0, {1.0 - above, 2.0});
           },
           false},
    Change{"y of a point",
           [](Subject *s) {
               s->cut->setAreaPoint(0, {1.0, 2.0 + above});
           },
           false},
    Change{"inputs of a join",
           [](Subject *s) {
               s->join->setFromAction1(s->crop);
               s->join->setFromAction2(s->cut);
           },
           false},
    Change{"first input of a join", [](Subject *s) { s->join->setFromAction1(nullptr); }, false},
    Change{"second input of a join", [](Subject *s) { s->join->setFromAction2(nullptr); }, false},
    Change{"x of a shift, a trace", [](Subject *s) { s->join->setVectX(5.0 - below); }, true},
    Change{"y of a shift, a trace", [](Subject *s) { s->join->setVectY(6.0 + below); }, true},
    Change{"x of a shift", [](Subject *s) { s->join->setVectX(5.0 + above); }, false},
    Change{"y of a shift", [](Subject *s) { s->join->setVectY(6.0 - above); }, false},
    Change{"rotation, a trace", [](Subject *s) { s->join->setRot(0.7 + below); }, false},
};

} // namespace

class ManipulationEqualityTest final : public QObject
{
    Q_OBJECT

private slots:
    void changesCountAsTheyShould_data();
    void changesCountAsTheyShould();
    void listedActionsCountAlsoOutsideTheTree();
    void treesWithTheSameGapsAreEqual();
    void infinityIsEqualToItself();
    void actionsOfDifferentClassesDiffer();
};

void ManipulationEqualityTest::changesCountAsTheyShould_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < static_cast<int>(changes.size()); ++i)
        QTest::newRow(changes[i].name) << i;
}

void ManipulationEqualityTest::changesCountAsTheyShould()
{
    QFETCH(int, index);
    const Subject plain;
    Subject changed;
    changes[index].apply(&changed);

    QCOMPARE(changed.manipulation == plain.manipulation, changes[index].staysEqual);
    QCOMPARE(plain.manipulation == changed.manipulation, changes[index].staysEqual);
    QVERIFY(changed.manipulation == changed.manipulation);
}

void ManipulationEqualityTest::listedActionsCountAlsoOutsideTheTree()
{
    const Subject plain;
    Subject changed;
    new RemoveAction(nullptr, nullptr, &changed.manipulation);

    QVERIFY(*changed.manipulation.rootAction() == *plain.manipulation.rootAction());
    QVERIFY(!(changed.manipulation == plain.manipulation));
}

void ManipulationEqualityTest::treesWithTheSameGapsAreEqual()
{
    Subject one;
    Subject other;
    for (Subject *subject : {&one, &other}) {
        subject->cut->setFromAction(nullptr);
        subject->join->setFromAction2(nullptr);
    }
    QVERIFY(one.manipulation == other.manipulation);

    one.manipulation.removeAndDeleteAll();
    QVERIFY(!(one.manipulation == other.manipulation));
    other.manipulation.removeAndDeleteAll();
    QVERIFY(one.manipulation == other.manipulation);
}

void ManipulationEqualityTest::infinityIsEqualToItself()
{
    Subject infinite;
    infinite.join->setVectX(infinity);
    infinite.join->setVectY(-infinity);
    infinite.join->setRot(infinity);
    infinite.cut->setAreaPoint(0, {-infinity, infinity});
    QVERIFY(infinite.manipulation == infinite.manipulation);
    QVERIFY(Manipulation(infinite.manipulation, false) == infinite.manipulation);

    Subject other;
    QVERIFY(!(infinite.manipulation == other.manipulation));
    other.manipulation.copy(infinite.manipulation);
    QVERIFY(other.manipulation == infinite.manipulation);
    dynamic_cast<JoinAction *>(other.manipulation.rootAction())->setVectX(-infinity);
    QVERIFY(!(infinite.manipulation == other.manipulation));
}

void ManipulationEqualityTest::actionsOfDifferentClassesDiffer()
{
    Manipulation manipulation(named("worm").release());
    QList<ManipulationAction *> actions{manipulation.rootAction(),
                                        new RemoveAction(nullptr, nullptr, &manipulation),
                                        new CropAction(nullptr, nullptr, &manipulation),
                                        new IrradiationAction(nullptr, nullptr, &manipulation),
                                        new JoinAction(nullptr, nullptr, nullptr, &manipulation)};
    for (const ManipulationAction *one : std::as_const(actions)) {
        for (const ManipulationAction *other : std::as_const(actions))
            QCOMPARE(*one == *other, one == other);
    }
}

QTEST_GUILESS_MAIN(ManipulationEqualityTest)
#include "ManipulationEqualityTest.moc"
