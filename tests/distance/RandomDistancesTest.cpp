#include "PlainDistance.h"
#include "RandomBodies.h"
#include "distance/CappedDistance.h"
#include "distance/DistAlgo.h"
#include "model/Morphology.h"

#include <QTest>

#include <cmath>

using namespace Planaria;

/// The distances of worms that seeds make, against a search written down as plainly as it can be.
class RandomDistancesTest final : public QObject
{
    Q_OBJECT

private slots:
    void equalThoseOfThePlainSearchBitForBit_data();
    void equalThoseOfThePlainSearchBitForBit();
    void equalThoseOfThePlainSearchUnderASmallCap_data();
    void equalThoseOfThePlainSearchUnderASmallCap();
    void areNeverNegativeAndTheSameBothWays();
    void areZeroFromAWormToItselfAndToItsCopy();
};

namespace {

using Kind = RandomBodies::Kind;

// The plain search takes many times as long under the sanitizers.
#ifdef __SANITIZE_ADDRESS__
constexpr int slowness = 20;
#else
constexpr int slowness = 1;
#endif

QString numbers(quint32 seed, double one, double other)
{
    return QStringLiteral("seed %1: %2 and %3")
        .arg(seed)
        .arg(one, 0, 'g', 17)
        .arg(other, 0, 'g', 17);
}

/// Two worms, the second often much like the first.
struct Pair
{
    Pair(quint32 seed, const Kind &first, const Kind &second)
    {
        RandomBodies random(seed);
        a = random.worm(first);
        b = random.number(3) == 0 ? random.variation(*a, second) : random.worm(second);
    }

    std::unique_ptr<Morphology> a;
    std::unique_ptr<Morphology> b;
};

} // namespace

void RandomDistancesTest::equalThoseOfThePlainSearchBitForBit_data()
{
    QTest::addColumn<Kind>("first");
    QTest::addColumn<Kind>("second");
    QTest::addColumn<int>("pairs");
    QTest::addColumn<int>("leastCut"); // pairs in which paths are given up

    const auto row = [](const char *name, const Kind &first, const Kind &second, int pairs,
                        int leastCut) {
        QTest::newRow(name) << first << second << pairs << leastCut;
    };
    row("small", {3, 3}, {4, 3}, 1500, 0);
    row("small, parallel links", {4, 1, true}, {4, 1, true}, 1500, 0);
    row("small, equal costs", {4, 2, false, true}, {3, 2, false, true}, 1500, 0);
    row("small, parallel links, equal costs", {4, 0, true, true}, {4, 0, true, true}, 1000, 0);
    row("unlike in size", {1, 2}, {5, 2}, 300, 0);
    row("none or one", {0, 2}, {1, 2}, 100, 0);
    row("middling", {5, 1, true}, {5, 1, true}, 300, 0);
    row("at the limit of open paths", {7, 1}, {6, 1}, 50, 10);
    row("at the limit of open paths, equal costs", {6, 1, true, true}, {7, 1, true, true}, 50, 2);
    row("large", {9, 0, true}, {8, 0, true}, 15, 5);
    row("large, equal costs", {8, 1, false, true}, {9, 1, false, true}, 15, 5);
    row("many organs", {1, 10}, {1, 10}, 60, 5);
    row("many organs, equal costs", {1, 9, false, true}, {1, 9, false, true}, 60, 5);
}

void RandomDistancesTest::equalThoseOfThePlainSearchBitForBit()
{
    QFETCH(const Kind, first);
    QFETCH(const Kind, second);
    QFETCH(const int, pairs);
    QFETCH(const int, leastCut);

    int cut = 0;
    for (quint32 seed = 1; seed <= static_cast<quint32>(pairs); ++seed) {
        const Pair pair(seed, first, second);
        const PlainDistance::Outcome plain = PlainDistance::dist(*pair.a, *pair.b);
        const double dist = DistAlgo::dist(*pair.a, *pair.b);
        QVERIFY2(dist == plain.dist, qPrintable(numbers(seed, dist, plain.dist)));
        cut += plain.givenUp > 0 ? 1 : 0;
    }
    QVERIFY2(cut >= leastCut, qPrintable(QString::number(cut)));
}

