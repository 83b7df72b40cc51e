#include "PlainSqlite.h"
#include "db/DB.h"
#include "db/ExperimentFactory.h"
#include "model/Morphology.h"
#include "support/TemporaryLibrary.h"

#include <QRegularExpression>
#include <QTest>

#include <sqlite3.h>

using namespace Planaria;

namespace {

struct Table
{
    const char *name;
    /// Declared type, "!" for NOT NULL, "->" for a reference to the Id of a table, "=>" for one
    /// that is checked at COMMIT only. Table constraints stand last.
    const char *columns;
};

/// In order of creation.
constexpr Table expectedTables[] = {
    {"Meta", "DBStructVer INTEGER"},
    {"Drug", "Id INTEGER! key, Name VARCHAR! unique"},
    {"Species", "Id INTEGER! key, Name VARCHAR! unique"},
    {"LineOrganType", "Id INTEGER! key, Name VAR CHAR! unique"},
    {"SpotOrganType", "Id INTEGER! key, Name VAR CHAR! unique"},
    {"Organ", "Id INTEGER! key, Region INTEGER! -> Region, VecX REAL!, VecY REAL!, "
              "SpotOrgan INTEGER -> SpotOrgan, LineOrgan INTEGER -> LineOrgan, "
              "CHECK((SpotOrgan IS NOT NULL) OR (LineOrgan IS NOT NULL))"},
    {"MorphologyAction", "Id INTEGER! key, Morphology INTEGER! -> Morphology"},
    {"ExperimentDrug", "Id INTEGER! key, Experiment INTEGER! -> Experiment, "
                       "Drug INTEGER! -> Drug, StartTime REAL, EndTime REAL"},
    {"ExperimentRNAi", "Id INTEGER! key, Experiment INTEGER! -> Experiment, RNAi INTEGER! -> RNAi"},
    {"Region", "Id INTEGER! key autoincrement, Morphology INTEGER! FK1 -> Morphology, "
               "Type INTEGER! FK2 -> RegionType"},
    {"RegionsLink", "Id INTEGER! key, FromRegion INTEGER! FK1 -> Region, "
                    "ToRegion INTEGER! FK2 -> Region, Dist REAL!, Ratio REAL!, Ang REAL!"},
    {"RegionParam", "Id INTEGER! key, Region INTEGER! FK1 -> Region, ParamInd INTEGER!, "
                    "Value REAL!"},
    {"CropActionAreaPoint", "Id INTEGER! key, CropAction INTEGER! -> CropAction, "
                            "PointInd INTEGER!, PointX REAL!, PointY REAL!"},
    {"RemoveActionAreaPoint", "Id INTEGER! key, RemoveAction INTEGER! -> RemoveAction, "
                              "PointInd INTEGER!, PointX REAL!, PointY REAL!"},
    {"SpotOrgan", "Id INTEGER! key, Type INTEGER! -> SpotOrganType, Rot REAL!"},
    {"LineOrgan", "Id INTEGER! key, Type INTEGER! -> LineOrganType, VecEnd1X REAL!, "
                  "VecEnd1Y REAL!, VecEnd2X REAL!, VecEnd2Y REAL!"},
    {"ResultSet", "Id INTEGER! key, Experiment INTEGER! -> Experiment, Num INTEGER, "
                  "RegenPeriod REAL"},
    {"RemoveAction", "Id INTEGER! key, FromAction INTEGER! => ManipulationAction"},
    {"CropAction", "Id INTEGER! key, FromAction INTEGER! => ManipulationAction"},
    {"JoinAction", "Id INTEGER! key, FromAction1 INTEGER! => ManipulationAction, "
                   "FromAction2 INTEGER! => ManipulationAction, VectX REAL!, VectY REAL!, "
                   "Rot REAL!"},
    {"Manipulation", "Id INTEGER! key, Name VARCHAR! unique, "
                     "RootAction INTEGER! => ManipulationAction"},
    {"Morphology", "Id INTEGER! key, Name VARCHAR! unique"},
    {"Publication", "Id INTEGER! key, Title VARCHAR! unique, URL VARCHAR, Year INTEGER"},
    {"RNAi", "Id INTEGER! key, Name VARCHAR! unique, BlockedMechanism VARCHAR"},
    {"Experiment", "Id INTEGER! key, Name VARCHAR! unique, Manipulation INTEGER! -> Manipulation, "
                   "Publication INTEGER! -> Publication, Species INTEGER! -> Species"},
    {"ResultantMorphology", "Id INTEGER! key, ResultSet INTEGER! -> ResultSet, "
                            "Morphology INTEGER! -> Morphology, Frequency REAL!"},
    {"RegionType", "Id INTEGER! key, Name VARCHAR! unique"},
    {"IrradiationAction", "Id INTEGER! key, FromAction INTEGER! => ManipulationAction"},
    {"IrradiationActionAreaPoint", "Id INTEGER! key, IrradiationAction INTEGER! "
                                   "-> IrradiationAction, PointInd INTEGER!, PointX REAL!, "
                                   "PointY REAL!"},
    {"ManipulationAction",
     "Id INTEGER! key, MorphologyAction INTEGER => MorphologyAction, "
     "RemoveAction INTEGER => RemoveAction, CropAction INTEGER => CropAction, "
     "JoinAction INTEGER => JoinAction, IrradiationAction INTEGER -> IrradiationAction, "
     "CHECK(( MorphologyAction IS NOT NULL ) OR ( RemoveAction IS NOT NULL ) "
     "OR ( CropAction IS NOT NULL ) OR ( JoinAction IS NOT NULL ) "
     "OR ( IrradiationAction IS NOT NULL ))"},
    {"MorphologyImage", "Id INTEGER! key, Morphology INTEGER! -> Morphology, Data BLOB!"},
};

const QStringList defaultRows{
    "Meta 2",
    "LineOrganType 1 'VNC'",
    "SpotOrganType 1 'Eye'",
    "SpotOrganType 2 'Brain'",
    "SpotOrganType 3 'Phar.'",
    "RegionType 1 'Head'",
    "RegionType 2 'Trunk'",
    "RegionType 3 'Tail'",
};

const QStringList wildTypeRows{
    "Morphology 1 'Wild type'",
    "Region 1 1 1",
    "Region 2 1 2",
    "Region 3 1 3",
    "RegionParam 1 1 0 60.0",
    "RegionParam 2 1 1 80.0",
    "RegionParam 3 1 2 60.0",
    "RegionParam 4 2 0 60.0",
    "RegionParam 5 2 1 60.0",
    "RegionParam 6 3 0 50.0",
    "RegionParam 7 3 1 80.0",
    "RegionParam 8 3 2 50.0",
    "RegionsLink 1 1 2 200.0 0.5 4.71238898038469",
    "RegionsLink 2 2 3 200.0 0.5 4.71238898038469",
    "Organ 1 1 25.98076211353316 14.999999999999998 1 NULL",
    "Organ 2 1 -25.98076211353316 14.999999999999998 2 NULL",
    "Organ 3 1 21.213203435596427 21.213203435596423 3 NULL",
    "Organ 4 1 -21.213203435596423 21.213203435596427 4 NULL",
    "Organ 5 2 0.0 0.0 5 NULL",
    "Organ 6 2 43.0 0.0 NULL 1",
    "Organ 7 2 -43.0 0.0 NULL 2",
    "SpotOrgan 1 2 3.4033920413889422",
    "SpotOrgan 2 2 6.021385919380437",
    "SpotOrgan 3 1 3.141592653589793",
    "SpotOrgan 4 1 0.0",
    "SpotOrgan 5 3 1.5707963267948966",
    "LineOrgan 1 1 -8.0 176.5 -36.0 -250.0",
    "LineOrgan 2 1 8.0 176.5 36.0 -250.0",
    "sqlite_sequence 'Region' 3",
};

/// The columns and constraints of a table as the text of its CREATE statement has them.
QStringList definitions(PlainSqlite &file, const QString &table)
{
    const QString sql = file.texts(QStringLiteral("SELECT sql FROM sqlite_master "
                                                  "WHERE type = 'table' AND name = '%1'")
                                       .arg(table))
                            .first();
    const qsizetype from = sql.indexOf('(') + 1;
    QStringList all{QString()};
    int depth = 0;
    for (const QChar c : sql.mid(from, sql.lastIndexOf(')') - from)) {
        depth += (c == '(' ? 1 : 0) - (c == ')' ? 1 : 0);
        if (c == ',' && depth == 0)
            all += QString();
        else
            all.last() += c;
    }
    for (QString &definition : all)
        definition = definition.trimmed();
    return all;
}

/// What the CREATE statement alone tells of a column: AUTOINCREMENT and a constraint's name.
QString hiddenTraits(PlainSqlite &file, const QString &table, const QString &column)
{
    static const QRegularExpression constraint(R"(CONSTRAINT \[(\w+)\])");
    for (const QString &definition : definitions(file, table)) {
        if (!definition.startsWith(QStringLiteral("[%1] ").arg(column)))
            continue;
        const QString name = constraint.match(definition).captured(1);
        return (definition.contains(" AUTOINCREMENT") ? QStringLiteral(" autoincrement")
                                                      : QString()) +
               (name.isEmpty() ? QString() : QStringLiteral(" ") + name);
    }
    return QStringLiteral(" (not found in the statement)");
}

/// Tries when a reference to nowhere is refused. The tables must hold rows.
QString arrowOf(PlainSqlite &file, const QString &table, const QString &column)
{
    file.run("BEGIN");
    const int update = file.run(QStringLiteral("UPDATE %1 SET %2 = 999").arg(table, column));
    const int commit = file.run("COMMIT");
    file.run("ROLLBACK");
    if (update == SQLITE_CONSTRAINT_FOREIGNKEY && commit == SQLITE_OK)
        return QStringLiteral("->");
    if (update == SQLITE_OK && commit == SQLITE_CONSTRAINT_FOREIGNKEY)
        return QStringLiteral("=>");
    return QStringLiteral("(not enforced)");
}

QString references(PlainSqlite &file, const QString &table, const QString &column)
{
    QString text;
    for (const QVariantList &key :
         file.rows(QStringLiteral("SELECT \"table\", \"to\" || on_update || on_delete || match "
                                  "FROM pragma_foreign_key_list('%1') WHERE \"from\" = '%2'")
                       .arg(table, column))) {
        text += QStringLiteral(" %1 %2").arg(arrowOf(file, table, column), key[0].toString());
        const QString rest = key[1].toString();
        if (rest != QStringLiteral("IdNO ACTIONNO ACTIONNONE"))
            text += QStringLiteral(" by ") + rest;
    }
    return text;
}

/// The columns that an index makes unique, each by itself and by its exact text. Any other index
/// is told as it is.
QStringList uniqueColumns(PlainSqlite &file, const QString &table)
{
    return file.texts(
        QStringLiteral("SELECT group_concat(x.name || CASE WHEN l.\"unique\" AND l.origin = 'u' "
                       "AND NOT l.partial AND x.coll = 'BINARY' AND NOT x.\"desc\" THEN '' "
                       "ELSE ' by the index ' || l.name END, ' and ') "
                       "FROM pragma_index_list('%1') l, pragma_index_xinfo(l.name) x "
                       "WHERE x.key GROUP BY l.name")
            .arg(table));
}

/// In the words of expectedTables.
QString described(PlainSqlite &file, const QString &table)
{
    QStringList parts;
    QStringList unique = uniqueColumns(file, table);
    for (const QVariantList &column :
         file.rows(QStringLiteral("SELECT name, type, \"notnull\", dflt_value, pk, hidden "
                                  "FROM pragma_table_xinfo('%1') ORDER BY cid")
                       .arg(table))) {
        const QString name = column[0].toString();
        QString text = QStringLiteral("%1 %2").arg(name, column[1].toString());
        text += column[2].toBool() ? "!" : "";
        text += column[3].isNull() ? "" : " with a default";
        text += column[4].toBool() ? " key" : "";
        text += column[5].toBool() ? " hidden" : "";
        text += unique.removeAll(name) > 0 ? " unique" : "";
        text += hiddenTraits(file, table, name) + references(file, table, name);
        parts += text;
    }
    for (const QString &definition : definitions(file, table)) {
        if (!definition.startsWith('['))
            parts += definition;
    }
    return (parts + unique).join(", ");
}

} // namespace

