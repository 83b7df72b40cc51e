#include "ActionTrees.h"
#include "PlainSearch.h"
#include "StepwiseWalks.h"
#include "browse/SearchStatement.h"
#include "support/TestData.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSqlRecord>
#include <QtTest>

#include <algorithm>

namespace Planaria {

/// The rows that answer the questions of the search tab.
class SearchAnswersTest final : public QObject
{
    Q_OBJECT

private slots:
    void answersTheWorkedQuestions_data();
    void answersTheWorkedQuestions();
    void agreesWithAPlainSearch_data();
    void agreesWithAPlainSearch();

    // Rows
    void takesAPercentSignForAnyTextInAnyCase();
    void listsAllDrugsOfEachExperimentForAnEmptyValue();
    void showsTheCommaInAName();
    void showsACommaInThePlaceOfItsOwnMark();
    void listsEachMatchOnceInOrder();
    void showsARowForEachMatchOfAJoinedColumn();
    void countsNoPartsOfAMorphologyWithoutRegions();
    void countsNoOrgansAsZero();

    // Action trees
    void agreesWithStepwiseWalks_data();
    void agreesWithStepwiseWalks();
    void asksForNothingWhereNoManipulationMatches();
    void asksForNothingFromManipulationsWhateverTheMorphology_data();
    void asksForNothingFromManipulationsWhateverTheMorphology();
    void writesManyManipulationsInOneCompound();
    void groupsMoreThanACompoundTakes();
    void answersNothingForANameWithAQuote();
    void answersNothingForANameWithAQuestionMark();
};

namespace {

QStringList rowsOf(const QSqlQueryModel &model)
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model.columnCount(); ++column)
            cells += model.index(row, column).data().toString();
        rows += cells.join(" | ");
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

QStringList answer(TemporaryLibrary *library, const SearchQuestion &question)
{
    return rowsOf(*SearchStatement(question, library->db()).newModel(library->db()));
}

QStringList columnsOf(const QSqlQueryModel &model)
{
    QStringList names;
    for (int column = 0; column < model.columnCount(); ++column)
        names += model.headerData(column, Qt::Horizontal).toString();
    return names;
}

QStringList texts(const QJsonArray &array)
{
    QStringList result;
    for (const auto &value : array)
        result += value.toVariant().toString();
    return result;
}

QStringList rowsOf(const QJsonArray &array)
{
    QStringList rows;
    for (const auto &row : array)
        rows += texts(row.toArray()).join(" | ");
    std::sort(rows.begin(), rows.end());
    return rows;
}

/// The terms between @p head and @p tail of a statement, "id: names", in order.
QStringList terms(const QString &statement, const QString &head, const QString &tail)
{
    QStringList result;
    const QString middle = statement.mid(head.size(), statement.size() - head.size() - tail.size());
    for (QString term : middle.split(" UNION SELECT ")) {
        static const QRegularExpression alias(" as '[A-Za-z]+'");
        term.remove(alias);
        result += term.replace(", '", ": ").chopped(1);
    }
    std::sort(result.begin(), result.end());
    return result;
}

/// Experiment 1 to @p count, with one manipulation, publication and species for all.
void addExperiments(TemporaryLibrary *library, int count)
{
    ActionTrees trees(library);
    trees.cutOf(trees.morphology("Worm"), "Cut");
    library->run("INSERT INTO Publication (Title, Year) VALUES('Paper', 1999)");
    library->run("INSERT INTO Species (Name) VALUES('Planarian')");
    for (int i = 1; i <= count; ++i)
        library->run(
            QStringLiteral("INSERT INTO Experiment VALUES(%1, 'Experiment %1', 1, 1, 1)").arg(i));
}

void addDrug(TemporaryLibrary *library, const QString &name, const QList<int> &experiments)
{
    const int drug = library->db()->insertRow("Drug", {{"Name", name}}, false);
    for (const int experiment : experiments)
        library->run(QStringLiteral("INSERT INTO ExperimentDrug (Experiment, Drug) VALUES(%1, %2)")
                         .arg(experiment)
                         .arg(drug));
}

// Of a statement for the morphologies by their manipulations.
const QString unionHead = "SELECT Morphology.Id, Morphology.Name AS Morphology, T.ManipulationName "
                          "AS 'Manipulation' FROM Morphology INNER JOIN (SELECT ";
const QString unionTail = ") AS T ON Morphology.Id = T.MorphologyId "
                          "GROUP BY Morphology.Id, T.ManipulationName";

constexpr int drugOfExperiment = 3;
constexpr int manipulationOfMorphology = 11;

} // namespace