void RandomDistancesTest::equalThoseOfThePlainSearchUnderASmallCap_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<int>("pairs");
    QTest::addColumn<int>("leastCut"); // pairs in which paths are given up

    const auto row = [](const char *name, const Kind &kind, int pairs, int leastCut) {
        QTest::newRow(name) << kind << pairs / slowness << leastCut / slowness;
    };
    row("any numbers", {.regions = 6, .organs = 2}, 600, 300);
    row("many organs", {.regions = 2, .organs = 7}, 600, 300);
    row("equal costs", {.regions = 5, .organs = 3, .evenNumbers = true}, 800, 300);
    row("equal types", {.regions = 5, .organs = 4, .types = 1}, 800, 300);
    row("equal types and costs",
        {.regions = 5, .organs = 3, .parallelLinks = true, .evenNumbers = true, .types = 1}, 800,
        300);
    row("twins", {.regions = 6, .organs = 4, .twins = true}, 800, 300);
    row("twins, equal types and costs",
        {.regions = 7, .organs = 3, .evenNumbers = true, .types = 1, .twins = true}, 600, 300);
    row("whole turns",
        {.regions = 4, .organs = 5, .evenNumbers = true, .types = 1, .wholeTurns = true}, 800, 300);
    row("whole turns and twins",
        {.regions = 4,
         .organs = 5,
         .evenNumbers = true,
         .types = 1,
         .twins = true,
         .wholeTurns = true},
        800, 300);
    row("parallel links and loops",
        {.regions = 6, .organs = 1, .parallelLinks = true, .loops = true}, 800, 300);
    row("parallel links and loops, equal costs",
        {.regions = 6,
         .organs = 1,
         .parallelLinks = true,
         .evenNumbers = true,
         .types = 1,
         .loops = true},
        800, 300);
    row("numbers that overflow",
        {.regions = 5, .organs = 3, .parallelLinks = true, .loops = true, .hugeNumbers = true}, 800,
        300);
    row("numbers that overflow, twins and equal costs",
        {.regions = 6,
         .organs = 4,
         .evenNumbers = true,
         .types = 1,
         .twins = true,
         .wholeTurns = true,
         .hugeNumbers = true},
        800, 300);
}

void RandomDistancesTest::equalThoseOfThePlainSearchUnderASmallCap()
{
    QFETCH(const Kind, kind);
    QFETCH(const int, pairs);
    QFETCH(const int, leastCut);

    int cut = 0;
    for (quint32 seed = 1; seed <= static_cast<quint32>(pairs); ++seed) {
        const int cap = 20 + static_cast<int>(seed % 31);
        Kind other = kind;
        other.regions += static_cast<int>(seed % 3) - 1;
        const Pair pair(seed, kind, other);
        const PlainDistance::Outcome plain = PlainDistance::dist(*pair.a, *pair.b, cap);
        const double dist = DistAlgo::cappedDist(*pair.a, *pair.b, static_cast<std::size_t>(cap));
        QVERIFY2(dist == plain.dist, qPrintable(numbers(seed, dist, plain.dist)));
        cut += plain.givenUp > 0 ? 1 : 0;
    }
    QVERIFY2(cut >= leastCut, qPrintable(QString::number(cut)));
}

void RandomDistancesTest::areNeverNegativeAndTheSameBothWays()
{
    // Worms so small that no path is given up.
    for (quint32 seed = 1; seed <= 3000; ++seed) {
        const bool evenNumbers = seed % 3 == 0;
        const Pair pair(seed, {2 + static_cast<int>(seed % 4), 3, false, evenNumbers},
                        {1 + static_cast<int>(seed % 5), 3, false, evenNumbers});
        const double there = DistAlgo::dist(*pair.a, *pair.b);
        const double back = DistAlgo::dist(*pair.b, *pair.a);
        QVERIFY2(there >= 0.0, qPrintable(numbers(seed, there, back)));
        QVERIFY2(std::abs(there - back) <= 1e-9, qPrintable(numbers(seed, there, back)));
    }
}

void RandomDistancesTest::areZeroFromAWormToItselfAndToItsCopy()
{
    for (quint32 seed = 1; seed <= 3000; ++seed) {
        const bool evenNumbers = seed % 3 == 0;
        const auto worm =
            RandomBodies(seed).worm({static_cast<int>(seed % 12), 4, false, evenNumbers});
        const double self = DistAlgo::dist(*worm, *worm);
        const double copy = DistAlgo::dist(*worm, Morphology(*worm, false));
        QVERIFY2(self == 0.0 && copy == 0.0, qPrintable(numbers(seed, self, copy)));
    }
}

QTEST_GUILESS_MAIN(RandomDistancesTest)
#include "RandomDistancesTest.moc"
