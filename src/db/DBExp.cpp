#include "db/DBExp.h"

#include "db/DB.h"

namespace Planaria {

namespace {

// The order of the columns is part of the format: elements read them by position. The references
// in the chain of manipulation actions are deferred, so that its rows can be rewritten in any
// order within one transaction; ManipulationAction.IrradiationAction is not, in every file there
// is. A table may be created before one that it references.
constexpr auto schema = R"sql(
CREATE TABLE [Meta] (
    [DBStructVer] INTEGER
);
INSERT INTO Meta VALUES(2);

CREATE TABLE [Drug] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [Name] VARCHAR NOT NULL UNIQUE
);

CREATE TABLE [Species] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [Name] VARCHAR NOT NULL UNIQUE
);

CREATE TABLE [LineOrganType] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [Name] VAR CHAR NOT NULL UNIQUE
);
INSERT INTO LineOrganType VALUES(1, 'VNC');

CREATE TABLE [SpotOrganType] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [Name] VAR CHAR NOT NULL UNIQUE
);
INSERT INTO SpotOrganType VALUES(1, 'Eye');
INSERT INTO SpotOrganType VALUES(2, 'Brain');
INSERT INTO SpotOrganType VALUES(3, 'Phar.');

CREATE TABLE [Organ] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [Region] INTEGER NOT NULL REFERENCES [Region]([Id]),
    [VecX] REAL NOT NULL,
    [VecY] REAL NOT NULL,
    [SpotOrgan] INTEGER REFERENCES [SpotOrgan]([Id]),
    [LineOrgan] INTEGER REFERENCES [LineOrgan]([Id]),
    CHECK((SpotOrgan IS NOT NULL) OR (LineOrgan IS NOT NULL))
);

CREATE TABLE [MorphologyAction] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [Morphology] INTEGER NOT NULL REFERENCES [Morphology]([Id])
);

CREATE TABLE [ExperimentDrug] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [Experiment] INTEGER NOT NULL REFERENCES [Experiment]([Id]),
    [Drug] INTEGER NOT NULL REFERENCES [Drug]([Id]),
    [StartTime] REAL,
    [EndTime] REAL
);

CREATE TABLE [ExperimentRNAi] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [Experiment] INTEGER NOT NULL REFERENCES [Experiment]([Id]),
    [RNAi] INTEGER NOT NULL REFERENCES [RNAi]([Id])
);

CREATE TABLE [Region] (
    [Id] INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT,
    [Morphology] INTEGER NOT NULL CONSTRAINT [FK1] REFERENCES [Morphology]([Id]),
    [Type] INTEGER NOT NULL CONSTRAINT [FK2] REFERENCES [RegionType]([Id])
);

CREATE TABLE [RegionsLink] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [FromRegion] INTEGER NOT NULL CONSTRAINT [FK1] REFERENCES [Region]([Id]),
    [ToRegion] INTEGER NOT NULL CONSTRAINT [FK2] REFERENCES [Region]([Id]),
    [Dist] REAL NOT NULL,
    [Ratio] REAL NOT NULL,
    [Ang] REAL NOT NULL
);

CREATE TABLE [RegionParam] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [Region] INTEGER NOT NULL CONSTRAINT [FK1] REFERENCES [Region]([Id]),
    [ParamInd] INTEGER NOT NULL,
    [Value] REAL NOT NULL
);

CREATE TABLE [CropActionAreaPoint] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [CropAction] INTEGER NOT NULL REFERENCES [CropAction]([Id]),
    [PointInd] INTEGER NOT NULL,
    [PointX] REAL NOT NULL,
    [PointY] REAL NOT NULL
);

CREATE TABLE [RemoveActionAreaPoint] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [RemoveAction] INTEGER NOT NULL REFERENCES [RemoveAction]([Id]),
    [PointInd] INTEGER NOT NULL,
    [PointX] REAL NOT NULL,
    [PointY] REAL NOT NULL
);

CREATE TABLE [SpotOrgan] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [Type] INTEGER NOT NULL REFERENCES [SpotOrganType]([Id]),
    [Rot] REAL NOT NULL
);

CREATE TABLE [LineOrgan] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [Type] INTEGER NOT NULL REFERENCES [LineOrganType]([Id]),
    [VecEnd1X] REAL NOT NULL,
    [VecEnd1Y] REAL NOT NULL,
    [VecEnd2X] REAL NOT NULL,
    [VecEnd2Y] REAL NOT NULL
);

CREATE TABLE [ResultSet] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [Experiment] INTEGER NOT NULL REFERENCES [Experiment]([Id]),
    [Num] INTEGER,
    [RegenPeriod] REAL
);

CREATE TABLE [RemoveAction] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [FromAction] INTEGER NOT NULL REFERENCES [ManipulationAction]([Id]) DEFERRABLE INITIALLY DEFERRED
);

CREATE TABLE [CropAction] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [FromAction] INTEGER NOT NULL REFERENCES [ManipulationAction]([Id]) DEFERRABLE INITIALLY DEFERRED
);

CREATE TABLE [JoinAction] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [FromAction1] INTEGER NOT NULL REFERENCES [ManipulationAction]([Id]) DEFERRABLE INITIALLY DEFERRED,
    [FromAction2] INTEGER NOT NULL REFERENCES [ManipulationAction]([Id]) DEFERRABLE INITIALLY DEFERRED,
    [VectX] REAL NOT NULL,
    [VectY] REAL NOT NULL,
    [Rot] REAL NOT NULL
);