void SearchAnswersTest::answersTheWorkedQuestions_data()
{
    QTest::addColumn<QJsonObject>("worked");
    const QJsonArray all = QJsonDocument::fromJson(readTestData("searches.json")).array();
    QCOMPARE(all.size(), 70);
    for (const auto &worked : all) {
        const QJsonObject object = worked.toObject();
        QTest::addRow("%s %s", qUtf8Printable(object["says"].toString()),
                      qUtf8Printable(object["question"].toArray()[3].toString()))
            << object;
    }
}

void SearchAnswersTest::answersTheWorkedQuestions()
{
    QFETCH(const QJsonObject, worked);
    TemporaryLibrary library("library.edb");
    const QJsonArray asked = worked["question"].toArray();
    const SearchStatement statement(
        {asked[0].toInt(), asked[1].toInt(), asked[2].toInt(), asked[3].toString()}, library.db());

    if (worked.contains("entries")) {
        const QString head = worked["head"].toString();
        const QString tail = worked["tail"].toString();
        QVERIFY(statement.text().startsWith(head));
        QVERIFY(statement.text().endsWith(tail));
        QCOMPARE(terms(statement.text(), head, tail),
                 terms(worked["statement"].toString(), head, tail));
    } else {
        QCOMPARE(statement.text(), worked["statement"].toString());
    }
    QCOMPARE(statement.bindsValue(), !worked["bound"].isNull());
    if (statement.bindsValue())
        QCOMPARE(statement.value(), worked["bound"].toString());

    const auto model = statement.newModel(library.db());
    QCOMPARE(columnsOf(*model), texts(worked["columns"].toArray()));
    QCOMPARE(rowsOf(*model), rowsOf(worked["rows"].toArray()));
}

void SearchAnswersTest::agreesWithAPlainSearch_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("field");
    for (int type = 0; type < 7; ++type) {
        const QStringList fields = SearchStatement::fieldLabels(type);
        for (int field = 0; field < fields.size(); ++field)
            if (!PlainSearch::isAboutActionTrees({type, field, 0, ""}))
                QTest::addRow("%s of %s", qUtf8Printable(fields[field]),
                              qUtf8Printable(SearchStatement::plural(type)))
                    << type << field;
    }
}

void SearchAnswersTest::agreesWithAPlainSearch()
{
    QFETCH(const int, type);
    QFETCH(const int, field);
    TemporaryLibrary library("library.edb");
    const PlainSearch plain(library.db());
    for (int op = 0; op < 4; ++op) {
        for (const char *value :
             {"", "%", "2", "1950", "e", "S%", "_o%", "Series M", "Tail", "~"}) {
            const SearchQuestion question{type, field, op, value};
            QStringList expected = plain.rows(question);
            std::sort(expected.begin(), expected.end());
            const QStringList found = answer(&library, question);
            QVERIFY2(found == expected,
                     qUtf8Printable(QStringLiteral("%1 \"%2\":\n%3\n--\n%4")
                                        .arg(SearchStatement::operatorLabels()[op], value,
                                             found.join('\n'), expected.join('\n'))));
        }
    }
}

// --- Rows ---

void SearchAnswersTest::takesAPercentSignForAnyTextInAnyCase()
{
    TemporaryLibrary library;
    for (const char *name : {"Butanol", "benzene", "Carbon", "ab"})
        addDrug(&library, name, {});
    QCOMPARE(answer(&library, {3, 0, 1, "b%"}), QStringList({"1 | Butanol", "2 | benzene"}));
}

void SearchAnswersTest::listsAllDrugsOfEachExperimentForAnEmptyValue()
{
    TemporaryLibrary library;
    addExperiments(&library, 3);
    addDrug(&library, "octanol", {1, 3});
    addDrug(&library, "heptanol", {1});
    const auto model =
        SearchStatement({0, drugOfExperiment, 0, ""}, library.db()).newModel(library.db());
    QCOMPARE(columnsOf(*model), QStringList({"ExperimentId", "Experiment", "Drug names"}));
    QCOMPARE(rowsOf(*model),
             QStringList({"1 | Experiment 1 | heptanol; octanol", "3 | Experiment 3 | octanol"}));
}

void SearchAnswersTest::showsTheCommaInAName()
{
    TemporaryLibrary library;
    addExperiments(&library, 1);
    addDrug(&library, "1,2-diol, pure", {1});
    addDrug(&library, "ethanol", {1});
    QCOMPARE(answer(&library, {0, drugOfExperiment, 0, ""}),
             QStringList({"1 | Experiment 1 | 1,2-diol, pure; ethanol"}));
}

