#include "browse/SearchStatement.h"

#include "support/TemporaryLibrary.h"
#include "support/TestData.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSqlError>
#include <QtTest>

namespace Planaria {

/// What the search tab offers, and the text that it makes of a question.
class SearchStatementTest final : public QObject
{
    Q_OBJECT

private slots:
    void offersSevenTypesAndFourOperators();
    void offersTheFieldsOfEachType_data();
    void offersTheFieldsOfEachType();
    void hasWordsForTheElementsOfEachType();

    void comparesByEachOperator_data();
    void comparesByEachOperator();
    void knowsWhatIsANumber_data();
    void knowsWhatIsANumber();

    void wordsEachQuestion_data();
    void wordsEachQuestion();
    void bindsTheValueOnlyWhereThereIsAPlaceholder_data();
    void bindsTheValueOnlyWhereThereIsAPlaceholder();
    void takesANullValueForAnEmptyOne();
    void knowsNoOtherFields_data();
    void knowsNoOtherFields();
    void startsWithNoQuestion();

private:
    TemporaryLibrary library;
};

namespace {

/// The statements of all 66 fields, with {OP} in the place of the comparison.
QJsonArray statements()
{
    return QJsonDocument::fromJson(readTestData("search_statements.json")).array();
}

} // namespace

// --- What is offered ---

void SearchStatementTest::offersSevenTypesAndFourOperators()
{
    QCOMPARE(SearchStatement::typeLabels(),
             QStringList({"Experiments", "Manipulations", "Morphologies", "Drugs", "RNAi",
                          "Species", "Publications"}));
    QCOMPARE(SearchStatement::operatorLabels(),
             QStringList({"containing", "equal to", "less than", "greater than"}));
}

void SearchStatementTest::offersTheFieldsOfEachType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QStringList>("labels");
    QTest::newRow("before the first") << -1 << QStringList();
    QTest::newRow("experiments") << 0
                                 << QStringList({"Name", "Manipulation name",
                                                 "Results morphology name", "Drug name",
                                                 "RNAi name", "Species name", "Publication title",
                                                 "Publication year"});
    QTest::newRow("manipulations")
        << 1
        << QStringList({"Name", "Experiment name", "Morphology name", "Results morphology name",
                        "Drug name", "RNAi name", "Species name", "Publication title",
                        "Publication year"});
    QTest::newRow("morphologies")
        << 2
        << QStringList({"Name", "Num. regions", "Num. links", "Num. heads", "Num. trunks",
                        "Num. tails", "Num. eyes", "Num. brain lobes", "Num. pharynxes",
                        "Num. nerve cords", "Experiment name", "Manipulation name", "Drug name",
                        "RNAi name", "Species name", "Publication title", "Publication year"});
    QTest::newRow("drugs") << 3
                           << QStringList({"Name", "Experiment name", "Manipulation name",
                                           "Morphology name", "RNAi name", "Species name",
                                           "Publication title", "Publication year"});
    QTest::newRow("RNAi") << 4
                          << QStringList({"Name", "Experiment name", "Manipulation name",
                                          "Morphology name", "Drug name", "Species name",
                                          "Publication title", "Publication year"});
    QTest::newRow("species") << 5
                             << QStringList({"Name", "Experiment name", "Manipulation name",
                                             "Morphology name", "Drug name", "RNAi name",
                                             "Publication title", "Publication year"});
    QTest::newRow("publications") << 6
                                  << QStringList({"Title", "Year", "Experiment name",
                                                  "Manipulation name", "Morphology name",
                                                  "Drug name", "RNAi name", "Species name"});
    QTest::newRow("behind the last") << 7 << QStringList();
}

void SearchStatementTest::offersTheFieldsOfEachType()
{
    QFETCH(const int, type);
    QTEST(SearchStatement::fieldLabels(type), "labels");
}

void SearchStatementTest::hasWordsForTheElementsOfEachType()
{
    QStringList words;
    for (int type = -1; type <= 7; ++type)
        words += SearchStatement::singular(type) + u'/' + SearchStatement::plural(type);
    QCOMPARE(words, QStringList({"/", "experiment/experiments", "manipulation/manipulations",
                                 "morphology/morphologies", "drug/drugs", "RNAi/RNAi",
                                 "species/species", "publication/publications", "/"}));
}

// --- The comparison ---

void SearchStatementTest::comparesByEachOperator_data()
{
    QTest::addColumn<int>("operatorIndex");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("text");
    const auto add = [](const char *what, int index, const char *value, const char *text) {
        QTest::newRow(what) << index << QString(value) << QString(text);
    };
    add("containing a text", 0, "abc", "LIKE '%' || ? || '%'");
    add("containing a number", 0, "5", "LIKE '%' || ? || '%'");
    add("equal to a text", 1, "abc", "LIKE ?");
    add("equal to a number", 1, "5", "LIKE ?");
    add("less than a text", 2, "abc", "< ?");
    add("less than a number", 2, "5", "< 5");
    add("greater than a text", 3, "abc", "> ?");
    add("greater than a number", 3, "-0.50", "> -0.50");
    add("none before the first", -1, "5", "");
    add("none behind the last", 4, "5", "");
}

