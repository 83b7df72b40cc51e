#include "model/SmallExperiments.h"
#include "support/TemporaryLibrary.h"

#include <QDate>
#include <QTest>

#include <functional>

using namespace Planaria;

namespace {

/// Calls @p check with each class of words, as a null pointer, and with its table.
template <typename Check> void forEachWord(const Check &check)
{
    check(static_cast<Drug *>(nullptr), QStringLiteral("Drug"));
    check(static_cast<RNAi *>(nullptr), QStringLiteral("RNAi"));
    check(static_cast<Species *>(nullptr), QStringLiteral("Species"));
}

template <typename Pointer> using WordOf = std::remove_pointer_t<Pointer>;

/// "id name" of each row.
QStringList words(TemporaryLibrary *library, const QString &table)
{
    QStringList words;
    const std::unique_ptr<QSqlQuery> query = library->db()->newTableQuery(table);
    while (query->next())
        words += query->value(0).toString() + ' ' + query->value(1).toString();
    return words;
}

} // namespace

/// The four elements that experiments name and users add to: drugs, RNAi, species, publications.
class VocabularyTest final : public QObject
{
    Q_OBJECT

private slots:
    void init() { library = std::make_unique<TemporaryLibrary>(); }
    void cleanup() { QCOMPARE(library->brokenReferences(), QStringList()); }

    void newWordIsEmptyAndNotStored();
    void wordIsStoredInItsOwnTable();
    void wordIsReadByItsId();
    void wordWithoutARowIsEmpty();
    void writingAgainRenamesTheRow();
    void copyWithIdsIsTheSameRow();
    void copyWithoutIdsIsANewRow();
    void assignmentTakesOverTheIdentity();
    void copyingIntoAWordKeepsItsIdentity();
    void wordsAreEqualByName();
    void erasingDeletesTheRow();
    void anotherFileGetsANewRow();
    void noSecondRowOfANameIsWritten();
    void whatAnRNAiBlocksIsLeftAsItIs();

    void newPublicationIsOfThisYear();
    void publicationIsStoredColumnByColumn();
    void publicationWithoutAddressAndYearCanBeRead();
    void publicationWithoutARowIsEmpty();
    void publicationIsCopiedAndAssigned();
    void publicationsAreComparedFieldByField_data();
    void publicationsAreComparedFieldByField();
    void publicationIsErasedAndRefusedByTitle();

private:
    template <typename Word> std::unique_ptr<Word> store(const QString &name)
    {
        std::unique_ptr<Word> word(newWord<Word>(name));
        word->submit(library->db());
        return word;
    }

    std::unique_ptr<TemporaryLibrary> library;
};

void VocabularyTest::newWordIsEmptyAndNotStored()
{
    forEachWord([this](auto *kind, const QString &table) {
        using Word = WordOf<decltype(kind)>;
        QVERIFY(Word().name().isNull());
        QCOMPARE(Word().id(), 0);
        QCOMPARE(library->count(table), 0);
    });
}

void VocabularyTest::wordIsStoredInItsOwnTable()
{
    forEachWord([this](auto *kind, const QString &table) {
        using Word = WordOf<decltype(kind)>;
        Word word;
        word.setName("planarian");
        QCOMPARE(word.submit(library->db()), 1);
        QCOMPARE(word.id(), 1);
        QCOMPARE(words(library.get(), table), QStringList("1 planarian"));
    });
}

void VocabularyTest::wordIsReadByItsId()
{
    forEachWord([this](auto *kind, const QString & /*table*/) {
        using Word = WordOf<decltype(kind)>;
        store<Word>("first");
        store<Word>("second");
        QCOMPARE(Word(2, library->db()).name(), QStringLiteral("second"));
        QCOMPARE(Word(2, library->db()).id(), 2);
    });
}

void VocabularyTest::wordWithoutARowIsEmpty()
{
    forEachWord([this](auto *kind, const QString &table) {
        using Word = WordOf<decltype(kind)>;
        QVERIFY(Word(5, library->db()).name().isNull());
        QVERIFY(Word(0, library->db()).name().isNull());
        QCOMPARE(library->count(table), 0);
    });
}

void VocabularyTest::writingAgainRenamesTheRow()
{
    forEachWord([this](auto *kind, const QString &table) {
        using Word = WordOf<decltype(kind)>;
        const auto word = store<Word>("first");
        word->setName("renamed");
        QCOMPARE(word->submit(library->db()), 1);
        QCOMPARE(words(library.get(), table), QStringList("1 renamed"));
    });
}

