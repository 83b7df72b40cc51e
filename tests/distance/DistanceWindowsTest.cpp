#include "distance/MorphologyDistCompForm.h"
#include "distance/MorphologyDistForm.h"
#include "distance/MorphologyDistSearchForm.h"
#include "distance/StoredWorms.h"
#include "support/ModalAnswerer.h"
#include "widgets/ZoomGraphicsView.h"

#include <QPushButton>
#include <QSettings>
#include <QTest>
#include <QTimer>

#include <malloc.h>
#ifdef __SANITIZE_ADDRESS__
// GCC comes without the header of this.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

using namespace Planaria;

namespace {

using Maker = std::unique_ptr<QDialog> (*)(DB *, QWidget *);

template <typename Form> std::unique_ptr<QDialog> make(DB *db, QWidget *parent)
{
    return std::make_unique<Form>(db, parent);
}

/// The bytes that the program has allocated.
qint64 memoryInUse()
{
#ifdef __SANITIZE_ADDRESS__
    return qint64(__sanitizer_get_current_allocated_bytes()); // malloc is the sanitizer's
#else
    const struct mallinfo2 info = mallinfo2();
    return qint64(info.uordblks + info.hblkhd);
#endif
}

QPushButton *button(const QDialog &form, const QString &text)
{
    for (auto *button : form.findChildren<QPushButton *>()) {
        if (button->text().remove(QLatin1Char('&')) == text)
            return button;
    }
    return nullptr;
}

} // namespace

Q_DECLARE_METATYPE(Maker)

/// What the windows of the three tools have in common.
class DistanceWindowsTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void looksLikeAWindowOfItsOwn_data() { addForms(); }
    void looksLikeAWindowOfItsOwn();
    void closesByItsButton_data() { addForms(); }
    void closesByItsButton();
    void closesByEscape_data() { addForms(); }
    void closesByEscape();
    void givesEveryViewAName_data() { addForms(); }
    void givesEveryViewAName();

    void startsAtItsDefaultSize_data() { addForms(); }
    void startsAtItsDefaultSize();
    void remembersItsSize_data() { addForms(); }
    void remembersItsSize();
    void keepsItsNormalSizeWhileItIsMaximized_data() { addForms(); }
    void keepsItsNormalSizeWhileItIsMaximized();
    void isModalWhenItOpensMaximized_data() { addForms(); }
    void isModalWhenItOpensMaximized();

    void opensOnALibraryWithoutWorms_data() { addForms(); }
    void opensOnALibraryWithoutWorms();
    void writesNothingToTheLibrary_data() { addForms(); }
    void writesNothingToTheLibrary();
    void freesItsMemory_data() { addForms(); }
    void freesItsMemory();

private:
    static void addForms();
    std::unique_ptr<QDialog> open(QWidget *parent = nullptr);
    static QString key(const QString &name);

    std::unique_ptr<TemporaryLibrary> library;
};

void DistanceWindowsTest::addForms()
{
    QTest::addColumn<Maker>("maker");
    QTest::addColumn<QString>("title");
    QTest::newRow("MorphologyDistForm")
        << Maker(make<MorphologyDistForm>) << "Morphology distance calculator";
    QTest::newRow("MorphologyDistSearchForm")
        << Maker(make<MorphologyDistSearchForm>) << "Morphology graphical search";
    QTest::newRow("MorphologyDistCompForm")
        << Maker(make<MorphologyDistCompForm>) << "Morphology distance comparator";
}

void DistanceWindowsTest::init()
{
    QSettings().clear();
    library = std::make_unique<TemporaryLibrary>();
    storeWorm(library.get(), "Cyclops");
}

void DistanceWindowsTest::cleanup()
{
    QCOMPARE(library->brokenReferences(), QStringList());
}

std::unique_ptr<QDialog> DistanceWindowsTest::open(QWidget *parent)
{
    QFETCH(const Maker, maker);
    return maker(library->db(), parent);
}

/// The settings' group is the name of the class.
QString DistanceWindowsTest::key(const QString &name)
{
    return QLatin1String(QTest::currentDataTag()) + QLatin1Char('/') + name;
}

// --- The window ---