/// Looks at a new file from outside, with the plain SQLite library.
class SchemaTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void createsTheTablesInTheirOrder();
    void declaresEachTable_data();
    void declaresEachTable();
    void holdsNothingButPlainTablesAndTheirUniqueIndexes();
    void keepsTheRowIdAsTheId();
    void holdsTheDefaultRowsAndNoOther();
    void storesTheWildTypeToTheLastDigit();
    void isSound();

private:
    std::unique_ptr<TemporaryLibrary> library;
    std::unique_ptr<PlainSqlite> file;
};

void SchemaTest::init()
{
    library = std::make_unique<TemporaryLibrary>();
    file = std::make_unique<PlainSqlite>(library->fileName());
}

void SchemaTest::cleanup()
{
    QCOMPARE(library->brokenReferences(), QStringList());
    file.reset();
    library.reset();
}

void SchemaTest::createsTheTablesInTheirOrder()
{
    QStringList expected;
    for (const Table &table : expectedTables)
        expected += table.name;

    QCOMPARE(file->tables(), expected);
    QCOMPARE(file->tables().size(), 31);
}

void SchemaTest::declaresEachTable_data()
{
    QTest::addColumn<QString>("columns");
    for (const Table &table : expectedTables)
        QTest::newRow(table.name) << QString(table.columns);
}

