#include "morphology/MorphologyListViewerForm.h"

#include "db/ExperimentFactory.h"
#include "model/Morphology.h"
#include "morphology/MorphologyListView.h"
#include "support/ModalAnswerer.h"
#include "support/ProgressWatcher.h"
#include "support/StatementLog.h"
#include "support/TemporaryLibrary.h"

#include <QDialogButtonBox>
#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QLayout>
#include <QPushButton>
#include <QRegularExpression>
#include <QSettings>
#include <QTest>

#include <malloc.h>

using namespace Planaria;

namespace {

const MorphologyListView *viewOf(const MorphologyListViewerForm &form)
{
    return form.findChild<MorphologyListView *>();
}

QStringList shownTexts(const MorphologyListViewerForm &form)
{
    QStringList texts;
    for (QGraphicsItem *item : viewOf(form)->scene()->items(Qt::AscendingOrder)) {
        if (const auto *text = dynamic_cast<QGraphicsTextItem *>(item))
            texts += text->toPlainText();
    }
    return texts;
}

QVariant setting(const QString &name)
{
    return QSettings().value("MorphologyListViewerForm/" + name);
}

void setSetting(const QString &name, const QVariant &value)
{
    QSettings().setValue("MorphologyListViewerForm/" + name, value);
}

/// The bytes that the program has allocated.
qint64 memoryInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return qint64(info.uordblks + info.hblkhd);
}

} // namespace

class MorphologyListViewerFormTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void looksLikeAWindowOfItsOwn();
    void closesByItsButton();
    void closesByEscape();
    void showsTheWormsByName();
    void opensOnALibraryWithoutWorms();
    void opensWith500Worms();
    void readsEachTableOfMembersOnce_data();
    void readsEachTableOfMembersOnce();
    void writesNothingToTheLibrary();

    void showsItsProgress();
    void staysEmptyWhenTheUserAborts_data();
    void staysEmptyWhenTheUserAborts();
    void readsNoSettingsWhenTheUserAborts();

    void remembersItsSize();
    void remembersThatItWasMaximized();
    void isModalWhenItOpensMaximized();
    void startsAtItsDefaultSize();

    void freesItsWorms();

private:
    void addWorm(const QString &name, const QByteArray &picture = {});
    void addWorms(int count, const QByteArray &picture = {});

    std::unique_ptr<TemporaryLibrary> library;
};

void MorphologyListViewerFormTest::init()
{
    QSettings().clear();
    library = std::make_unique<TemporaryLibrary>();
}

void MorphologyListViewerFormTest::addWorm(const QString &name, const QByteArray &picture)
{
    const auto worm = ExperimentFactory::instance(nullptr)->createWildMorphology();
    worm->setName(name);
    if (!picture.isEmpty())
        worm->addImage(picture);
    QVERIFY(worm->submit(library->db()) > 0);
}

void MorphologyListViewerFormTest::addWorms(int count, const QByteArray &picture)
{
    library->db()->beginTransaction();
    for (int i = 0; i < count; ++i)
        addWorm(QStringLiteral("Worm %1").arg(i, 4, 10, QLatin1Char('0')), picture);
    QVERIFY(library->db()->endTransaction());
}

// --- The window ---

void MorphologyListViewerFormTest::looksLikeAWindowOfItsOwn()
{
    QWidget parent;
    const MorphologyListViewerForm form(library->db(), &parent);
    QCOMPARE(form.parentWidget(), &parent);
    QCOMPARE(form.windowType(), Qt::Window);
    QCOMPARE(form.windowTitle(), "Morphology list viewer");
    const auto *buttons = form.findChild<QDialogButtonBox *>();
    QCOMPARE(buttons->standardButtons(), QDialogButtonBox::Close);
    QCOMPARE(form.layout()->indexOf(viewOf(form)), 0);
    QCOMPARE(form.layout()->indexOf(buttons), 1);
}