void SearchAnswersTest::showsACommaInThePlaceOfItsOwnMark()
{
    TemporaryLibrary library;
    addExperiments(&library, 1);
    addDrug(&library, "a xYz b", {1});
    QCOMPARE(answer(&library, {0, drugOfExperiment, 0, ""}),
             QStringList({"1 | Experiment 1 | a , b"}));
}

void SearchAnswersTest::listsEachMatchOnceInOrder()
{
    TemporaryLibrary library;
    addExperiments(&library, 1);
    for (const char *name : {"c", "a", "b"})
        addDrug(&library, name, {1, 1});
    QCOMPARE(answer(&library, {0, drugOfExperiment, 0, ""}),
             QStringList({"1 | Experiment 1 | a; b; c"}));
    QCOMPARE(answer(&library, {0, drugOfExperiment, 2, "c"}),
             QStringList({"1 | Experiment 1 | a; b"}));
}

void SearchAnswersTest::showsARowForEachMatchOfAJoinedColumn()
{
    TemporaryLibrary library;
    addExperiments(&library, 2);
    constexpr int experimentOfManipulation = 1;
    constexpr int experimentOfSpecies = 1;
    QCOMPARE(answer(&library, {1, experimentOfManipulation, 0, "exp"}),
             QStringList({"1 | Cut | Experiment 1", "1 | Cut | Experiment 2"}));
    QCOMPARE(answer(&library, {5, experimentOfSpecies, 0, "exp"}),
             QStringList({"1 | Planarian | Experiment 1; Experiment 2"}));
}

void SearchAnswersTest::countsNoPartsOfAMorphologyWithoutRegions()
{
    TemporaryLibrary library;
    library.run("INSERT INTO Morphology (Name) VALUES('Nothing')");
    for (int field = 1; field <= 9; ++field)
        QCOMPARE(answer(&library, {2, field, 2, "5"}), QStringList());
}

void SearchAnswersTest::countsNoOrgansAsZero()
{
    TemporaryLibrary library;
    library.run("INSERT INTO Morphology (Name) VALUES('Trunk')");
    library.run("INSERT INTO Region (Morphology, Type) VALUES(1, 2)");
    QStringList found;
    for (int field = 1; field <= 9; ++field)
        found += QString::number(field) + ": " + answer(&library, {2, field, 1, "0"}).join("");
    // Neither a region nor a link is counted as none, since one has to be there to be counted.
    QCOMPARE(found, QStringList({"1: ", "2: ", "3: 1 | Trunk | 0", "4: ", "5: 1 | Trunk | 0",
                                 "6: 1 | Trunk | 0", "7: 1 | Trunk | 0", "8: 1 | Trunk | 0",
                                 "9: 1 | Trunk | 0"}));
}

// --- Action trees ---

void SearchAnswersTest::agreesWithStepwiseWalks_data()
{
    QTest::addColumn<int>("operatorIndex");
    QTest::addColumn<QString>("comparison");
    QTest::addColumn<QString>("value");
    const auto add = [](const char *name, int op, const char *comparison, const char *value) {
        QTest::newRow(name) << op << QString(comparison) << QString(value);
    };
    add("equal to a name", 1, "LIKE ?", "Double cut");
    add("equal to a pattern", 1, "LIKE ?", "%cut%");
    add("less than a text", 2, "< ?", "I");
    add("greater than a text", 3, "> ?", "I");
}

void SearchAnswersTest::agreesWithStepwiseWalks()
{
    QFETCH(const int, operatorIndex);
    QFETCH(const QString, comparison);
    QFETCH(const QString, value);
    TemporaryLibrary library("library.edb");
    const QHash<int, QString> walked =
        StepwiseWalks(library.db(), comparison, value).morphologiesWithManipulationName();
    QVERIFY(!walked.isEmpty());
    QStringList rows;
    QStringList entries;
    for (auto found = walked.cbegin(); found != walked.cend(); ++found) {
        const QString id = QString::number(found.key());
        const QString worm =
            library.value("SELECT Name FROM Morphology WHERE Id = " + id).toString();
        rows += QStringList({id, worm, found.value()}).join(" | ");
        entries += id + ": " + found.value();
    }
    std::sort(rows.begin(), rows.end());
    std::sort(entries.begin(), entries.end());
    const SearchStatement statement({2, manipulationOfMorphology, operatorIndex, value},
                                    library.db());
    QVERIFY(statement.text().startsWith(unionHead));
    QVERIFY(statement.text().endsWith(unionTail));
    QCOMPARE(terms(statement.text(), unionHead, unionTail), entries);
    QCOMPARE(rowsOf(*statement.newModel(library.db())), rows);
}