void SchemaTest::declaresEachTable()
{
    QFETCH(const QString, columns);
    file->fillEmptyTables();
    QCOMPARE(file->run("PRAGMA foreign_keys = true"), SQLITE_OK);
    QCOMPARE(described(*file, QTest::currentDataTag()), columns);
}

void SchemaTest::holdsNothingButPlainTablesAndTheirUniqueIndexes()
{
    QCOMPARE(file->texts("SELECT name FROM sqlite_master WHERE type = 'table' "
                         "AND name LIKE 'sqlite%'"),
             QStringList("sqlite_sequence"));
    QCOMPARE(file->texts("SELECT type || ' ' || name FROM sqlite_master WHERE type <> 'table' "
                         "AND (type <> 'index' OR sql IS NOT NULL)"),
             QStringList());
    QCOMPARE(file->texts("SELECT count(*) FROM sqlite_master WHERE type = 'index'"),
             QStringList("10"));
    QCOMPARE(file->texts("SELECT name FROM pragma_table_list "
                         "WHERE schema = 'main' AND (wr OR strict OR type <> 'table')"),
             QStringList());
}

void SchemaTest::keepsTheRowIdAsTheId()
{
    file->fillEmptyTables();
    for (const QString &table : file->tables()) {
        if (table == "Meta")
            continue;
        QCOMPARE(file->run(QStringLiteral("UPDATE %1 SET rowid = rowid + 10").arg(table)),
                 SQLITE_OK);
        QCOMPARE(file->texts(QStringLiteral("SELECT min(Id) FROM %1").arg(table)),
                 QStringList("11"));
        QCOMPARE(file->run(QStringLiteral("UPDATE %1 SET rowid = rowid - 10").arg(table)),
                 SQLITE_OK);
    }
}

void SchemaTest::holdsTheDefaultRowsAndNoOther()
{
    QCOMPARE(file->dump(file->tables() + QStringList("sqlite_sequence")), defaultRows);
}

void SchemaTest::storesTheWildTypeToTheLastDigit()
{
    const auto worm = ExperimentFactory::instance(nullptr)->createWildMorphology();
    QCOMPARE(worm->submit(library->db()), 1);

    QStringList rows = file->dump(file->tables() + QStringList("sqlite_sequence"));
    for (const QString &row : defaultRows)
        QVERIFY2(rows.removeOne(row), qPrintable(row));
    QStringList expected = wildTypeRows;
    rows.sort();
    expected.sort();
    QCOMPARE(rows, expected);
}

void SchemaTest::isSound()
{
    QCOMPARE(file->texts("PRAGMA integrity_check"), QStringList("ok"));
    QCOMPARE(file->texts("PRAGMA encoding"), QStringList("UTF-8"));
}

QTEST_GUILESS_MAIN(SchemaTest)
#include "SchemaTest.moc"