void MorphologyListViewerFormTest::closesByItsButton()
{
    MorphologyListViewerForm form(library->db(), nullptr);
    ModalAnswerer answerer;
    answerer.expectDialog([](QDialog *dialog) {
        dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Close)->click();
    });
    QCOMPARE(form.exec(), int(QDialog::Accepted));
    QCOMPARE(answerer.problems(), QStringList());
}

void MorphologyListViewerFormTest::closesByEscape()
{
    MorphologyListViewerForm form(library->db(), nullptr);
    form.show();
    QTest::keyClick(form.findChild<MorphologyListView *>(), Qt::Key_Escape);
    QVERIFY(!form.isVisible());
}

void MorphologyListViewerFormTest::showsTheWormsByName()
{
    for (const char *name : {"Two heads", "Cyclops", "Tail piece"})
        addWorm(name);
    const MorphologyListViewerForm form(library->db(), nullptr);
    QVERIFY(!form.isAborted());
    QCOMPARE(shownTexts(form), QStringList({"1. Cyclops", "2. Tail piece", "3. Two heads"}));
}

void MorphologyListViewerFormTest::opensOnALibraryWithoutWorms()
{
    const MorphologyListViewerForm form(library->db(), nullptr);
    QVERIFY(!form.isAborted());
    QVERIFY(viewOf(form)->scene()->items().isEmpty());
}

void MorphologyListViewerFormTest::opensWith500Worms()
{
    addWorms(500);
    MorphologyListViewerForm form(library->db(), nullptr);
    form.show();
    const QStringList texts = shownTexts(form);
    QCOMPARE(texts.size(), 500);
    QCOMPARE(texts.first(), "1. Worm 0000");
    QCOMPARE(texts.last(), "500. Worm 0499");
    QCOMPARE(viewOf(form)->sceneRect(), viewOf(form)->scene()->itemsBoundingRect());
}

void MorphologyListViewerFormTest::readsEachTableOfMembersOnce_data()
{
    QTest::addColumn<int>("worms");
    for (const int worms : {1, 2, 20})
        QTest::addRow("%d", worms) << worms;
}

void MorphologyListViewerFormTest::readsEachTableOfMembersOnce()
{
    QFETCH(const int, worms);
    addWorms(worms, "no picture");
    StatementLog log;
    DB db;
    QCOMPARE(db.connect(library->fileName(), false), int(DB::Opened));
    log.take();
    const MorphologyListViewerForm form(&db, nullptr);
    const QStringList statements = log.take();
    QCOMPARE(shownTexts(form).size(), worms);
    for (const char *table : {"Region", "RegionParam", "RegionsLink", "Organ", "SpotOrgan",
                              "LineOrgan", "MorphologyImage"}) {
        // The pictures themselves are too large to be kept: each is read by its id.
        const QRegularExpression read(QStringLiteral("\\bFROM %1\\b(?! WHERE Id = )").arg(table));
        const QStringList reads = statements.filter(read);
        QVERIFY2(reads.size() == 1, qPrintable(table + QStringLiteral(": ") + reads.join("; ")));
    }
}

void MorphologyListViewerFormTest::writesNothingToTheLibrary()
{
    addWorms(3, "no picture");
    const int before = library->value("PRAGMA data_version").toInt();
    const int changes = library->value("SELECT total_changes()").toInt();
    {
        const MorphologyListViewerForm form(library->db(), nullptr);
    }
    QCOMPARE(library->value("PRAGMA data_version").toInt(), before);
    QCOMPARE(library->value("SELECT total_changes()").toInt(), changes);
    QCOMPARE(library->brokenReferences(), QStringList());
}

// --- Progress ---

void MorphologyListViewerFormTest::showsItsProgress()
{
    addWorms(4);
    QWidget parent;
    const ProgressWatcher progress;
    const MorphologyListViewerForm form(library->db(), &parent);
    QCOMPARE(progress.label, "Drawing worms...");
    QCOMPARE(progress.button, "Abort");
    QCOMPARE(progress.range, qMakePair(0, 4));
    QCOMPARE(progress.values, QList<int>({0, 1, 2, 3}));
    QCOMPARE(progress.modality, Qt::WindowModal);
    QCOMPARE(progress.minimumDuration, 500);
    QCOMPARE(progress.parentWidget, &parent);
}