void VocabularyTest::copyWithIdsIsTheSameRow()
{
    forEachWord([this](auto *kind, const QString &table) {
        using Word = WordOf<decltype(kind)>;
        Word copy(*store<Word>("first"), true);
        QCOMPARE(copy.name(), QStringLiteral("first"));
        copy.setName("renamed");
        QCOMPARE(copy.submit(library->db()), 1);
        QCOMPARE(words(library.get(), table), QStringList("1 renamed"));
    });
}

void VocabularyTest::copyWithoutIdsIsANewRow()
{
    forEachWord([this](auto *kind, const QString &table) {
        using Word = WordOf<decltype(kind)>;
        Word copy(*store<Word>("first"), false);
        QCOMPARE(copy.id(), 0);
        copy.setName("first - copy");
        QCOMPARE(copy.submit(library->db()), 2);
        QCOMPARE(words(library.get(), table), QStringList({"1 first", "2 first - copy"}));
    });
}

void VocabularyTest::assignmentTakesOverTheIdentity()
{
    forEachWord([this](auto *kind, const QString &table) {
        using Word = WordOf<decltype(kind)>;
        const auto first = store<Word>("first");
        *first = *store<Word>("second");
        QCOMPARE(first->id(), 2);
        first->setName("renamed");
        QCOMPARE(first->submit(library->db()), 2);
        QCOMPARE(words(library.get(), table), QStringList({"1 first", "2 renamed"}));
    });
}

void VocabularyTest::copyingIntoAWordKeepsItsIdentity()
{
    forEachWord([this](auto *kind, const QString &table) {
        using Word = WordOf<decltype(kind)>;
        const auto first = store<Word>("first");
        Word other;
        other.setName("other");
        first->copy(other);
        QCOMPARE(first->submit(library->db()), 1);
        QCOMPARE(words(library.get(), table), QStringList("1 other"));
    });
}

void VocabularyTest::wordsAreEqualByName()
{
    forEachWord([this](auto *kind, const QString &table) {
        using Word = WordOf<decltype(kind)>;
        Word other;
        other.setName("first");
        QVERIFY(*store<Word>("first") == other);
        other.setName("First");
        QVERIFY(!(Word(1, library->db()) == other));
        QCOMPARE(words(library.get(), table), QStringList("1 first"));
    });
}

void VocabularyTest::erasingDeletesTheRow()
{
    forEachWord([this](auto *kind, const QString &table) {
        using Word = WordOf<decltype(kind)>;
        const auto first = store<Word>("first");
        store<Word>("second");
        QVERIFY(first->erase());
        QCOMPARE(first->id(), 0);
        QCOMPARE(first->name(), QStringLiteral("first"));
        QCOMPARE(words(library.get(), table), QStringList("2 second"));
    });
}

void VocabularyTest::anotherFileGetsANewRow()
{
    forEachWord([this](auto *kind, const QString &table) {
        using Word = WordOf<decltype(kind)>;
        const auto word = store<Word>("first");
        TemporaryLibrary other;
        other.run(QStringLiteral("INSERT INTO %1(Name) VALUES('there before')").arg(table));
        QCOMPARE(word->submit(other.db()), 2);
        QCOMPARE(words(&other, table), QStringList({"1 there before", "2 first"}));
        QCOMPARE(words(library.get(), table), QStringList("1 first"));
    });
}

void VocabularyTest::noSecondRowOfANameIsWritten()
{
    forEachWord([this](auto *kind, const QString &table) {
        using Word = WordOf<decltype(kind)>;
        const auto word = store<Word>("first");
        Word second;
        second.setName("first");
        QVERIFY(second.submit(library->db()) < 1);
        QVERIFY(Word().submit(library->db()) < 1);
        QCOMPARE(words(library.get(), table), QStringList("1 first"));
    });
}

void VocabularyTest::whatAnRNAiBlocksIsLeftAsItIs()
{
    const auto rnai = store<RNAi>("beta-catenin");
    QVERIFY(library->value("SELECT BlockedMechanism FROM RNAi").isNull());
    library->run("UPDATE RNAi SET BlockedMechanism = 'Wnt signalling'");
    rnai->setName("renamed");
    rnai->submit(library->db());
    QCOMPARE(library->value("SELECT Name || ', ' || BlockedMechanism FROM RNAi"),
             QVariant("renamed, Wnt signalling"));
}

