#include "model/LineOrgan.h"
#include "model/LineOrganType.h"
#include "model/Morphology.h"
#include "model/Shorthand.h"
#include "model/SpotOrgan.h"
#include "model/SpotOrganType.h"

#include <QTest>

#include <array>

using namespace Planaria;

class OrganTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void standsWhereItIsPut();
    void isNamedAsItsType();
    void isEqualToAnotherAcrossMorphologies();
    void spotNeverEqualsLine();
    void spotIsUnequalByEachOfItsValues_data();
    void spotIsUnequalByEachOfItsValues();
    void lineIsUnequalByEachOfItsValues_data();
    void lineIsUnequalByEachOfItsValues();
    void typesOfOneIdAreDifferentTypes();
    void copyHasATypeOfItsOwn();
    void copyOutlivesItsSource();
    void leavesItsRegionOnce();
    void staysInARegionThatLeft();

private:
    std::unique_ptr<Morphology> worm;
    Region *region = nullptr;
};

void OrganTest::init()
{
    worm = std::make_unique<Morphology>();
    region = worm->addRegion(headType());
}

void OrganTest::standsWhereItIsPut()
{
    SpotOrgan *eye = region->addSpotOrgan(eyeType(), {1.0, 2.0}, 3.0);
    QCOMPARE(eye->type(), eyeType());
    QCOMPARE(eye->pos(), QPointF(1.0, 2.0));
    QCOMPARE(eye->rot(), 3.0);
    QCOMPARE(eye->id(), 0);

    LineOrgan *cord = region->addLineOrgan(cordType(), {1.0, 2.0}, {3.0, 4.0}, {5.0, 6.0});
    QCOMPARE(cord->type(), cordType());
    QCOMPARE(cord->pos(), QPointF(1.0, 2.0));
    QCOMPARE(cord->end1(), QPointF(3.0, 4.0));
    QCOMPARE(cord->end2(), QPointF(5.0, 6.0));
    QCOMPARE(cord->id(), 0);
}

void OrganTest::isNamedAsItsType()
{
    ExperimentFactory *factory = ExperimentFactory::instance(nullptr);
    QStringList names;
    for (SpotOrganType *type : std::as_const(factory->spotOrganTypes))
        names += region->addSpotOrgan(type, {}, 0.0)->typeName();
    for (LineOrganType *type : std::as_const(factory->lineOrganTypes))
        names += region->addLineOrgan(type, {}, {}, {})->typeName();

    QCOMPARE(names, (QStringList{"Eye", "Brain", "Phar.", "VNC"}));
}

void OrganTest::isEqualToAnotherAcrossMorphologies()
{
    Morphology otherWorm;
    Region *otherRegion = otherWorm.addRegion(tailType());

    QVERIFY(*region->addSpotOrgan(eyeType(), {}, 0.0) ==
            *otherRegion->addSpotOrgan(eyeType(), {}, 0.0));
    QVERIFY(*region->addLineOrgan(cordType(), {}, {}, {}) ==
            *otherRegion->addLineOrgan(cordType(), {}, {}, {}));
}

void OrganTest::spotNeverEqualsLine()
{
    const Organ *spot = region->addSpotOrgan(eyeType(), {}, 0.0);
    const Organ *line = region->addLineOrgan(cordType(), {}, {}, {});

    QVERIFY(!(*spot == *line));
    QVERIFY(!(*line == *spot));
}

void OrganTest::spotIsUnequalByEachOfItsValues_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QPointF>("pos");
    QTest::addColumn<double>("rot");
    QTest::addColumn<bool>("equal");

    const QPointF pos(1.0, 2.0);
    QTest::newRow("the same") << 1 << pos << 3.0 << true;
    QTest::newRow("type") << 2 << pos << 3.0 << false;
    QTest::newRow("x by 1e-13") << 1 << pos + QPointF(1e-13, 0.0) << 3.0 << true;
    QTest::newRow("y by 1e-13") << 1 << pos - QPointF(0.0, 1e-13) << 3.0 << true;
    QTest::newRow("x by 2e-12") << 1 << pos - QPointF(2e-12, 0.0) << 3.0 << false;
    QTest::newRow("y by 2e-12") << 1 << pos + QPointF(0.0, 2e-12) << 3.0 << false;
    QTest::newRow("rotation by 1e-13") << 1 << pos << 3.0 + 1e-13 << false;
}

void OrganTest::spotIsUnequalByEachOfItsValues()
{
    QFETCH(int, type);
    QFETCH(QPointF, pos);
    QFETCH(double, rot);
    QFETCH(bool, equal);

    const SpotOrgan *organ = region->addSpotOrgan(eyeType(), {1.0, 2.0}, 3.0);
    const SpotOrgan *other =
        region->addSpotOrgan(ExperimentFactory::instance(nullptr)->spotOrganType(type), pos, rot);

    QCOMPARE(*organ == *other, equal);
    QCOMPARE(*other == *organ, equal);
}

