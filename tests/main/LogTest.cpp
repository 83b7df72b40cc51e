#include "main/Log.h"

#include "support/TemporaryLibrary.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <ctime>
#include <latch>

using namespace Planaria;

namespace {

const QString startMark =
    QStringLiteral("###################### LOG START ########################");

/// The lines of a file of the working folder; none where there is no such file.
QStringList lines(const QString &name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QStringList all = QString::fromUtf8(file.readAll()).split('\n');
    if (all.takeLast() != QString())
        qFatal("%s does not end with a line's end", qUtf8Printable(name));
    return all;
}

/// The lines without the time that each of them begins with.
QStringList messages(const QString &name)
{
    static const QRegularExpression line(R"(\A\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z : (.*)\z)");
    QStringList all;
    for (const QString &text : lines(name)) {
        const QRegularExpressionMatch match = line.match(text);
        all += match.hasMatch() ? match.captured(1) : "no time in: " + text;
    }
    return all;
}

void write(const QString &message)
{
    *Log::write() << message << Qt::endl;
}

} // namespace

/// Each test works in a fresh folder and begins, as a run of the program does, without a log.
class LogTest final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void makesNoFileInARunWithoutErrors();
    void beginsARunWithItsStartMark();
    void appendsToTheFileOfTheRunBefore();
    void beginsEachLineWithTheUtcTime();
    void writesTextsAndManipulators();
    void flushesEachLine();
    void opensTheFileWithItsStartMarkAlone();
    void changesToAnotherFile();
    void forgetsItsFileAndItsNameOnceClosed();
    void staysSilentWhereItsFileCannotBeOpened_data();
    void staysSilentWhereItsFileCannotBeOpened();
    void goesOnOnceItsFileCanBeOpened();
    void staysOpenWhereItIsOpenedTwice();
    void keepsTheItemsOfThreadsWhole();

private:
    std::unique_ptr<QTemporaryDir> folder;
};

void LogTest::initTestCase()
{
    qputenv("TZ", "Asia/Kathmandu"); // where no clock shows UTC, not even its minutes
    tzset();
}

void LogTest::init()
{
    QTest::failOnWarning(QRegularExpression("."));
    folder = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir::setCurrent(folder->path()));
}

void LogTest::cleanup()
{
    Log::closeLog();
    QVERIFY(QDir::setCurrent(QDir::rootPath()));
    folder.reset();
}