CREATE TABLE [Manipulation] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [Name] VARCHAR NOT NULL UNIQUE,
    [RootAction] INTEGER NOT NULL REFERENCES [ManipulationAction]([Id]) DEFERRABLE INITIALLY DEFERRED
);

CREATE TABLE [Morphology] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [Name] VARCHAR NOT NULL UNIQUE
);

CREATE TABLE [Publication] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [Title] VARCHAR NOT NULL UNIQUE,
    [URL] VARCHAR,
    [Year] INTEGER
);

CREATE TABLE [RNAi] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [Name] VARCHAR NOT NULL UNIQUE,
    [BlockedMechanism] VARCHAR
);

CREATE TABLE [Experiment] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [Name] VARCHAR NOT NULL UNIQUE,
    [Manipulation] INTEGER NOT NULL REFERENCES [Manipulation]([Id]),
    [Publication] INTEGER NOT NULL REFERENCES [Publication]([Id]),
    [Species] INTEGER NOT NULL REFERENCES [Species]([Id])
);

CREATE TABLE [ResultantMorphology] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [ResultSet] INTEGER NOT NULL REFERENCES [ResultSet]([Id]),
    [Morphology] INTEGER NOT NULL REFERENCES [Morphology]([Id]),
    [Frequency] REAL NOT NULL
);

CREATE TABLE [RegionType] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [Name] VARCHAR NOT NULL UNIQUE
);
INSERT INTO RegionType VALUES(1, 'Head');
INSERT INTO RegionType VALUES(2, 'Trunk');
INSERT INTO RegionType VALUES(3, 'Tail');

CREATE TABLE [IrradiationAction] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [FromAction] INTEGER NOT NULL REFERENCES [ManipulationAction]([Id]) DEFERRABLE INITIALLY DEFERRED
);

CREATE TABLE [IrradiationActionAreaPoint] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [IrradiationAction] INTEGER NOT NULL REFERENCES [IrradiationAction]([Id]),
    [PointInd] INTEGER NOT NULL,
    [PointX] REAL NOT NULL,
    [PointY] REAL NOT NULL
);

CREATE TABLE [ManipulationAction] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [MorphologyAction] INTEGER REFERENCES [MorphologyAction]([Id]) DEFERRABLE INITIALLY DEFERRED,
    [RemoveAction] INTEGER REFERENCES [RemoveAction]([Id]) DEFERRABLE INITIALLY DEFERRED,
    [CropAction] INTEGER REFERENCES [CropAction]([Id]) DEFERRABLE INITIALLY DEFERRED,
    [JoinAction] INTEGER REFERENCES [JoinAction]([Id]) DEFERRABLE INITIALLY DEFERRED,
    [IrradiationAction] INTEGER REFERENCES [IrradiationAction]([Id]),
    CHECK(( MorphologyAction IS NOT NULL ) OR ( RemoveAction IS NOT NULL ) OR ( CropAction IS NOT NULL ) OR ( JoinAction IS NOT NULL ) OR ( IrradiationAction IS NOT NULL ))
);

CREATE TABLE [MorphologyImage] (
    [Id] INTEGER NOT NULL PRIMARY KEY,
    [Morphology] INTEGER NOT NULL REFERENCES [Morphology]([Id]),
    [Data] BLOB NOT NULL
);
)sql";

} // namespace

DBExp::~DBExp() = default;

static_assert(DBExp::currentVersion == 2, "the row of Meta, here and in the upgrade, tells it too");

bool DBExp::buildDB(DB *db)
{
    db->beginTransaction();
    bool ok = true;
    const std::unique_ptr<QSqlQuery> query = db->newQuery();
    const QStringList statements =
        QString::fromLatin1(schema).trimmed().split(QLatin1Char(';'), Qt::SkipEmptyParts);
    for (const QString &statement : statements)
        ok &= query->exec(statement);
    db->endTransaction();
    return ok;
}

int DBExp::getDBVersion(DB *db)
{
    if (!db->exist(QStringLiteral("Meta")))
        return 1;
    const std::unique_ptr<QSqlQuery> query =
        db->newQuery(QStringLiteral("SELECT DBStructVer FROM Meta"));
    return query->next() ? query->value(0).toInt() : -1;
}

bool DBExp::upgradeDB(DB *db, int version)
{
    db->beginTransaction();
    bool ok = true;
    if (version == 1) {
        const std::unique_ptr<QSqlQuery> query = db->newQuery();
        ok &= query->exec(QStringLiteral("CREATE TABLE [Meta] ([DBStructVer] INTEGER);"));
        ok &= query->exec(QStringLiteral("INSERT INTO 'Meta' VALUES(2);"));
        ok &= query->exec(QStringLiteral(
            "CREATE TABLE [MorphologyImage] ([Id] INTEGER NOT NULL PRIMARY KEY, [Morphology] "
            "INTEGER NOT NULL REFERENCES [Morphology]([Id]), [Data] BLOB NOT NULL);"));
    }
    db->endTransaction();
    return ok;
}

} // namespace Planaria
