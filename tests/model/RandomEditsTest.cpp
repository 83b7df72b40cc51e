#include "model/Morphology.h"
#include "model/RandomWorms.h"
#include "model/RegionsLink.h"
#include "model/Shorthand.h"

#include <QSet>
#include <QTest>

using namespace Planaria;

namespace {

qsizetype paramsOf(qsizetype links)
{
    return links < 2 ? 4 - links : links;
}

QString paramProblem(const Region *region)
{
    if (region->params().size() != paramsOf(region->links().size()))
        return QStringLiteral("%1 params with %2 links")
            .arg(region->params().size())
            .arg(region->links().size());
    for (int position = 0; position < region->params().size(); ++position) {
        if (region->params().at(position)->index() != position)
            return QStringLiteral("index %1 at position %2")
                .arg(region->params().at(position)->index())
                .arg(position);
    }
    return {};
}

QString orderProblem(const Region *region)
{
    const QList<RegionsLink *> &links = region->links();
    const bool sorted = std::is_sorted(links.cbegin(), links.cend(),
                                       [region](const RegionsLink *a, const RegionsLink *b) {
                                           return a->ang(region) < b->ang(region);
                                       });
    return sorted ? QString() : QStringLiteral("links out of order");
}

/// Every link of the worm is listed once by each of its ends, and the regions list no other.
QString listingProblem(const Morphology &worm)
{
    qsizetype listed = 0;
    for (const Region *region : worm.regions())
        listed += region->links().size();
    if (listed != 2 * worm.links().size())
        return QStringLiteral("%1 links are listed %2 times").arg(worm.links().size()).arg(listed);
    for (RegionsLink *link : worm.links()) {
        if (link->from()->links().count(link) != 1 || link->to()->links().count(link) != 1)
            return QStringLiteral("a link is not listed by its ends");
    }
    return {};
}

/// What is @p owned, in use or queued, is there once, and nothing that was there before is gone.
template <typename Member>
QString ownershipProblem(const QList<const Member *> &owned, QSet<const Member *> *everSeen)
{
    const QSet<const Member *> distinct(owned.cbegin(), owned.cend());
    *everSeen += distinct;
    if (distinct.size() != owned.size())
        return QStringLiteral("%1 objects in %2 places").arg(distinct.size()).arg(owned.size());
    if (distinct != *everSeen)
        return QStringLiteral("%1 objects were lost").arg(everSeen->size() - distinct.size());
    return {};
}

/// Watches a worm through its edits.
class Watch final
{
public:
    explicit Watch(const Morphology *watched) : worm(watched) {}

    /// What is wrong with the worm now; empty if nothing is.
    QString problem()
    {
        for (Region *region : worm->regions())
            regions.insert(region);
        QStringList problems{listingProblem(*worm), ownershipProblem(ownedByWorm(), &members)};
        for (const Region *region : worm->regions())
            problems << paramProblem(region) << orderProblem(region);
        for (const Region *region : std::as_const(regions))
            problems += ownershipProblem(ownedBy(region), &params[region]);
        problems.removeAll(QString());
        return problems.join(QStringLiteral(", "));
    }

private:
    [[nodiscard]] QList<const DBElement *> ownedByWorm() const
    {
        QList<const DBElement *> owned = queued<DBElement>(worm);
        for (const Region *region : worm->regions())
            owned += region;
        for (const RegionsLink *link : worm->links())
            owned += link;
        return owned;
    }

    static QList<const RegionParam *> ownedBy(const Region *region)
    {
        QList<const RegionParam *> owned = queued<RegionParam>(region);
        for (const RegionParam *param : region->params())
            owned += param;
        return owned;
    }

    const Morphology *worm;
    QSet<const Region *> regions; // the removed ones too
    QSet<const DBElement *> members;
    QHash<const Region *, QSet<const RegionParam *>> params;
};

} // namespace

class RandomEditsTest final : public QObject
{
    Q_OBJECT

private slots:
    void keepTheGraphSound();
};

void RandomEditsTest::keepTheGraphSound()
{
    for (quint32 seed = 1; seed <= 200; ++seed) {
        RandomWorms random(seed, RandomWorms::AnyAngles);
        Morphology worm;
        Watch watch(&worm);
        for (int step = 1; step <= 100; ++step) {
            random.editGraph(&worm);
            const QString problem = watch.problem();
            QVERIFY2(problem.isEmpty(),
                     qPrintable(
                         QStringLiteral("seed %1, step %2: %3").arg(seed).arg(step).arg(problem)));
        }
    }
}

QTEST_GUILESS_MAIN(RandomEditsTest)
#include "RandomEditsTest.moc"
