#include "browse/NaturalStringCompare.h"

#include "support/TestData.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QtTest>

#include <vector>

namespace Planaria {

/// The order of texts in which numbers count by their value.
class NaturalStringCompareTest final : public QObject
{
    Q_OBJECT

private slots:
    void cutsTextsIntoTokens_data();
    void cutsTextsIntoTokens();
    void leavesTheKindOfTheLastTokenAtTheEnd();

    void ordersTexts_data();
    void ordersTexts();
    void agreesWithTheWorkedCases_data();
    void agreesWithTheWorkedCases();
    void tellsWhichIsLess();

    void sortsACopy();
    void sortsByCaseWhereToldTo();
    void keepsTheOrderOfEqualTexts();
    void sortsNothingIntoNothing();

    void isAConsistentOrder_data();
    void isAConsistentOrder();
    void standsInACircleAmongNumbersWithoutAValue_data();
    void standsInACircleAmongNumbersWithoutAValue();
};

namespace {

int sign(int number)
{
    return static_cast<int>(number > 0) - static_cast<int>(number < 0);
}

int compared(const QString &a, const QString &b, Qt::CaseSensitivity cs = Qt::CaseInsensitive)
{
    return sign(NaturalStringCompare::naturalStringCompare(a, b, cs));
}

/// The tokens of @p text, numbers in brackets.
QStringList tokensOf(const QString &text)
{
    QStringList tokens;
    int position = 0;
    while (position < text.size()) {
        QString token;
        bool isNumber = false;
        NaturalStringCompare::ExtractToken(token, text, position, isNumber);
        tokens += isNumber ? QStringLiteral("[%1]").arg(token) : token;
    }
    return tokens;
}

} // namespace

// --- Tokens ---

void NaturalStringCompareTest::cutsTextsIntoTokens_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("tokens");
    const auto add = [](const char *text, const QStringList &tokens) {
        QTest::addRow("%s", text) << QString::fromUtf8(text) << tokens;
    };
    add("", {});
    add("worm", {"worm"});
    add("42", {"[42]"});
    add("item9b", {"item", "[9]", "b"});
    add("5.", {"[5.]"});
    add("5.x", {"[5.]", "x"});
    add("3.14", {"[3.14]"});
    add("1.2.3", {"[1.2]", ".", "[3]"});
    add("1..2", {"[1.]", ".", "[2]"});
    add(".5", {".", "[5]"});
    add("1e5", {"[1]", "e", "[5]"});
    add("-abc", {"-abc"});
    add("+abc", {"+abc"});
    add("--5", {"-", "[-5]"});
    add("-+5", {"-", "[+5]"});
    add("a-5", {"a", "[-5]"});
    add("a-b", {"a", "-b"});
    add("5-3", {"[5]", "[-3]"});
    add("-", {"-"});
    add("+", {"+"});
    add("a-", {"a", "-"});
    add("-.5", {"-.", "[5]"});
    add(" 7 ", {" ", "[7]", " "});
    add("a\u0663b", {"a", QString::fromUtf8("[\u0663]"), "b"});
}

void NaturalStringCompareTest::cutsTextsIntoTokens()
{
    QFETCH(const QString, text);
    QTEST(tokensOf(text), "tokens");
}

void NaturalStringCompareTest::leavesTheKindOfTheLastTokenAtTheEnd()
{
    QString token = QStringLiteral("before");
    int position = 2;
    bool isNumber = true;
    NaturalStringCompare::ExtractToken(token, QStringLiteral("a1"), position, isNumber);
    QCOMPARE(token, QString());
    QCOMPARE(position, 2);
    QVERIFY(isNumber);
}

// --- Comparison ---

void NaturalStringCompareTest::ordersTexts_data()
{
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("b");
    QTest::addColumn<int>("expected");
    const auto add = [](const char *what, const QString &a, const QString &b, int expected) {
        QTest::newRow(what) << a << b << expected;
    };
    add("two empty texts", "", "", 0);
    add("a null text and an empty one", QString(), "", 0);
    add("an empty text first", "", "-", -1);
    add("the one that ends first", "a", "a1", -1);
    add("cases alike", "abc", "ABC", 0);
    add("numbers by value", "item9", "item10", -1);
    add("a number before text", "10", "a", -1);
    add("text behind a number", "a", "9", 1);
    add("a number before a sign without one", "5", "-a", -1);
    add("the shorter run of text", "ab1", "abc", -1);
    add("the shorter run before a larger number", "ab9", "abc1", -1);
    add("text by its characters", "abd", "abcd", 1);
    add("leading zeros", "007", "7", 0);
    add("a decimal point", "1.0", "1", 0);
    add("a sign", "+3", "3", 0);
    add("what follows equal numbers", "007b", "7a", 1);
    add("a minus in a name", "a-5", "a-3", -1);
    add("a larger minus in a name", "a-10", "a-9", -1);
    add("decimals, no versions", "1.5", "1.10", 1);
    add("a blank in the place of a digit", "1 2", "1 10", -1);
    add("the value, not the number of digits", "0.5x", "0.25x", 1);
    add("a blank before letters", "a b", "ab", -1);
}

void NaturalStringCompareTest::ordersTexts()
{
    QFETCH(const QString, a);
    QFETCH(const QString, b);
    QFETCH(const int, expected);
    QCOMPARE(compared(a, b), expected);
    QCOMPARE(compared(b, a), -expected);
}

void NaturalStringCompareTest::agreesWithTheWorkedCases_data()
{
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("b");
    QTest::addColumn<int>("ignoringCase");
    QTest::addColumn<int>("withCase");
    const QJsonArray cases = QJsonDocument::fromJson(readTestData("natural.json")).array();
    QCOMPARE(cases.size(), 60);
    for (qsizetype i = 0; i < cases.size(); ++i) {
        const QJsonArray one = cases[i].toArray();
        QTest::addRow("case %d", static_cast<int>(i))
            << one[0].toString() << one[1].toString() << one[2].toInt() << one[3].toInt();
    }
}