// --- Publications ---

void VocabularyTest::newPublicationIsOfThisYear()
{
    const int before = QDate::currentDate().year();
    const Publication publication;
    const int after = QDate::currentDate().year();
    QVERIFY(publication.year() == before || publication.year() == after);
    QVERIFY(publication.title().isNull());
    QVERIFY(publication.url().isNull());
    QCOMPARE(publication.id(), 0);
}

void VocabularyTest::publicationIsStoredColumnByColumn()
{
    const std::unique_ptr<Publication> publication(
        newPublication("Planarians", "https://planarians.example", 1898));
    QCOMPARE(publication->submit(library->db()), 1);
    QCOMPARE(library->value("SELECT Title FROM Publication"), QVariant("Planarians"));
    QCOMPARE(library->value("SELECT URL FROM Publication"), QVariant("https://planarians.example"));
    QCOMPARE(library->value("SELECT Year FROM Publication"), QVariant(1898));

    const Publication read(1, library->db());
    QCOMPARE(read.title(), QStringLiteral("Planarians"));
    QCOMPARE(read.url(), QStringLiteral("https://planarians.example"));
    QCOMPARE(read.year(), 1898);
    QCOMPARE(read.id(), 1);
}

void VocabularyTest::publicationWithoutAddressAndYearCanBeRead()
{
    library->run("INSERT INTO Publication(Title) VALUES('Planarians')");
    Publication publication(1, library->db());
    QVERIFY(publication.url().isNull());
    QCOMPARE(publication.year(), 0);

    publication.submit(library->db());
    QVERIFY(library->value("SELECT URL FROM Publication").isNull());
    QCOMPARE(library->value("SELECT Year FROM Publication"), QVariant(0));
}

void VocabularyTest::publicationWithoutARowIsEmpty()
{
    const Publication publication(5, library->db());
    QVERIFY(publication.title().isNull());
    QCOMPARE(publication.year(), 0);
}

void VocabularyTest::publicationIsCopiedAndAssigned()
{
    const std::unique_ptr<Publication> first(newPublication("first", "a", 1898));
    const std::unique_ptr<Publication> second(newPublication("second", "b", 1901));
    first->submit(library->db());
    second->submit(library->db());

    QCOMPARE(Publication(*second, true).id(), 2);
    QCOMPARE(Publication(*second, false).id(), 0);
    QVERIFY(Publication(*second, false) == *second);

    Publication copy(*first, true);
    copy.copy(*second);
    QCOMPARE(copy.id(), 1);
    QVERIFY(copy == *second);
    copy = *second;
    QCOMPARE(copy.id(), 2);
    copy.setYear(1911);
    QCOMPARE(copy.submit(library->db()), 2);
    QCOMPARE(Publication(1, library->db()).year(), 1898);
    QCOMPARE(Publication(2, library->db()).year(), 1911);
}

void VocabularyTest::publicationsAreComparedFieldByField_data()
{
    using Change = std::function<void(Publication *)>;
    QTest::addColumn<Change>("change");
    QTest::addColumn<bool>("equal");

    QTest::newRow("nothing") << Change([](Publication *) {}) << true;
    QTest::newRow("title") << Change([](Publication *other) { other->setTitle("x"); }) << false;
    QTest::newRow("address") << Change([](Publication *other) { other->setUrl("x"); }) << false;
    QTest::newRow("year") << Change([](Publication *other) { other->setYear(1); }) << false;
}

void VocabularyTest::publicationsAreComparedFieldByField()
{
    using Change = std::function<void(Publication *)>;
    QFETCH(const Change, change);
    QFETCH(const bool, equal);

    const std::unique_ptr<Publication> publication(newPublication("title", "address", 1901));
    Publication other(*publication, false);
    change(&other);
    QCOMPARE(other == *publication, equal);
}

void VocabularyTest::publicationIsErasedAndRefusedByTitle()
{
    const std::unique_ptr<Publication> publication(newPublication("title"));
    publication->submit(library->db());
    QVERIFY(std::unique_ptr<Publication>(newPublication("title"))->submit(library->db()) < 1);
    QCOMPARE(library->count("Publication"), 1);

    QVERIFY(publication->erase());
    QCOMPARE(publication->id(), 0);
    QCOMPARE(library->count("Publication"), 0);
}

QTEST_GUILESS_MAIN(VocabularyTest)
#include "VocabularyTest.moc"
