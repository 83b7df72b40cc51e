#include "LibraryJson.h"

#include "db/BulkRead.h"
#include "db/DB.h"
#include "db/DBExp.h"
#include "model/Drug.h"
#include "model/Experiment.h"
#include "model/ExperimentDrug.h"
#include "model/ExperimentRNAi.h"
#include "model/JoinAction.h"
#include "model/LineOrgan.h"
#include "model/LineOrganType.h"
#include "model/Manipulation.h"
#include "model/ManipulationLines.h"
#include "model/Morphology.h"
#include "model/MorphologyAction.h"
#include "model/MorphologyImage.h"
#include "model/Publication.h"
#include "model/RNAi.h"
#include "model/Region.h"
#include "model/RegionParam.h"
#include "model/RegionType.h"
#include "model/RegionsLink.h"
#include "model/RemoveAction.h"
#include "model/ResultSet.h"
#include "model/ResultantMorphology.h"
#include "model/Species.h"
#include "model/SpotOrgan.h"
#include "model/SpotOrganType.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QSqlRecord>

namespace Planaria {

namespace {

QJsonArray json(const QPointF &point)
{
    return {point.x(), point.y()};
}

QJsonObject json(const Organ *organ)
{
    if (const auto *spot = dynamic_cast<const SpotOrgan *>(organ))
        return {{"spot", spot->type()->name()}, {"pos", json(spot->pos())}, {"rot", spot->rot()}};
    const auto *line = dynamic_cast<const LineOrgan *>(organ);
    return {{"line", line->type()->name()},
            {"pos", json(line->pos())},
            {"end1", json(line->end1())},
            {"end2", json(line->end2())}};
}

/// What @p convert makes of each of @p members.
template <typename Members, typename Convert>
QJsonArray each(const Members &members, const Convert &convert)
{
    QJsonArray array;
    for (const auto &member : members)
        array.append(QJsonValue(convert(member)));
    return array;
}

QJsonObject json(const Region *region)
{
    return {{"type", region->type()->name()},
            {"params", each(region->params(),
                            [](const RegionParam *param) {
                                return QJsonArray{param->index(), param->value()};
                            })},
            {"organs", each(region->organs(), [](const Organ *organ) { return json(organ); })}};
}

QJsonObject json(const MorphologyImage *image)
{
    const QByteArray hash = QCryptographicHash::hash(image->bytes(), QCryptographicHash::Sha256);
    return {{"bytes", image->bytes().size()}, {"sha256", QString::fromLatin1(hash.toHex())}};
}

QJsonObject json(const Morphology &worm)
{
    const auto link = [&worm](const RegionsLink *regionsLink) {
        return QJsonArray{worm.regions().indexOf(regionsLink->from()),
                          worm.regions().indexOf(regionsLink->to()), regionsLink->totalDist(),
                          regionsLink->fromRatio(), regionsLink->fromAng()};
    };
    return {{"name", worm.name()},
            {"regions", each(worm.regions(), [](const Region *region) { return json(region); })},
            {"links", each(worm.links(), link)},
            {"images",
             each(worm.getImages(), [](const MorphologyImage *image) { return json(image); })}};
}

QJsonValue json(const ManipulationAction *action)
{
    if (!action)
        return QJsonValue::Null;
    QJsonObject object{{"action", kindOf(action)}};
    if (const auto *leaf = dynamic_cast<const MorphologyAction *>(action)) {
        object["morphology"] = leaf->morphology()->name();
    } else if (const auto *join = dynamic_cast<const JoinAction *>(action)) {
        object["from1"] = json(join->fromAction1());
        object["from2"] = json(join->fromAction2());
        object["vect"] = QJsonArray{join->vectX(), join->vectY()};
        object["rot"] = join->rot();
    } else if (const auto *area = dynamic_cast<const AreaAction *>(action)) {
        object["from"] = json(area->fromAction());
        object["area"] = each(area->area(), [](const ActionAreaPoint *point) {
            return QJsonArray{point->pointInd(), point->x(), point->y()};
        });
    }
    return object;
}

QJsonObject json(const Manipulation &manipulation)
{
    return {{"name", manipulation.name()}, {"root", json(manipulation.rootAction())}};
}

QJsonObject json(const ResultSet *set)
{
    return {{"num", set->num()},
            {"regen_period", set->regenPeriod()},
            {"results", each(set->resultantMorphologies(), [](const ResultantMorphology *result) {
                 return QJsonArray{result->morphology()->name(), result->frequency()};
             })}};
}

QJsonObject json(const Experiment &experiment)
{
    const auto nameOfRNAi = [](const ExperimentRNAi *given) { return given->rnai()->name(); };
    const auto drug = [](const ExperimentDrug *given) {
        return QJsonArray{given->drug()->name(), given->startTime(), given->endTime()};
    };
    const auto name = [](const auto *element) {
        return element ? QJsonValue(element->name()) : QJsonValue();
    };
    const Publication *publication = experiment.publication();
    return {{"name", experiment.name()},
            {"manipulation", name(experiment.manipulation())},
            {"publication", publication ? QJsonValue(publication->title()) : QJsonValue()},
            {"species", name(experiment.species())},
            {"rnai", each(experiment.experimentRNAis(), nameOfRNAi)},
            {"drugs", each(experiment.experimentDrugs(), drug)},
            {"result_sets",
             each(experiment.resultSets(), [](const ResultSet *set) { return json(set); })}};
}

/// What @p convert makes of each row of @p sql.
template <typename Convert> QJsonArray rows(DB *db, const QString &sql, const Convert &convert)
{
    QJsonArray array;
    const std::unique_ptr<QSqlQuery> query = db->newQuery(sql);
    while (query->next())
        array.append(QJsonValue(convert(query->record())));
    return array;
}

QJsonArray names(DB *db, const QString &table, const QString &order = "Name")
{
    return rows(db, QStringLiteral("SELECT Name FROM %1 ORDER BY %2").arg(table, order),
                [](const QSqlRecord &row) { return row.value(0).toString(); });
}

template <typename Load> QJsonArray elements(DB *db, const QString &table, const Load &load)
{
    return rows(db, QStringLiteral("SELECT Id FROM %1 ORDER BY Name").arg(table),
                [&load](const QSqlRecord &row) { return json(load(row.value(0).toInt())); });
}

QJsonValue value(const QSqlRecord &row, const char *column)
{
    return QJsonValue::fromVariant(row.isNull(column) ? QVariant() : row.value(column));
}

} // namespace

QJsonObject libraryJson(DB *db)
{
    const BulkRead job(db);
    const auto publication = [](const QSqlRecord &row) {
        return QJsonObject{{"title", value(row, "Title")},
                           {"url", value(row, "URL")},
                           {"year", value(row, "Year")}};
    };
    const auto rnai = [](const QSqlRecord &row) {
        return QJsonObject{{"name", value(row, "Name")},
                           {"blocked", value(row, "BlockedMechanism")}};
    };
    return {
        {"version", DBExp::getDBVersion(db)},
        {"vocabularies", QJsonObject{{"RegionType", names(db, "RegionType", "Id")},
                                     {"SpotOrganType", names(db, "SpotOrganType", "Id")},
                                     {"LineOrganType", names(db, "LineOrganType", "Id")}}},
        {"publications", rows(db, "SELECT * FROM Publication ORDER BY Title", publication)},
        {"species", names(db, "Species")},
        {"drugs", names(db, "Drug")},
        {"rnai", rows(db, "SELECT * FROM RNAi ORDER BY Name", rnai)},
        {"morphologies",
         elements(db, "Morphology", [db](int id) { return Morphology(id, db, true); })},
        {"manipulations",
         elements(db, "Manipulation", [db](int id) { return Manipulation(id, db); })},
        {"experiments", elements(db, "Experiment", [db](int id) { return Experiment(id, db); })},
    };
}

QJsonObject elementsByName(const QJsonObject &library, const QString &list)
{
    QJsonObject found;
    const QJsonArray all = library[list].toArray();
    for (const QJsonValue &element : all) {
        const QJsonObject object = element.toObject();
        const QString name = element.isString()
                                 ? element.toString()
                                 : object["name"].toString(object["title"].toString());
        found.insert(name, element);
    }
    return found;
}

QStringList strayRows(DB *db)
{
    const auto unnamed = [](const QString &table, const QStringList &namers) {
        return QStringLiteral("SELECT '%1 ' || Id FROM %1 WHERE Id NOT IN (%2)")
            .arg(table, namers.join(" UNION "));
    };
    const auto namer = [](const QString &table, const QString &column) {
        return QStringLiteral("SELECT %2 FROM %1 WHERE %2 NOT NULL").arg(table, column);
    };
    QStringList statements{
        unnamed("SpotOrgan", {namer("Organ", "SpotOrgan")}),
        unnamed("LineOrgan", {namer("Organ", "LineOrgan")}),
        unnamed("ManipulationAction",
                {namer("Manipulation", "RootAction"), namer("RemoveAction", "FromAction"),
                 namer("CropAction", "FromAction"), namer("IrradiationAction", "FromAction"),
                 namer("JoinAction", "FromAction1"), namer("JoinAction", "FromAction2")})};
    for (const QString action :
         {"MorphologyAction", "RemoveAction", "CropAction", "JoinAction", "IrradiationAction"})
        statements += unnamed(action, {namer("ManipulationAction", action)});

    QStringList stray;
    for (const QString &statement : statements) {
        const std::unique_ptr<QSqlQuery> query = db->newQuery(statement);
        while (query->next())
            stray += query->value(0).toString();
    }
    return stray;
}

QStringList dumpOf(DB *db)
{
    QStringList lines;
    QStringList tables{"sqlite_master"};
    const std::unique_ptr<QSqlQuery> master =
        db->newQuery("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name");
    while (master->next())
        tables += master->value(0).toString();
    for (const QString &table : tables) {
        // Where a table lies in the file is no content.
        const QString columns = table == "sqlite_master" ? "type, name, tbl_name, sql" : "*";
        const std::unique_ptr<QSqlQuery> query =
            db->newQuery(QStringLiteral("SELECT %1 FROM %2 ORDER BY rowid").arg(columns, table));
        while (query->next()) {
            QStringList values{table};
            for (int column = 0; column < query->record().count(); ++column) {
                const QVariant value = query->value(column);
                values += query->isNull(column)
                              ? "NULL"
                              : QString::fromUtf8(value.toByteArray().toPercentEncoding());
            }
            lines += values.join(' ');
        }
    }
    return lines;
}

} // namespace Planaria
