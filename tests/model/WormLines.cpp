#include "model/WormLines.h"

#include "db/DB.h"
#include "model/LineOrgan.h"
#include "model/LineOrganType.h"
#include "model/Morphology.h"
#include "model/MorphologyImage.h"
#include "model/RegionType.h"
#include "model/RegionsLink.h"
#include "model/Shorthand.h"
#include "model/SpotOrgan.h"
#include "model/SpotOrganType.h"
#include "support/TemporaryLibrary.h"

#include <QMap>
#include <QSqlRecord>

namespace Planaria {

namespace {

QString text(double number)
{
    return QString::number(number, 'g', 17);
}

QString text(const QPointF &point)
{
    return QStringLiteral("(%1, %2)").arg(text(point.x()), text(point.y()));
}

QString organText(const Organ *organ)
{
    if (const auto *spot = dynamic_cast<const SpotOrgan *>(organ))
        return QStringLiteral("spot organ %1 at %2 turned %3")
            .arg(QString::number(spot->type()->id()), text(spot->pos()), text(spot->rot()));
    const auto *line = dynamic_cast<const LineOrgan *>(organ);
    return QStringLiteral("line organ %1 at %2 from %3 to %4")
        .arg(QString::number(line->type()->id()), text(line->pos()), text(line->end1()),
             text(line->end2()));
}

QString regionText(const Region *region, const Morphology &worm)
{
    QStringList links;
    for (RegionsLink *link : region->links())
        links += QString::number(worm.links().indexOf(link));
    return QStringLiteral("region of type %1 with links %2")
        .arg(QString::number(region->type()->id()), links.join(' '));
}

QString linkText(const RegionsLink *link, const Morphology &worm)
{
    return QStringLiteral("link from %1 to %2 of %3, %4, %5")
        .arg(QString::number(worm.regions().indexOf(link->from())),
             QString::number(worm.regions().indexOf(link->to())), text(link->totalDist()),
             text(link->fromAng()), text(link->fromRatio()));
}

using RowCounts = QMap<QString, qsizetype>;

QStringList lines(const RowCounts &counts)
{
    QStringList lines;
    for (auto count = counts.cbegin(); count != counts.cend(); ++count) {
        if (count.value() > 0)
            lines += QStringLiteral("%1: %2").arg(count.key()).arg(count.value());
    }
    return lines;
}

} // namespace

QStringList wormLines(const Morphology &worm, Ids ids)
{
    QStringList lines;
    const auto add = [&](const DBElement *element, const QString &text) {
        lines += ids == Ids::With ? QStringLiteral("%1, id %2").arg(text).arg(element->id()) : text;
    };
    add(&worm, worm.name());
    for (const Region *region : worm.regions()) {
        add(region, regionText(region, worm));
        for (const RegionParam *param : region->params())
            add(param,
                QStringLiteral("param %1: %2").arg(param->index()).arg(text(param->value())));
        for (const Organ *organ : region->organs())
            add(organ, organText(organ));
    }
    for (const RegionsLink *link : worm.links())
        add(link, linkText(link, worm));
    for (const MorphologyImage *image : worm.getImages())
        add(image, QStringLiteral("image ") + QString::fromLatin1(image->bytes().toHex()));
    return lines;
}

QStringList rowsOf(const QList<const Morphology *> &worms)
{
    RowCounts counts;
    for (const Morphology *worm : worms) {
        counts["Morphology"] += 1;
        counts["MorphologyImage"] += worm->nImages();
        counts["Region"] += worm->regions().size();
        counts["RegionsLink"] += worm->links().size();
        for (const Region *region : worm->regions()) {
            counts["RegionParam"] += region->params().size();
            counts["Organ"] += region->organs().size();
            for (const Organ *organ : region->organs())
                counts[dynamic_cast<const SpotOrgan *>(organ) ? "SpotOrgan" : "LineOrgan"] += 1;
        }
    }
    return lines(counts);
}

QStringList rowsIn(TemporaryLibrary *library)
{
    static const QStringList vocabulary{"Meta", "RegionType", "SpotOrganType", "LineOrganType"};

    RowCounts counts;
    const std::unique_ptr<QSqlQuery> tables = library->db()->newQuery(QStringLiteral(
        "SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite%'"));
    while (tables->next()) {
        const QString table = tables->value(0).toString();
        if (!vocabulary.contains(table))
            counts[table] = library->count(table);
    }
    return lines(counts);
}

QStringList rows(TemporaryLibrary *library, const QString &sql)
{
    QStringList rows;
    const std::unique_ptr<QSqlQuery> query = library->db()->newQuery(sql);
    while (query->next()) {
        QStringList values;
        for (int column = 0; column < query->record().count(); ++column)
            values +=
                query->isNull(column) ? QStringLiteral("NULL") : query->value(column).toString();
        rows += values.join(' ');
    }
    return rows;
}

} // namespace Planaria