void MorphologyListViewerFormTest::staysEmptyWhenTheUserAborts_data()
{
    QTest::addColumn<int>("worm");
    QTest::newRow("at the first worm") << 0;
    QTest::newRow("on the way") << 2;
    QTest::newRow("at the last worm") << 3;
}

void MorphologyListViewerFormTest::staysEmptyWhenTheUserAborts()
{
    QFETCH(const int, worm);
    addWorms(4);
    const ProgressWatcher progress(worm);
    const MorphologyListViewerForm form(library->db(), nullptr);
    QVERIFY(form.isAborted());
    QCOMPARE(progress.range, qMakePair(0, 4));
    QVERIFY(viewOf(form)->scene()->items().isEmpty());
}

void MorphologyListViewerFormTest::readsNoSettingsWhenTheUserAborts()
{
    addWorms(2);
    setSetting("size", QSize(500, 400));
    const ProgressWatcher progress(1);
    const MorphologyListViewerForm form(library->db(), nullptr);
    QVERIFY(form.isAborted());
    QCOMPARE(form.size(), QSize(800, 700));
}

// --- Settings ---

void MorphologyListViewerFormTest::startsAtItsDefaultSize()
{
    const MorphologyListViewerForm form(library->db(), nullptr);
    QCOMPARE(form.size(), QSize(800, 700));
    QVERIFY(!form.isMaximized());
}

void MorphologyListViewerFormTest::remembersItsSize()
{
    {
        MorphologyListViewerForm form(library->db(), nullptr);
        form.show();
        form.resize(640, 480);
    }
    QCOMPARE(setting("size").toSize(), QSize(640, 480));
    QCOMPARE(setting("maximized"), QVariant("false"));
    QCOMPARE(MorphologyListViewerForm(library->db(), nullptr).size(), QSize(640, 480));
}

void MorphologyListViewerFormTest::remembersThatItWasMaximized()
{
    setSetting("size", QSize(640, 480));
    {
        MorphologyListViewerForm form(library->db(), nullptr);
        form.showMaximized();
        QTRY_VERIFY(form.size() != QSize(640, 480));
    }
    QCOMPARE(setting("maximized").toBool(), true);
    QCOMPARE(setting("size").toSize(), QSize(640, 480));
    QVERIFY(MorphologyListViewerForm(library->db(), nullptr).isMaximized());
}

void MorphologyListViewerFormTest::isModalWhenItOpensMaximized()
{
    setSetting("maximized", true);
    MorphologyListViewerForm form(library->db(), nullptr);
    const QDialog *modal = nullptr;
    ModalAnswerer answerer;
    answerer.expectDialog([&modal](QDialog *dialog) {
        modal = dialog;
        dialog->reject();
    });
    QTimer::singleShot(2000, &form, &QDialog::reject); // a form that is not modal is never answered
    form.exec();
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(modal, &form);
    QVERIFY(form.isMaximized());
}

// --- Memory ---

void MorphologyListViewerFormTest::freesItsWorms()
{
    constexpr int worms = 20;
    const QByteArray picture(1 << 18, 'x');
    addWorms(worms, picture);
    const auto open = [this] {
        const MorphologyListViewerForm form(library->db(), nullptr);
        return shownTexts(form).size();
    };
    QCOMPARE(open(), worms); // what is kept for good is there now
    const qint64 before = memoryInUse();
    for (int i = 0; i < 4; ++i)
        QCOMPARE(open(), worms);
    QVERIFY2(memoryInUse() - before < worms * picture.size(),
             qPrintable(QString::number(memoryInUse() - before)));
}

QTEST_MAIN(MorphologyListViewerFormTest)
#include "MorphologyListViewerFormTest.moc"
