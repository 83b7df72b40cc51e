#include "distance/OpenPaths.h"

#include <QList>
#include <QRandomGenerator>
#include <QTest>

#include <limits>

using namespace Planaria;

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();

/// The same order, kept in one list.
class PlainOpenPaths final
{
public:
    [[nodiscard]] qsizetype size() const { return entries.size(); }
    [[nodiscard]] double highestCost() const { return entries.last().cost; }

    void insert(const OpenPath &added)
    {
        const auto place =
            std::find_if(entries.cbegin(), entries.cend(),
                         [&](const OpenPath &entry) { return entry.cost >= added.cost; });
        entries.insert(place - entries.cbegin(), added);
    }
    OpenPath takeFirst() { return entries.takeFirst(); }
    OpenPath takeLast() { return entries.takeLast(); }

private:
    QList<OpenPath> entries;
};

bool same(const OpenPath &a, const OpenPath &b)
{
    return a.cost == b.cost && a.row == b.row;
}

} // namespace

class OpenPathsTest final : public QObject
{
    Q_OBJECT

private slots:
    void givesTheCheapestFirstAndTheDearestLast();
    void putsTheNewestOfEqualCostsFirst();
    void startsAfreshOnceReset();
    void keepsItsOrderUnderRandomUse_data();
    void keepsItsOrderUnderRandomUse();
};

void OpenPathsTest::givesTheCheapestFirstAndTheDearestLast()
{
    OpenPaths open;
    open.reset(4.0);
    open.insert({2.0, 20, 0});
    open.insert({1.0, 10, 0});
    open.insert({3.0, 30, 0});

    QCOMPARE(open.size(), std::size_t(3));
    QCOMPARE(open.highestCost(), 3.0);
    QCOMPARE(open.takeFirst().row, 10);
    QCOMPARE(open.takeLast().row, 30);
    QCOMPARE(open.highestCost(), 2.0);
    QCOMPARE(open.takeLast().row, 20);
    QCOMPARE(open.size(), std::size_t(0));
}

void OpenPathsTest::putsTheNewestOfEqualCostsFirst()
{
    OpenPaths open;
    open.reset(500.0);
    for (int path = 0; path < 1000; ++path)
        open.insert({7.0, path, 0});

    for (int path = 999; path >= 500; --path)
        QCOMPARE(open.takeFirst().row, path);
    for (int path = 0; path < 500; ++path)
        QCOMPARE(open.takeLast().row, path);
}

void OpenPathsTest::startsAfreshOnceReset()
{
    OpenPaths open;
    open.reset(500.0);
    for (int path = 0; path < 500; ++path)
        open.insert({double(path), path, 0});
    open.takeFirst();
    open.reset(1000.0);
    QCOMPARE(open.size(), std::size_t(0));

    for (int path = 0; path < 1000; ++path)
        open.insert({-double(path), path, 0});
    QCOMPARE(open.highestCost(), 0.0);
    QCOMPARE(open.takeFirst().row, 999);
    QCOMPARE(open.takeLast().row, 0);
}

void OpenPathsTest::keepsItsOrderUnderRandomUse_data()
{
    QTest::addColumn<int>("costs");    // how many different ones
    QTest::addColumn<int>("capacity"); // from which on the last make way
    QTest::addColumn<double>("highCost");
    QTest::addColumn<int>("endlessOfTen"); // how many paths of ten cost endlessly much
    QTest::newRow("few costs") << 5 << 5000 << 5.0 << 0;
    QTest::newRow("many costs") << 1000000 << 5000 << 1e6 << 0;
    QTest::newRow("small") << 100 << 3 << 100.0 << 0;
    QTest::newRow("nearly full blocks") << 1000 << 300 << 1000.0 << 0;
    QTest::newRow("costs that are mostly higher") << 1000 << 1000 << 100.0 << 0;
    QTest::newRow("costs all but the same") << 1000 << 1000 << 1e12 << 0;
    QTest::newRow("no costs expected") << 1000 << 1000 << 0.0 << 0;
    QTest::newRow("endless costs expected") << 1000 << 1000 << infinite << 0;
    QTest::newRow("some endless costs") << 1000 << 1000 << 1000.0 << 3;
    QTest::newRow("some endless costs, none expected") << 1000 << 1000 << 0.0 << 3;
    QTest::newRow("some endless costs, as expected") << 1000 << 1000 << infinite << 3;
    QTest::newRow("mostly endless costs, none expected") << 1000 << 300 << 0.0 << 9;
    QTest::newRow("mostly endless costs, as expected") << 1000 << 300 << infinite << 9;
}

void OpenPathsTest::keepsItsOrderUnderRandomUse()
{
    QFETCH(const int, costs);
    QFETCH(const int, capacity);
    QFETCH(const double, highCost);
    QFETCH(const int, endlessOfTen);

    for (quint32 seed = 1; seed <= 20; ++seed) {
        QRandomGenerator random(seed);
        OpenPaths open;
        open.reset(highCost);
        PlainOpenPaths plain;
        for (int step = 0; step < 5000; ++step) {
            // They rise, as in a search, by half of their extent.
            const double finite =
                static_cast<double>(random.bounded(costs) / 2 + qint64(costs) * step / 10000);
            const double cost = random.bounded(10) < endlessOfTen ? infinite : finite;
            open.insert({cost, step, 0});
            plain.insert({cost, step, 0});
            const bool takesFirst = random.bounded(4) == 0;
            bool agree = !takesFirst || same(open.takeFirst(), plain.takeFirst());
            if (plain.size() > capacity)
                agree = agree && same(open.takeLast(), plain.takeLast());
            agree = agree && open.size() == std::size_t(plain.size()) &&
                    (open.size() == 0 || open.highestCost() == plain.highestCost());
            QVERIFY2(agree, qPrintable(QStringLiteral("seed %1, step %2").arg(seed).arg(step)));
        }
    }
}

QTEST_GUILESS_MAIN(OpenPathsTest)
#include "OpenPathsTest.moc"