void SearchStatementTest::comparesByEachOperator()
{
    QFETCH(const int, operatorIndex);
    QFETCH(const QString, value);
    QTEST(SearchStatement::buildOperator(operatorIndex, value), "text");
}

void SearchStatementTest::knowsWhatIsANumber_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("text");
    for (const char *number : {"5", "02", ".5", "5.", "-1.5e2", "+3", "1985"})
        QTest::newRow(number) << QString(number) << QString(number);
    for (const char *text : {"", "abc", "5a", "1,5", "0x10", "1 2", "--5", "1; DROP TABLE Drug"})
        QTest::newRow(*text != '\0' ? text : "nothing") << QString(text) << QString("?");
}

void SearchStatementTest::knowsWhatIsANumber()
{
    QFETCH(const QString, value);
    QTEST(SearchStatement::buildBindOrNumberEdit(value), "text");
}

// --- The statement ---

void SearchStatementTest::wordsEachQuestion_data()
{
    QTest::addColumn<SearchQuestion>("question");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("text");
    QCOMPARE(statements().size(), 66);
    const QList<QPair<int, QString>> comparisons = {{0, "5"},   {1, "abc"}, {2, "5"},
                                                    {2, "abc"}, {3, "5"},   {3, "abc"}};
    for (const auto &entry : statements()) {
        const QJsonObject field = entry.toObject();
        const int type = field["type"].toInt();
        const int index = field["field"].toInt();
        for (const auto &[comparison, value] : comparisons) {
            const QString op =
                QStringList{"LIKE '%' || ? || '%'", "LIKE ?", "< ", "> "}[comparison];
            const QString bound = comparison < 2 ? "" : (value == "5" ? "5" : "?");
            const QString label = field["label"].toString();
            QTest::addRow("%d %s %d %s", type, qUtf8Printable(label), comparison,
                          qUtf8Printable(value))
                << SearchQuestion{type, index, comparison, value} << label
                << field["statement"].toString().replace("{OP}", op + bound);
        }
    }
}

void SearchStatementTest::wordsEachQuestion()
{
    QFETCH(const SearchQuestion, question);
    QFETCH(const QString, label);
    const SearchStatement statement(question, library.db());
    QCOMPARE(SearchStatement::fieldLabels(question.typeIndex).value(question.fieldIndex), label);
    QVERIFY(statement.isKnown());
    QTEST(statement.text(), "text");
    QCOMPARE(statement.value(), question.value);
    QCOMPARE(statement.bindsValue(), statement.text().count(u'?') == 1);
    QVERIFY(!statement.newModel(library.db())->lastError().isValid());
}

void SearchStatementTest::bindsTheValueOnlyWhereThereIsAPlaceholder_data()
{
    QTest::addColumn<SearchQuestion>("question");
    QTest::addColumn<QString>("end");
    QTest::addColumn<bool>("binds");
    QTest::newRow("a number of eyes") << SearchQuestion{2, 6, 2, "5"} << "[Num eyes] < 5" << false;
    QTest::newRow("a text as a year")
        << SearchQuestion{0, 7, 2, "abc"} << "Publication.Year < ?" << true;
    QTest::newRow("a number to contain")
        << SearchQuestion{0, 0, 0, "5"} << "LIKE '%' || ? || '%'" << true;
    QTest::newRow("no manipulation of the name")
        << SearchQuestion{2, 11, 0, "a"} << "1 = 0" << false;
    QTest::newRow("a question mark that nothing has")
        << SearchQuestion{2, 11, 0, "?"} << "1 = 0" << false;
}

void SearchStatementTest::bindsTheValueOnlyWhereThereIsAPlaceholder()
{
    QFETCH(const SearchQuestion, question);
    QFETCH(const QString, end);
    const SearchStatement statement(question, library.db());
    QVERIFY2(statement.text().endsWith(end), qUtf8Printable(statement.text()));
    QTEST(statement.bindsValue(), "binds");
}

void SearchStatementTest::takesANullValueForAnEmptyOne()
{
    library.run("INSERT INTO Drug (Name) VALUES('octanol')");
    const SearchStatement statement({3, 0, 0, QString()}, library.db());
    QVERIFY(!statement.value().isNull());
    QCOMPARE(statement.newModel(library.db())->rowCount(), 1);
    library.run("DELETE FROM Drug");
}

void SearchStatementTest::knowsNoOtherFields_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("field");
    QTest::newRow("no field of the first type") << 0 << -1;
    QTest::newRow("no type before the first") << -1 << 0;
    QTest::newRow("no type behind the last") << 7 << 0;
    for (int type = 0; type < 7; ++type)
        QTest::addRow("behind the last field of type %d", type)
            << type << static_cast<int>(SearchStatement::fieldLabels(type).size());
}

void SearchStatementTest::knowsNoOtherFields()
{
    QFETCH(const int, type);
    QFETCH(const int, field);
    const SearchStatement statement({type, field, 0, "a"}, library.db());
    QVERIFY(!statement.isKnown());
    QCOMPARE(statement.text(), QString());
}

void SearchStatementTest::startsWithNoQuestion()
{
    const SearchStatement statement;
    QVERIFY(!statement.isKnown());
    QVERIFY(!statement.bindsValue());
}

} // namespace Planaria

QTEST_GUILESS_MAIN(Planaria::SearchStatementTest)
#include "SearchStatementTest.moc"
