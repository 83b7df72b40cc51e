#include "IncludeCheck.h"
#include "SourceTree.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <span>

using namespace Planaria;

namespace {

QStringList listed(std::span<const char *const> texts)
{
    QStringList list;
    for (const char *text : texts)
        list += QString::fromUtf8(text);
    return list;
}

SourceSplit realTree()
{
    return {SourceTree::folder, SourceTree::qtWidgetsFolder, listed(SourceTree::coreSources),
            listed(SourceTree::uiSources)};
}

/// A small sound tree, into which a test plants its fault.
class PlantedTree final
{
public:
    PlantedTree()
    {
        plant("main/Log.h", "#include <QFile>\n");
        plant("db/DB.h", "#include <QString>\n");
        plant("db/DB.cpp", "#include \"db/DB.h\"\n#include \"main/Log.h\"\n");
        plant("db/ExperimentFactory.cpp", "#include \"model/Region.h\"\n");
        plant("model/Region.h", "#include \"db/DB.h\"\n");
        plant("model/Region.cpp", "#include \"model/Region.h\"\n#include <QtMath>\n");
        plant("morphology/View.h", "#include <QGraphicsView>\n#include \"db/DB.h\"\n");
        plant("morphology/View.cpp", "#include \"morphology/View.h\"\n#include \"View.moc\"\n");
        plant("distance/Form.h", "#include <QtWidgets/QDialog>\n");
        plant("db/Row.h", "#include \"db/DB.h\"\n");
        plant("widgets/Sizes.h", "#include <QSize>\n");
        plant("main/Window.h", "#include \"morphology/View.h\"\n#include \"BuildConfig.h\"\n");
    }

    void plant(const QString &name, const QByteArray &text)
    {
        QDir().mkpath(QFileInfo(folder.filePath(name)).path());
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(text), text.size());
    }

    [[nodiscard]] QStringList violations() const
    {
        const SourceSplit split{folder.path(),
                                SourceTree::qtWidgetsFolder,
                                {"db/DB.cpp", "db/ExperimentFactory.cpp", "model/Region.cpp"},
                                {"morphology/View.cpp", "distance/Form.cpp"}};
        return IncludeCheck(split).violations();
    }

private:
    QTemporaryDir folder;
};

} // namespace

class LayeringTest final : public QObject
{
    Q_OBJECT

private slots:
    void keepsTheLayersOfTheProgram();
    void givesEverySourceToALibrary();
    void findsNothingInASoundTree();
    void findsWhatIsPlanted_data();
    void findsWhatIsPlanted();
};

void LayeringTest::keepsTheLayersOfTheProgram()
{
    const IncludeCheck check(realTree());
    QVERIFY(check.files().contains("main/Log.h"));
    QVERIFY(!realTree().coreSources.isEmpty());
    QCOMPARE(check.violations(), QStringList());
}

void LayeringTest::givesEverySourceToALibrary()
{
    const SourceSplit split = realTree();
    QStringList homeless;
    for (const QString &file : IncludeCheck(split).files()) {
        const bool core = split.coreSources.contains(file);
        const bool coreFolder = file.startsWith("db/") || file.startsWith("model/");
        const bool known = core || (split.uiSources.contains(file) && !coreFolder);
        if (file.endsWith(".cpp") && file != "main/main.cpp" && !known)
            homeless += file;
    }
    QCOMPARE(homeless, QStringList());
}

void LayeringTest::findsNothingInASoundTree()
{
    QCOMPARE(PlantedTree().violations(), QStringList());
}

void LayeringTest::findsWhatIsPlanted_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("violations");

    const auto row = [](const char *tag, const char *file, const char *text,
                        const QStringList &violations) {
        QTest::newRow(tag) << QString(file) << QByteArray(text) << violations;
    };
    row("an arrow back", "morphology/View.h", "#include \"distance/Form.h\"\n",
        {"morphology/View.h includes distance/Form.h, against the layers"});
    row("an arrow back in angle brackets", "widgets/Box.h", "  #  include <main/Window.h>\n",
        {"widgets/Box.h includes main/Window.h, against the layers"});
    row("an arrow to a neighbour", "manipulation/Form.h", "#include \"distance/Form.h\"\n",
        {"manipulation/Form.h includes distance/Form.h, against the layers"});
    row("an arrow up from the log", "main/Log.cpp", "#include \"db/DB.h\"\n",
        {"main/Log.cpp includes db/DB.h, against the layers"});
    row("a file of db that climbs", "db/Other.cpp", "#include \"model/Region.h\"\n",
        {"db/Other.cpp includes model/Region.h, against the layers"});
    row("a factory that climbs too far", "db/ExperimentFactory.cpp",
        "#include \"widgets/Sizes.h\"\n",
        {"db/ExperimentFactory.cpp includes widgets/Sizes.h, against the layers"});
    row("a folder that is no layer", "util/Text.h", "",
        {"util/Text.h lies in a folder that is no layer"});
    row("a widget in the core", "model/Region.cpp", "#include <QPushButton>\n",
        {"model/Region.cpp belongs to the core and includes QtWidgets' QPushButton"});
    row("a widget by its folder in a header of the core", "db/DB.h",
        "#include <QtWidgets/QLabel>\n",
        {"db/DB.h belongs to the core and includes QtWidgets' QtWidgets/QLabel"});
    row("a header of the ui in the core", "model/Region.cpp", "#include \"distance/Form.h\"\n",
        {"distance/Form.h belongs to the core and includes QtWidgets' QtWidgets/QDialog",
         "model/Region.cpp belongs to the core and includes distance/Form.h of the ui",
         "model/Region.cpp includes distance/Form.h, against the layers"});
    row("a circle of headers", "db/DB.h", "#include \"db/Row.h\"\n",
        {"db/DB.h includes db/Row.h includes db/DB.h, a circle"});
    row("a header that includes itself", "db/Row.h", "#include \"db/Row.h\"\n",
        {"db/Row.h includes db/Row.h, a circle"});
    row("a path from beside", "model/Region.cpp", "#include \"Region.h\"\n",
        {"model/Region.cpp includes Region.h, which is no path from src"});
    row("a path to nowhere", "model/Region.cpp", "#include \"model/Gone.h\"\n",
        {"model/Region.cpp includes model/Gone.h, which is no path from src"});
}

void LayeringTest::findsWhatIsPlanted()
{
    QFETCH(const QString, file);
    QFETCH(const QByteArray, text);
    QFETCH(const QStringList, violations);
    PlantedTree tree;
    tree.plant(file, text);
    QCOMPARE(tree.violations(), violations);
}

QTEST_GUILESS_MAIN(LayeringTest)
#include "LayeringTest.moc"