void LogTest::makesNoFileInARunWithoutErrors()
{
    TemporaryLibrary library;
    QCOMPARE(library.db()->insertRow("Drug", {{"Name", "octanol"}}, false), 1);
    Log::setLogName("other.log");
    Log::closeLog();
    QCOMPARE(QDir().entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
}

void LogTest::beginsARunWithItsStartMark()
{
    write("first");
    write("second");
    QCOMPARE(messages("out.log"), QStringList({startMark, "first", "second"}));
}

void LogTest::appendsToTheFileOfTheRunBefore()
{
    write("of the first run");
    const QStringList before = lines("out.log");
    Log::closeLog();

    write("of the second run");
    QCOMPARE(lines("out.log").mid(0, 2), before);
    QCOMPARE(messages("out.log").mid(2), QStringList({startMark, "of the second run"}));
}

void LogTest::beginsEachLineWithTheUtcTime()
{
    const QDateTime before = QDateTime::currentDateTimeUtc();
    write("first");
    write("second");
    const QDateTime after = QDateTime::currentDateTimeUtc();

    QCOMPARE(messages("out.log").size(), 3);
    QDateTime last = before;
    for (const QString &line : lines("out.log")) {
        const QDateTime time = QDateTime::fromString(line.section(" : ", 0, 0), Qt::ISODateWithMs);
        QVERIFY2(last <= time && time <= after, qPrintable(line));
        last = time;
    }
}

void LogTest::writesTextsAndManipulators()
{
    *Log::write() << "Dug\u00e8sia " << QString("\u03b2-catenin") << Qt::endl << "and more\n";
    Log::closeLog();
    QCOMPARE(lines("out.log").mid(1).join('\n').section(" : ", 1),
             QString("Dug\u00e8sia \u03b2-catenin\nand more"));
}

void LogTest::flushesEachLine()
{
    LogStream *stream = Log::write();
    *stream << "half a line";
    QCOMPARE(messages("out.log"), QStringList(startMark));
    *stream << Qt::endl;
    QCOMPARE(messages("out.log"), QStringList({startMark, "half a line"}));
}

void LogTest::opensTheFileWithItsStartMarkAlone()
{
    Log::openLog();
    QCOMPARE(messages("out.log"), QStringList(startMark));
    write("first");
    QCOMPARE(messages("out.log"), QStringList({startMark, "first"}));
}

void LogTest::changesToAnotherFile()
{
    Log::setLogName("a.log");
    QVERIFY(!QFile::exists("a.log"));
    write("in a");
    Log::setLogName("b.log");
    QVERIFY(!QFile::exists("b.log"));
    write("in b");
    Log::setLogName("a.log");
    write("in a again");

    QCOMPARE(messages("a.log"), QStringList({startMark, "in a", startMark, "in a again"}));
    QCOMPARE(messages("b.log"), QStringList({startMark, "in b"}));
    QVERIFY(!QFile::exists("out.log"));
}

void LogTest::forgetsItsFileAndItsNameOnceClosed()
{
    Log::closeLog();
    Log::setLogName("a.log");
    *Log::write() << "without an end";
    Log::closeLog();
    Log::closeLog();
    write("after the close");

    QFile file("a.log");
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().endsWith(" : without an end"));
    QCOMPARE(messages("out.log"), QStringList({startMark, "after the close"}));
}

void LogTest::staysSilentWhereItsFileCannotBeOpened_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("a folder of that name") << "out.log";
    QTest::newRow("no such folder") << "missing/a.log";
}

void LogTest::staysSilentWhereItsFileCannotBeOpened()
{
    QFETCH(const QString, name);
    QVERIFY(QDir().mkdir("out.log"));
    if (name != "out.log")
        Log::setLogName(name);
    write("lost");
    write("lost too");
    QCOMPARE(QDir().entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList("out.log"));

    Log::setLogName("a.log");
    write("kept");
    QCOMPARE(messages("a.log"), QStringList({startMark, "kept"}));
}

void LogTest::goesOnOnceItsFileCanBeOpened()
{
    Log::setLogName("missing/a.log");
    write("lost");
    QVERIFY(QDir().mkdir("missing"));
    write("kept");
    QCOMPARE(messages("missing/a.log"), QStringList({startMark, "kept"}));
}

void LogTest::staysOpenWhereItIsOpenedTwice()
{
    write("first");
    Log::openLog();
    write("second");
    QCOMPARE(messages("out.log"), QStringList({startMark, "first", "second"}));
}

void LogTest::keepsTheItemsOfThreadsWhole()
{
    constexpr int threadCount = 4;
    constexpr int itemCount = 2000;
    LogStream *stream = Log::write();
    *stream << Qt::endl;

    std::latch allStarted(threadCount);
    QList<QThread *> threads;
    for (int i = 0; i < threadCount; ++i) {
        const QString item = QString(40, QChar('a' + i)) + '\n';
        threads += QThread::create([=, &allStarted] {
            allStarted.arrive_and_wait();
            for (int count = 0; count < itemCount; ++count)
                *stream << item << Qt::flush;
        });
        threads.last()->start();
    }
    for (QThread *thread : std::as_const(threads))
        QVERIFY(thread->wait());
    qDeleteAll(threads);

    const QStringList all = lines("out.log").mid(2);
    QCOMPARE(all.size(), threadCount * itemCount);
    for (int i = 0; i < threadCount; ++i)
        QCOMPARE(all.count(QString(40, QChar('a' + i))), itemCount);
}

QTEST_GUILESS_MAIN(LogTest)
#include "LogTest.moc"
