#include "distance/OpenPaths.h"

#include <QList>
#include <QRandomGenerator>
#include <QTest>

using namespace Planaria;

namespace {

/// The same order, kept in one list.
class PlainOpenPaths final
{
public:
    [[nodiscard]] qsizetype size() const { return entries.size(); }
    [[nodiscard]] double highestCost() const { return entries.last().cost; }

    void insert(double cost, int path)
    {
        const auto place =
            std::find_if(entries.cbegin(), entries.cend(),
                         [cost](const OpenPaths::Entry &entry) { return entry.cost >= cost; });
        entries.insert(place - entries.cbegin(), OpenPaths::Entry{cost, path});
    }
    OpenPaths::Entry takeFirst() { return entries.takeFirst(); }
    OpenPaths::Entry takeLast() { return entries.takeLast(); }

private:
    QList<OpenPaths::Entry> entries;
};

bool same(const OpenPaths::Entry &a, const OpenPaths::Entry &b)
{
    return a.cost == b.cost && a.path == b.path;
}

} // namespace

class OpenPathsTest final : public QObject
{
    Q_OBJECT

private slots:
    void givesTheCheapestFirstAndTheDearestLast();
    void putsTheNewestOfEqualCostsFirst();
    void startsAfreshOnceCleared();
    void keepsItsOrderUnderRandomUse_data();
    void keepsItsOrderUnderRandomUse();
};

void OpenPathsTest::givesTheCheapestFirstAndTheDearestLast()
{
    OpenPaths open;
    open.insert(2.0, 20);
    open.insert(1.0, 10);
    open.insert(3.0, 30);

    QCOMPARE(open.size(), std::size_t(3));
    QCOMPARE(open.highestCost(), 3.0);
    QCOMPARE(open.takeFirst().path, 10);
    QCOMPARE(open.takeLast().path, 30);
    QCOMPARE(open.highestCost(), 2.0);
    QCOMPARE(open.takeLast().path, 20);
    QCOMPARE(open.size(), std::size_t(0));
}

void OpenPathsTest::putsTheNewestOfEqualCostsFirst()
{
    OpenPaths open;
    for (int path = 0; path < 1000; ++path)
        open.insert(7.0, path);

    for (int path = 999; path >= 500; --path)
        QCOMPARE(open.takeFirst().path, path);
    for (int path = 0; path < 500; ++path)
        QCOMPARE(open.takeLast().path, path);
}

void OpenPathsTest::startsAfreshOnceCleared()
{
    OpenPaths open;
    for (int path = 0; path < 500; ++path)
        open.insert(path, path);
    open.takeFirst();
    open.clear();
    QCOMPARE(open.size(), std::size_t(0));

    for (int path = 0; path < 1000; ++path)
        open.insert(-path, path);
    QCOMPARE(open.highestCost(), 0.0);
    QCOMPARE(open.takeFirst().path, 999);
    QCOMPARE(open.takeLast().path, 0);
}

void OpenPathsTest::keepsItsOrderUnderRandomUse_data()
{
    QTest::addColumn<int>("costs");    // how many different ones
    QTest::addColumn<int>("capacity"); // from which on the last make way
    QTest::newRow("few costs") << 5 << 5000;
    QTest::newRow("many costs") << 1000000 << 5000;
    QTest::newRow("small") << 100 << 3;
    QTest::newRow("nearly full blocks") << 1000 << 300;
}

void OpenPathsTest::keepsItsOrderUnderRandomUse()
{
    QFETCH(const int, costs);
    QFETCH(const int, capacity);

    for (quint32 seed = 1; seed <= 20; ++seed) {
        QRandomGenerator random(seed);
        OpenPaths open;
        PlainOpenPaths plain;
        for (int step = 0; step < 5000; ++step) {
            const double cost = random.bounded(costs);
            open.insert(cost, step);
            plain.insert(cost, step);
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