void NaturalStringCompareTest::agreesWithTheWorkedCases()
{
    QFETCH(const QString, a);
    QFETCH(const QString, b);
    QTEST(compared(a, b, Qt::CaseInsensitive), "ignoringCase");
    QTEST(compared(a, b, Qt::CaseSensitive), "withCase");
}

void NaturalStringCompareTest::tellsWhichIsLess()
{
    const auto withCase = NaturalStringCompare::naturalStringCompareLessThan;
    const auto ignoringCase = NaturalStringCompare::naturalStringCaseInsensitiveCompareLessThan;
    QVERIFY(withCase("ABC", "abc"));
    QVERIFY(!withCase("abc", "ABC"));
    QVERIFY(!ignoringCase("ABC", "abc"));
    QVERIFY(!ignoringCase("abc", "ABC"));
    QVERIFY(ignoringCase("A9", "a10"));
}

// --- Sorting ---

void NaturalStringCompareTest::sortsACopy()
{
    const QStringList list = {"item10", "Item9", "b", "1", "", "item1"};
    QCOMPARE(NaturalStringCompare::naturalStringSort(list, Qt::CaseInsensitive),
             QStringList({"", "1", "b", "item1", "Item9", "item10"}));
    QCOMPARE(list.first(), QStringLiteral("item10"));
}

void NaturalStringCompareTest::sortsByCaseWhereToldTo()
{
    QCOMPARE(NaturalStringCompare::naturalStringSort({"b", "a", "B", "A"}, Qt::CaseSensitive),
             QStringList({"A", "B", "a", "b"}));
}

void NaturalStringCompareTest::keepsTheOrderOfEqualTexts()
{
    QStringList equal;
    for (int zeros = 0; zeros < 40; ++zeros)
        equal += QString((zeros * 7) % 40, u'0') + u'7';
    QCOMPARE(NaturalStringCompare::naturalStringSort(equal, Qt::CaseInsensitive), equal);
}

void NaturalStringCompareTest::sortsNothingIntoNothing()
{
    QCOMPARE(NaturalStringCompare::naturalStringSort({}, Qt::CaseSensitive), QStringList());
}

// --- Consistency ---

void NaturalStringCompareTest::isAConsistentOrder_data()
{
    QTest::addColumn<Qt::CaseSensitivity>("cs");
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 5; ++seed) {
        QTest::addRow("ignoring case, seed %u", seed) << Qt::CaseInsensitive << seed;
        QTest::addRow("with case, seed %u", seed) << Qt::CaseSensitive << seed;
    }
}

void NaturalStringCompareTest::isAConsistentOrder()
{
    QFETCH(const Qt::CaseSensitivity, cs);
    QFETCH(const quint32, seed);
    const QString alphabet = QString::fromUtf8("0012359--+.. aAbB_ñÑβ");
    QRandomGenerator random(seed);
    QStringList texts;
    for (int i = 0; i < 100; ++i) {
        QString text;
        for (int length = random.bounded(7); length > 0; --length)
            text += alphabet[random.bounded(static_cast<int>(alphabet.size()))];
        texts += text;
    }

    const auto count = static_cast<size_t>(texts.size());
    std::vector<std::vector<int>> order(count, std::vector<int>(count));
    const auto told = [&](const std::vector<size_t> &rows) {
        QStringList words;
        for (const size_t row : rows)
            words += u'"' + texts[static_cast<qsizetype>(row)] + u'"';
        return words.join(u' ').toUtf8();
    };
    for (size_t a = 0; a < count; ++a)
        for (size_t b = 0; b < count; ++b)
            order[a][b] =
                compared(texts[static_cast<qsizetype>(a)], texts[static_cast<qsizetype>(b)], cs);
    for (size_t a = 0; a < count; ++a) {
        for (size_t b = 0; b < count; ++b) {
            QVERIFY2(order[a][b] == -order[b][a], told({a, b}).constData());
            for (size_t c = 0; order[a][b] <= 0 && c < count; ++c) {
                if (order[b][c] > 0)
                    continue;
                const int expected = std::min(order[a][b], order[b][c]);
                QVERIFY2(order[a][c] == expected, told({a, b, c}).constData());
            }
        }
    }
}

void NaturalStringCompareTest::standsInACircleAmongNumbersWithoutAValue_data()
{
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("b");
    QTest::addColumn<QString>("c");
    const QString three = QString::fromUtf8("\u0663"); // Arabic-Indic
    QTest::newRow("a sign before digits of another script") << "5"
                                                            << "+9" << '+' + three;
    QTest::newRow("digits of two scripts in one number") << "06"
                                                         << "5" + three << "6";
    const QString huge = u'1' + QString(400, u'0');
    QTest::newRow("a number too large for a double") << "2"
                                                     << "10" << huge;
}

// 5 < +9 by value, +9 < +3 as text, and +3 < 5 as text again, where 3 stands for a digit that has
// no value here. In the second row the ends are equal by value.
void NaturalStringCompareTest::standsInACircleAmongNumbersWithoutAValue()
{
    QFETCH(const QString, a);
    QFETCH(const QString, b);
    QFETCH(const QString, c);
    QCOMPARE(compared(a, b), -1);
    QCOMPARE(compared(b, c), -1);
    QVERIFY(compared(a, c) >= 0);
}

} // namespace Planaria

QTEST_GUILESS_MAIN(Planaria::NaturalStringCompareTest)
#include "NaturalStringCompareTest.moc"
