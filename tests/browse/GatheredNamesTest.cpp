#include "browse/GatheredNames.h"

#include <QRandomGenerator>
#include <QtTest>

namespace Planaria {

/// The text in which names are gathered.
class GatheredNamesTest final : public QObject
{
    Q_OBJECT

private slots:
    void joinsNamesOnceEach_data();
    void joinsNamesOnceEach();
    void agreesWithASearchOfTheWholeText_data();
    void agreesWithASearchOfTheWholeText();
};

void GatheredNamesTest::joinsNamesOnceEach_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("text");
    const auto add = [](const char *what, const QStringList &names, const char *text) {
        QTest::newRow(what) << names << QString(text);
    };
    add("none", {}, "");
    add("the first", {"Cut"}, "Cut");
    add("another one", {"Cut", "Join"}, "Cut; Join");
    add("the only one again", {"Cut", "Cut"}, "Cut");
    add("the first again", {"Cut", "Join", "Cut"}, "Cut; Join");
    add("one in the middle again", {"Cut", "Join", "Crop", "Join"}, "Cut; Join; Crop");
    add("the last again", {"Cut", "Join", "Join"}, "Cut; Join");
    add("in another case", {"Cut", "Join", "join"}, "Cut; Join; join");
    add("the head of one that is there", {"Cutting", "Cut"}, "Cutting; Cut");
    add("the middle of one that is there", {"Recutting", "Join", "cut"}, "Recutting; Join; cut");
    add("the end of the last", {"Recut", "cut"}, "Recut; cut");
    add("the end of one before the last", {"Recut", "Join", "cut"}, "Recut; Join");
    add("two in one", {"Cut", "Join", "Crop", "Cut; Join"}, "Cut; Join; Crop");
    add("a part before its own semicolon", {"Cut; Join", "Cut"}, "Cut; Join");
    add("a part behind its own semicolon", {"Cut; Join", "Join"}, "Cut; Join");
    add("an empty name", {""}, "");
    add("an empty name first", {"", "Cut"}, "Cut");
    add("an empty name behind one", {"Cut", ""}, "Cut; ");
    add("an empty name behind two", {"Cut", "Join", ""}, "Cut; Join");
}

void GatheredNamesTest::joinsNamesOnceEach()
{
    QFETCH(const QStringList, names);
    GatheredNames gathered;
    for (const QString &name : names)
        gathered.add(name);
    QTEST(gathered.text(), "text");
}

void GatheredNamesTest::agreesWithASearchOfTheWholeText_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 300; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void GatheredNamesTest::agreesWithASearchOfTheWholeText()
{
    QFETCH(const quint32, seed);
    const QString alphabet = seed % 2 == 0 ? "ab" : "ab; ";
    QRandomGenerator random(seed);
    GatheredNames gathered;
    QString text;
    for (int step = 0; step < 40; ++step) {
        QString name;
        for (int length = random.bounded(6); length > 0; --length)
            name += alphabet[random.bounded(static_cast<int>(alphabet.size()))];
        if (text.isEmpty())
            text = name;
        else if (text != name && !text.contains(name + ";") && !text.endsWith("; " + name))
            text += "; " + name;
        gathered.add(name);
        QVERIFY2(
            gathered.text() == text,
            qUtf8Printable(QStringLiteral("step %1: \"%2\" in \"%3\"").arg(step).arg(name, text)));
    }
}

} // namespace Planaria

QTEST_GUILESS_MAIN(Planaria::GatheredNamesTest)
#include "GatheredNamesTest.moc"