void DistanceWindowsTest::looksLikeAWindowOfItsOwn()
{
    QWidget parent;
    const auto form = open(&parent);
    QCOMPARE(form->metaObject()->className(),
             qPrintable(QStringLiteral("Planaria::") + QTest::currentDataTag()));
    QCOMPARE(form->parentWidget(), &parent);
    QCOMPARE(form->windowType(), Qt::Window);
    QTEST(form->windowTitle(), "title");
}

void DistanceWindowsTest::closesByItsButton()
{
    const auto form = open();
    ModalAnswerer answerer;
    answerer.expectDialog([](QDialog *dialog) { button(*dialog, "Close")->click(); });
    QCOMPARE(form->exec(), int(QDialog::Accepted));
    QCOMPARE(answerer.problems(), QStringList());
}

void DistanceWindowsTest::closesByEscape()
{
    const auto form = open();
    form->show();
    QTest::keyClick(button(*form, "Close"), Qt::Key_Escape);
    QVERIFY(!form->isVisible());
}

void DistanceWindowsTest::givesEveryViewAName()
{
    const auto form = open();
    for (const auto *view : form->findChildren<QGraphicsView *>())
        QVERIFY2(!view->accessibleName().isEmpty(), view->metaObject()->className());
}

// --- Settings ---

void DistanceWindowsTest::startsAtItsDefaultSize()
{
    const auto form = open();
    QCOMPARE(form->size(), QSize(800, 700));
    QVERIFY(!form->isMaximized());
}

void DistanceWindowsTest::remembersItsSize()
{
    auto form = open();
    form->show();
    form->resize(940, 580);
    form.reset();
    QCOMPARE(QSettings().value(key("size")).toSize(), QSize(940, 580));
    QCOMPARE(QSettings().value(key("maximized")), QVariant("false"));
    QCOMPARE(open()->size(), QSize(940, 580));
}

void DistanceWindowsTest::keepsItsNormalSizeWhileItIsMaximized()
{
    QSettings().setValue(key("size"), QSize(940, 580));
    auto form = open();
    form->showMaximized();
    QTRY_VERIFY(form->size() != QSize(940, 580));
    form.reset();
    QCOMPARE(QSettings().value(key("maximized")).toBool(), true);
    QCOMPARE(QSettings().value(key("size")).toSize(), QSize(940, 580));
    QVERIFY(open()->isMaximized());
}

void DistanceWindowsTest::isModalWhenItOpensMaximized()
{
    QSettings().setValue(key("maximized"), true);
    const auto form = open();
    const QDialog *modal = nullptr;
    ModalAnswerer answerer;
    answerer.expectDialog([&modal](QDialog *dialog) {
        modal = dialog;
        dialog->reject();
    });
    // A form that is not modal is never answered.
    QTimer::singleShot(2000, form.get(), &QDialog::reject);
    form->exec();
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(modal, form.get());
    QVERIFY(form->isMaximized());
}

// --- The library ---

void DistanceWindowsTest::opensOnALibraryWithoutWorms()
{
    library = std::make_unique<TemporaryLibrary>();
    const auto form = open();
    form->show();
    QVERIFY(form->isVisible());
    for (const char *text : {"Edit", "Copy", "Search"}) {
        if (button(*form, text))
            button(*form, text)->click();
    }
    QVERIFY(form->isVisible());
}

void DistanceWindowsTest::writesNothingToTheLibrary()
{
    storeWorms(library.get(), 3);
    const int changes = library->value("SELECT total_changes()").toInt();
    const auto form = open();
    if (button(*form, "Search"))
        button(*form, "Search")->click();
    QCOMPARE(library->value("SELECT total_changes()").toInt(), changes);
}

void DistanceWindowsTest::freesItsMemory()
{
    storeWorms(library.get(), 60);
    const auto use = [this] {
        const auto form = open();
        form->show();
        if (button(*form, "Search"))
            button(*form, "Search")->click();
        return memoryInUse();
    };
    use(); // what is kept for good is there now
    const qint64 before = memoryInUse();
    qint64 inUse = 0;
    for (int i = 0; i < 4; ++i)
        inUse = use();
    const qint64 kept = memoryInUse() - before;
    QVERIFY2(kept <= (inUse - before) / 4,
             qPrintable(QStringLiteral("%1 of %2").arg(kept).arg(inUse - before)));
}

QTEST_MAIN(DistanceWindowsTest)
#include "DistanceWindowsTest.moc"