void OrganTest::lineIsUnequalByEachOfItsValues_data()
{
    QTest::addColumn<int>("coordinate");
    QTest::addColumn<double>("difference");
    QTest::addColumn<bool>("equal");

    const std::array names{"x", "y", "first x", "first y", "second x", "second y"};
    for (int coordinate = 0; coordinate < 6; ++coordinate) {
        for (const double sign : {1.0, -1.0}) {
            QTest::addRow("%s by %g", names[coordinate], sign * 1e-13)
                << coordinate << sign * 1e-13 << true;
            QTest::addRow("%s by %g", names[coordinate], sign * 2e-12)
                << coordinate << sign * 2e-12 << false;
        }
    }
}

void OrganTest::lineIsUnequalByEachOfItsValues()
{
    QFETCH(int, coordinate);
    QFETCH(double, difference);
    QFETCH(bool, equal);

    std::array numbers{1.0, 2.0, 3.0, 4.0, 5.0, 6.0};
    const LineOrgan *organ = region->addLineOrgan(cordType(), {1.0, 2.0}, {3.0, 4.0}, {5.0, 6.0});
    numbers[coordinate] += difference;
    LineOrgan *other = region->addLineOrgan(cordType(), {}, {}, {});
    other->setPos({numbers[0], numbers[1]});
    other->setEnd1({numbers[2], numbers[3]});
    other->setEnd2({numbers[4], numbers[5]});

    QCOMPARE(*organ == *other, equal);
    QCOMPARE(*other == *organ, equal);
}

void OrganTest::typesOfOneIdAreDifferentTypes()
{
    SpotOrganType anotherEye(*eyeType());
    LineOrganType anotherCord(*cordType());
    QCOMPARE(anotherEye.id(), eyeType()->id());

    QVERIFY(!(*region->addSpotOrgan(eyeType(), {}, 0.0) ==
              *region->addSpotOrgan(&anotherEye, {}, 0.0)));
    QVERIFY(!(*region->addLineOrgan(cordType(), {}, {}, {}) ==
              *region->addLineOrgan(&anotherCord, {}, {}, {})));
}

void OrganTest::copyHasATypeOfItsOwn()
{
    const SpotOrgan *eye = region->addSpotOrgan(eyeType(), {1.0, 2.0}, 3.0);
    const SpotOrgan eyeCopy(*eye, region, true);
    QVERIFY(eyeCopy.type() != eye->type());
    QCOMPARE(eyeCopy.type()->id(), eye->type()->id());
    QCOMPARE(eyeCopy.typeName(), QStringLiteral("Eye"));
    QCOMPARE(eyeCopy.pos(), eye->pos());
    QCOMPARE(eyeCopy.rot(), eye->rot());
    QVERIFY(!(eyeCopy == *eye));
    QVERIFY(eyeCopy == eyeCopy);

    const LineOrgan *cord = region->addLineOrgan(cordType(), {1.0, 2.0}, {3.0, 4.0}, {5.0, 6.0});
    const LineOrgan cordCopy(*cord, region, true);
    QVERIFY(cordCopy.type() != cord->type());
    QCOMPARE(cordCopy.typeName(), QStringLiteral("VNC"));
    QCOMPARE(cordCopy.pos(), cord->pos());
    QCOMPARE(cordCopy.end1(), cord->end1());
    QCOMPARE(cordCopy.end2(), cord->end2());
    QVERIFY(!(cordCopy == *cord));
}

void OrganTest::copyOutlivesItsSource()
{
    auto source = std::make_unique<Morphology>();
    source->addRegion(headType())->addSpotOrgan(eyeType(), {}, 1.0);
    const auto copy = std::make_unique<Morphology>(*source, false);
    const auto copyOfCopy = std::make_unique<Morphology>(*copy, false);
    source.reset();

    QCOMPARE(copy->regions().first()->organs().first()->typeName(), QStringLiteral("Eye"));
    QCOMPARE(copyOfCopy->regions().first()->organs().first()->typeName(), QStringLiteral("Eye"));
    QVERIFY(!(*copy == *copyOfCopy));
}

void OrganTest::leavesItsRegionOnce()
{
    Organ *eye = region->addSpotOrgan(eyeType(), {}, 0.0);
    Organ *cord = region->addLineOrgan(cordType(), {}, {}, {});

    QVERIFY(eye->removeFromMorphology());
    QCOMPARE(eye->region(), nullptr);
    QCOMPARE(region->organs(), QList<Organ *>{cord});
    QVERIFY(!eye->removeFromMorphology());
    QVERIFY(!region->removeOrgan(eye));

    QVERIFY(cord->removeFromMorphology());
    QVERIFY(region->organs().isEmpty());
    QCOMPARE(queued<Organ>(region), (QList<const Organ *>{eye, cord}));
}

void OrganTest::staysInARegionThatLeft()
{
    Organ *eye = region->addSpotOrgan(eyeType(), {}, 0.0);
    worm->removeRegion(region);

    QVERIFY(!eye->removeFromMorphology());
    QCOMPARE(eye->region(), region);
    QCOMPARE(region->organs(), QList<Organ *>{eye});
    QVERIFY(queued<Organ>(region).isEmpty());
}

QTEST_GUILESS_MAIN(OrganTest)
#include "OrganTest.moc"