void SearchAnswersTest::asksForNothingWhereNoManipulationMatches()
{
    TemporaryLibrary library("library.edb");
    const SearchStatement statement({2, manipulationOfMorphology, 1, "none"}, library.db());
    QCOMPARE(statement.text(), QStringLiteral("SELECT Morphology.Id, Morphology.Name AS Morphology "
                                              "FROM Morphology WHERE 1 = 0"));
}

void SearchAnswersTest::asksForNothingFromManipulationsWhateverTheMorphology_data()
{
    QTest::addColumn<int>("operatorIndex");
    QTest::addColumn<QString>("value");
    QTest::newRow("containing nothing") << 0 << "";
    QTest::newRow("equal to") << 1 << "Wild type";
    QTest::newRow("less than a text") << 2 << "zzz";
    QTest::newRow("greater than a number") << 3 << "0";
}

void SearchAnswersTest::asksForNothingFromManipulationsWhateverTheMorphology()
{
    QFETCH(const int, operatorIndex);
    QFETCH(const QString, value);
    TemporaryLibrary library("library.edb");
    const SearchStatement statement({1, 2, operatorIndex, value}, library.db());
    QCOMPARE(statement.text(), QStringLiteral("SELECT Manipulation.Id, Manipulation.Name AS "
                                              "Manipulation FROM Manipulation WHERE 1 = 0"));
    QCOMPARE(statement.newModel(library.db())->rowCount(), 0);
}

namespace {

/// Morphologies "Worm 1" to "Worm count", each with the manipulation "Cut" of its number.
void addCuts(TemporaryLibrary *library, int count)
{
    ActionTrees trees(library);
    library->run("BEGIN");
    for (int i = 1; i <= count; ++i)
        trees.cutOf(trees.morphology(QStringLiteral("Worm %1").arg(i)),
                    QStringLiteral("Cut %1").arg(i));
    library->run("COMMIT");
}

QStringList cuts(int count)
{
    QStringList rows;
    for (int i = 1; i <= count; ++i)
        rows += QStringLiteral("%1 | Worm %1 | Cut %1").arg(i);
    std::sort(rows.begin(), rows.end());
    return rows;
}

} // namespace

void SearchAnswersTest::writesManyManipulationsInOneCompound()
{
    TemporaryLibrary library;
    addCuts(&library, 500);
    const SearchStatement statement({2, manipulationOfMorphology, 0, "cut"}, library.db());
    QVERIFY(statement.text().startsWith(unionHead));
    QVERIFY(statement.text().endsWith(unionTail));
    QStringList expected;
    for (int i = 1; i <= 500; ++i)
        expected += QStringLiteral("%1: Cut %1").arg(i);
    std::sort(expected.begin(), expected.end());
    QCOMPARE(terms(statement.text(), unionHead, unionTail), expected);
    QCOMPARE(statement.text().count(" as 'MorphologyId', 'Cut "), 1);
    QCOMPARE(statement.text().count("' as 'ManipulationName'"), 1);
    QCOMPARE(rowsOf(*statement.newModel(library.db())), cuts(500));
}

void SearchAnswersTest::groupsMoreThanACompoundTakes()
{
    TemporaryLibrary library;
    addCuts(&library, 1203);
    const auto model = SearchStatement({2, manipulationOfMorphology, 0, "cut"}, library.db())
                           .newModel(library.db());
    QCOMPARE(columnsOf(*model), QStringList({"Id", "Morphology", "Manipulation"}));
    QCOMPARE(rowsOf(*model), cuts(1203));
    QCOMPARE(answer(&library, {2, manipulationOfMorphology, 2, "Cut 55"}).size(),
             1203 - 5 - 50 - 4 * 111);
}

void SearchAnswersTest::answersNothingForANameWithAQuote()
{
    TemporaryLibrary library;
    ActionTrees trees(&library);
    trees.cutOf(trees.morphology("Worm"), "Smith's cut");
    QCOMPARE(answer(&library, {2, manipulationOfMorphology, 0, "cut"}), QStringList());
    QCOMPARE(library.count("Morphology"), 1);
}

void SearchAnswersTest::answersNothingForANameWithAQuestionMark()
{
    TemporaryLibrary library;
    ActionTrees trees(&library);
    trees.cutOf(trees.morphology("Worm"), "Cut?");
    const SearchStatement statement({2, manipulationOfMorphology, 0, "cut"}, library.db());
    QVERIFY(statement.bindsValue());
    QCOMPARE(rowsOf(*statement.newModel(library.db())), QStringList());
}

} // namespace Planaria

QTEST_GUILESS_MAIN(Planaria::SearchAnswersTest)
#include "SearchAnswersTest.moc"
