#include "morphology/MorphologyForm.h"

#include "db/ExperimentFactory.h"
#include "model/Morphology.h"
#include "model/MorphologyImage.h"
#include "model/Region.h"
#include "model/RegionsLink.h"
#include "model/SpotOrgan.h"
#include "morphology/MGOrgan.h"
#include "morphology/MGRegion.h"
#include "morphology/MorphoGraphView.h"
#include "morphology/MorphologyImageWidget.h"
#include "morphology/MorphologyItem.h"
#include "morphology/MorphologyView.h"
#include "support/DrawnWorm.h"
#include "support/ModalAnswerer.h"
#include "support/NamedForm.h"
#include "support/StatementLog.h"
#include "support/TemporaryLibrary.h"
#include "widgets/FileDialogAnswer.h"

#include <QAction>
#include <QBuffer>
#include <QDialogButtonBox>
#include <QGraphicsPathItem>
#include <QGraphicsScene>
#include <QLabel>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QSplitter>
#include <QTest>

using namespace Planaria;

namespace {

const ModalAnswerer::Box emptyName = {
    "Name is empty",
    "The name of a morphology cannot be left blank. Please, specify a name for the morphology.",
    QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Warning};
const ModalAnswerer::Box sameName = {
    "Morphology with same name found",
    "The database already contains a morphology with the same name. Please, specify a different "
    "name for this morphology.",
    QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Warning};
const ModalAnswerer::Box cannotOpen = {"Cannot open file", "Unable to open the file.",
                                       QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Critical};

/// The form with its parts as a user tells them apart.
struct OpenForm : NamedForm<MorphologyForm>
{
    OpenForm(Morphology *worm, DB *db) : NamedForm(worm, db) {}

    MorphoGraphView *graph() { return form.findChild<MorphoGraphView *>(); }
    MorphologyView *drawing() { return form.findChild<MorphologyView *>(); }
    QSplitter *splitter() { return form.findChild<QSplitter *>(); }
    QWidget *imageArea() { return splitter()->widget(2); }
    QList<MorphologyImageWidget *> pictures()
    {
        return form.findChildren<MorphologyImageWidget *>();
    }
    QAction *allParameters()
    {
        return form.findChild<QMenuBar *>()->actions().at(0)->menu()->actions().at(0);
    }
    QPushButton *addButton()
    {
        for (auto *button : form.findChildren<QPushButton *>()) {
            if (button->text() == "Add image")
                return button;
        }
        return nullptr;
    }
};

/// Drags the node of a region in steps, each a mouse move, and calls @p afterStep after each.
void dragNode(
    MorphoGraphView *graph, const Region *region, const QList<QPoint> &steps,
    const std::function<void()> &afterStep = [] {})
{
    QPoint pos = graph->mapFromScene(graph->regionNodes().value(region)->scenePos());
    QTest::mousePress(graph->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
    for (const QPoint &step : steps) {
        pos += step;
        QMouseEvent move(QEvent::MouseMove, pos, graph->viewport()->mapToGlobal(pos), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        qApp->notify(graph->viewport(), &move);
        afterStep();
    }
    QTest::mouseRelease(graph->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
}

/// Clicks on the node of a region, and on the last entry of the menu that a right click there
/// opens.
void deleteNode(OpenForm *open, const Region *region)
{
    MorphoGraphView *graph = open->graph();
    const QPoint pos = graph->mapFromScene(graph->regionNodes().value(region)->scenePos());
    QTest::mouseClick(graph->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
    // By way of the window, which turns the press into a request for a menu.
    QTest::mouseClick(open->form.windowHandle(), Qt::RightButton, Qt::NoModifier,
                      graph->viewport()->mapTo(&open->form, pos));
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY(menu);
    QAction *entry = menu->actions().last();
    QCOMPARE(entry->text(), "Delete selection");
    QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(entry).center());
    QVERIFY(!QApplication::activePopupWidget());
}

/// Chooses the entry of the picture's context menu.
void deletePicture(const MorphologyImageWidget *picture)
{
    for (QAction *action : picture->actions()) {
        if (action->text() == "Delete image")
            action->trigger();
    }
}

QList<QPainterPath> outlines(const MorphologyItem &item)
{
    QList<QPainterPath> paths;
    for (const QGraphicsPathItem *region : regionItems(item))
        paths += region->path().translated(region->pos());
    return paths;
}

QList<QPainterPath> shownOutlines(const MorphologyView *view)
{
    for (QGraphicsItem *item : view->scene()->items()) {
        if (const auto *worm = dynamic_cast<MorphologyItem *>(item))
            return outlines(*worm);
    }
    return {};
}

QList<QPainterPath> outlines(const Morphology &worm)
{
    return outlines(MorphologyItem(worm, nullptr, false));
}

QByteArray picture(const char *format, const QSize &size = {30, 20})
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

QVariant setting(const QString &name)
{
    return QSettings().value("MorphologyForm/" + name);
}

void setSetting(const QString &name, const QVariant &value)
{
    QSettings().setValue("MorphologyForm/" + name, value);
}

} // namespace

class MorphologyFormTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void opensOnANewWorm();
    void opensOnAStoredWorm();
    void leadsFromTheNameToItsField();
    void putsGraphDrawingAndPicturesSideBySide();
    void keepsTheMiddleApartFromTheRows();
    void hasItsButtonsInTheBottomRow();
    void startsInTheName();
    void offersAllParametersInTheViewMenu();
    void showsAllOrgansInTheGraphByShortcut();

    void takesTheNameWhenItsFieldIsLeft();
    void tellsAssistantsWhichWormItShows();
    void refusesANewWormWithoutName();
    void refusesAStoredWormThatLosesItsName();
    void takesANewNameByAnyWayToOk_data();
    void takesANewNameByAnyWayToOk();
    void refusesTheNameOfAnother_data();
    void refusesTheNameOfAnother();
    void acceptsTheOldNameOfAStoredWormUnasked();
    void tellsTheOldNameFromOneInOtherLetters_data();
    void tellsTheOldNameFromOneInOtherLetters();
    void comparesNamesExactly_data();
    void comparesNamesExactly();

    void addsAPictureAsItIsInItsFile_data();
    void addsAPictureAsItIsInItsFile();
    void asksForPicturesByTheirEndings();
    void asksForPicturesInTheFolderThatWasLastVisited();
    void addsNothingWhenTheUserCancels();
    void refusesAFileThatCannotBeOpened();
    void refusesAFileThatIsTooLarge();
    void refusesATextThatIsNamedLikeAPicture();
    void sharesTheWidthAmongPictures();
    void hidesThePicturesWithTheLastOfThem();
    void showsPicturesAgainAfterTheLastWasDeleted();

    void redrawsTheWormOneStepBehindADrag();
    void redrawsTheWormAfterADeletion();
    void leavesTheFileUntouchedWhenItIsCancelled_data();
    void leavesTheFileUntouchedWhenItIsCancelled();
    void staysOpenAtEscapeInTheGraph();
    void staysOpenAtEscapeInTheMidstOfADrag();
    void staysOpenAtEscapeInARubberBand();
    void writesNothingWhenItIsAccepted();

    void remembersItsSize();
    void keepsItsNormalSizeWhileItIsMaximized();
    void remembersAllParameters();
    void isModalWhenItOpensMaximized();

private:
    int storeWorm(const QString &name);
    /// Presses "Add image" and answers the file dialog; then expects @p box if it has a title.
    void addPicture(OpenForm *open, const QString &fileName, const ModalAnswerer::Box &box = {});
    QString fileWith(const QString &name, const QByteArray &bytes);
    QByteArray libraryBytes() const;

    std::unique_ptr<TemporaryLibrary> library;
    std::unique_ptr<Morphology> worm;
};

void MorphologyFormTest::init()
{
    QSettings().clear();
    library = std::make_unique<TemporaryLibrary>();
    worm = ExperimentFactory::instance(nullptr)->createWildMorphology();
    worm->setName("");
}

int MorphologyFormTest::storeWorm(const QString &name)
{
    const auto stored = ExperimentFactory::instance(nullptr)->createWildMorphology();
    stored->setName(name);
    return stored->submit(library->db());
}

void MorphologyFormTest::addPicture(OpenForm *open, const QString &fileName,
                                    const ModalAnswerer::Box &box)
{
    ModalAnswerer answerer;
    const auto seen = expectFileDialog(&answerer, fileName);
    if (!box.title.isEmpty())
        answerer.expectBox(box, QMessageBox::Ok);
    QTest::mouseClick(open->addButton(), Qt::LeftButton);
    QCOMPARE(answerer.problems(), QStringList());
}

QString MorphologyFormTest::fileWith(const QString &name, const QByteArray &bytes)
{
    QFile file(library->filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qUtf8Printable(file.fileName()));
    return file.fileName();
}

QByteArray MorphologyFormTest::libraryBytes() const
{
    QFile file(library->fileName());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// --- Layout ---

void MorphologyFormTest::opensOnANewWorm()
{
    const MorphologyForm form(worm.get(), library->db(), nullptr);
    QCOMPARE(form.windowTitle(), "New morphology");
    QCOMPARE(form.size(), QSize(800, 700));
    QCOMPARE(form.windowType(), Qt::Window);
    QCOMPARE(form.getMorphology(), worm.get());
}

void MorphologyFormTest::opensOnAStoredWorm()
{
    Morphology stored(storeWorm("Stored"), library->db(), true);
    OpenForm open(&stored, library->db());
    QCOMPARE(open.form.windowTitle(), "Edit morphology");
    QCOMPARE(open.nameEdit()->text(), "Stored");
    QCOMPARE(open.graph()->morphology(), &stored);
    QCOMPARE(open.drawing()->morphology(), &stored);
    QCOMPARE(shownOutlines(open.drawing()), outlines(stored));
}

void MorphologyFormTest::leadsFromTheNameToItsField()
{
    OpenForm open(worm.get(), library->db());
    const auto labels = open.form.findChildren<QLabel *>(Qt::FindDirectChildrenOnly) +
                        open.nameEdit()->parentWidget()->findChildren<QLabel *>();
    QCOMPARE(labels.size(), 1);
    QCOMPARE(labels.first()->text(), "Name:");
    QCOMPARE(labels.first()->buddy(), open.nameEdit());
    QVERIFY(labels.first()->geometry().right() < open.nameEdit()->geometry().left());
}

void MorphologyFormTest::putsGraphDrawingAndPicturesSideBySide()
{
    worm->addImage(picture("png"));
    OpenForm open(worm.get(), library->db());
    QCOMPARE(open.splitter()->orientation(), Qt::Horizontal);
    QCOMPARE(open.splitter()->count(), 3);
    QCOMPARE(open.splitter()->widget(0), open.graph());
    QCOMPARE(open.splitter()->widget(1), open.drawing());
    QCOMPARE(open.pictures().first()->parentWidget(), open.imageArea());
    QCOMPARE(open.imageArea()->layout()->contentsMargins(), QMargins());
    const QList<int> sizes = open.splitter()->sizes();
    for (const int size : sizes)
        QVERIFY2(qAbs(size - sizes.first()) <= 2, qPrintable(QString::number(size)));
}

void MorphologyFormTest::keepsTheMiddleApartFromTheRows()
{
    OpenForm open(worm.get(), library->db());
    const QLayout *layout = open.form.layout();
    const int middle = layout->indexOf(open.splitter());
    QCOMPARE(layout->count(), 5);
    QCOMPARE(middle, 2);
    for (const int place : {middle - 1, middle + 1}) {
        QVERIFY(layout->itemAt(place)->spacerItem());
        QCOMPARE(layout->itemAt(place)->sizeHint().height(), 10);
    }
}

void MorphologyFormTest::hasItsButtonsInTheBottomRow()
{
    OpenForm open(worm.get(), library->db());
    QCOMPARE(open.buttons()->standardButtons(), QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QVERIFY(open.addButton());
    const auto rectOf = [&open](const QWidget *widget) {
        return QRect(widget->mapTo(&open.form, QPoint()), widget->size());
    };
    const QRect left = rectOf(open.addButton());
    const QRect right = rectOf(open.buttons());
    QVERIFY(left.top() > rectOf(open.splitter()).bottom());
    QVERIFY(left.left() < 20);
    QVERIFY(right.right() > open.form.width() - 20);
    QVERIFY(right.left() > left.right() + 100);
    QVERIFY(open.buttons()->button(QDialogButtonBox::Ok)->isDefault());
}

void MorphologyFormTest::startsInTheName()
{
    OpenForm open(worm.get(), library->db());
    QCOMPARE(QApplication::focusWidget(), open.nameEdit());
    const QWidgetList order = {open.graph(),
                               open.drawing(),
                               open.addButton(),
                               open.buttons()->button(QDialogButtonBox::Ok),
                               open.buttons()->button(QDialogButtonBox::Cancel),
                               open.nameEdit()};
    for (QWidget *next : order) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), next);
    }
}

void MorphologyFormTest::offersAllParametersInTheViewMenu()
{
    OpenForm open(worm.get(), library->db());
    const auto menus = open.form.findChild<QMenuBar *>()->actions();
    QCOMPARE(menus.size(), 1);
    QCOMPARE(menus.first()->text(), "&View");
    QCOMPARE(menus.first()->menu()->actions().size(), 1);
    const QAction *action = open.allParameters();
    QCOMPARE(action->text(), "&All parameters");
    QCOMPARE(action->shortcut(), QKeySequence("Ctrl+A"));
    QCOMPARE(action->statusTip(), "Show all the parameters in the graph.");
    QVERIFY(action->isCheckable());
    QVERIFY(!action->isChecked());
    const QPixmap icon(":/Images/famfamfam_silk_icons/application_view_detail.png");
    QVERIFY(!icon.isNull());
    QCOMPARE(action->icon().pixmap(icon.size()).toImage(), icon.toImage());
}

void MorphologyFormTest::showsAllOrgansInTheGraphByShortcut()
{
    OpenForm open(worm.get(), library->db());
    const auto visibleOrgans = [&open] {
        int count = 0;
        for (QGraphicsItem *item : open.graph()->scene()->items())
            count += dynamic_cast<MGOrgan *>(item) && item->isVisible() ? 1 : 0;
        return count;
    };
    int organs = 0;
    for (const Region *region : worm->regions())
        organs += int(region->organs().size());
    QCOMPARE(visibleOrgans(), 0);
    open.graph()->setFocus();
    QTest::keyClick(open.graph(), Qt::Key_A, Qt::ControlModifier);
    QVERIFY(open.allParameters()->isChecked());
    QCOMPARE(visibleOrgans(), organs);
    QTest::keyClick(open.graph(), Qt::Key_A, Qt::ControlModifier);
    QVERIFY(!open.allParameters()->isChecked());
    QCOMPARE(visibleOrgans(), 0);
}

// --- Name ---

void MorphologyFormTest::takesTheNameWhenItsFieldIsLeft()
{
    OpenForm open(worm.get(), library->db());
    open.type("Two heads");
    QCOMPARE(worm->name(), "");
    open.graph()->setFocus();
    QCOMPARE(worm->name(), "Two heads");
    QVERIFY(open.form.isVisible());
}

void MorphologyFormTest::tellsAssistantsWhichWormItShows()
{
    OpenForm open(worm.get(), library->db());
    QCOMPARE(open.graph()->accessibleName(), "Graph of morphology");
    QCOMPARE(open.drawing()->accessibleName(), "Drawing of morphology");
    open.type("Two heads");
    open.graph()->setFocus();
    QCOMPARE(open.graph()->accessibleName(), "Graph of morphology Two heads");
    QCOMPARE(open.drawing()->accessibleName(), "Drawing of morphology Two heads");
    open.type("");
    open.graph()->setFocus();
    QCOMPARE(open.graph()->accessibleName(), "Graph of morphology");
    QCOMPARE(open.drawing()->accessibleName(), "Drawing of morphology");
}

void MorphologyFormTest::refusesANewWormWithoutName()
{
    OpenForm open(worm.get(), library->db());
    open.graph()->setFocus();
    ModalAnswerer answerer;
    answerer.expectBox(emptyName, QMessageBox::Ok);
    open.press(QDialogButtonBox::Ok);
    QCOMPARE(answerer.problems(), QStringList());
    QVERIFY(open.form.isVisible());
    QCOMPARE(open.form.focusWidget(), open.nameEdit());
}

void MorphologyFormTest::refusesAStoredWormThatLosesItsName()
{
    Morphology stored(storeWorm("Stored"), library->db(), true);
    OpenForm open(&stored, library->db());
    open.type("");
    ModalAnswerer answerer;
    answerer.expectBox(emptyName, QMessageBox::Ok);
    open.press(QDialogButtonBox::Ok);
    QCOMPARE(answerer.problems(), QStringList());
    QVERIFY(open.form.isVisible());
}

void MorphologyFormTest::takesANewNameByAnyWayToOk_data()
{
    QTest::addColumn<WayToOk>("way");
    for (const WayToOk &way : waysToOk())
        QTest::newRow(way.name) << way;
}

void MorphologyFormTest::takesANewNameByAnyWayToOk()
{
    QFETCH(WayToOk, way);
    storeWorm("Other");
    OpenForm open(worm.get(), library->db());
    const ModalAnswerer answerer;
    open.type("Two heads");
    way.go(open.nameEdit(), open.buttons()->button(QDialogButtonBox::Ok));
    QTRY_VERIFY(open.isAccepted());
    QCOMPARE(worm->name(), "Two heads");
    QCOMPARE(answerer.problems(), QStringList());
}

void MorphologyFormTest::refusesTheNameOfAnother_data()
{
    QTest::addColumn<bool>("stored");
    QTest::newRow("new worm") << false;
    QTest::newRow("stored worm") << true;
}

void MorphologyFormTest::refusesTheNameOfAnother()
{
    QFETCH(bool, stored);
    storeWorm("Other");
    if (stored)
        worm = std::make_unique<Morphology>(storeWorm("Stored"), library->db(), true);
    OpenForm open(worm.get(), library->db());
    open.type("Other");
    ModalAnswerer answerer;
    answerer.expectBox(sameName, QMessageBox::Ok);
    open.press(QDialogButtonBox::Ok);
    QCOMPARE(answerer.problems(), QStringList());
    QVERIFY(open.form.isVisible());
    QCOMPARE(open.form.focusWidget(), open.nameEdit());

    open.type("Another");
    open.press(QDialogButtonBox::Ok);
    QVERIFY(open.isAccepted());
}

void MorphologyFormTest::acceptsTheOldNameOfAStoredWormUnasked()
{
    StatementLog log;
    init(); // another library, whose connections the log knows
    Morphology stored(storeWorm("Stored"), library->db(), true);
    OpenForm open(&stored, library->db());
    open.type("Something else");
    open.graph()->setFocus();
    QCOMPARE(stored.name(), "Something else");
    open.type("Stored");
    const ModalAnswerer answerer;
    QVERIFY(!log.take().isEmpty());
    open.press(QDialogButtonBox::Ok);
    QVERIFY(open.isAccepted());
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(answerer.problems(), QStringList());
}

void MorphologyFormTest::tellsTheOldNameFromOneInOtherLetters_data()
{
    QTest::addColumn<bool>("taken");
    QTest::newRow("of another worm") << true;
    QTest::newRow("of no worm") << false;
}

void MorphologyFormTest::tellsTheOldNameFromOneInOtherLetters()
{
    QFETCH(bool, taken);
    Morphology stored(storeWorm("Stored"), library->db(), true);
    if (taken)
        storeWorm("STORED");
    OpenForm open(&stored, library->db());
    open.type("STORED");
    ModalAnswerer answerer;
    if (taken)
        answerer.expectBox(sameName, QMessageBox::Ok);
    open.press(QDialogButtonBox::Ok);
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(open.isAccepted(), !taken);
}

void MorphologyFormTest::comparesNamesExactly_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("other case") << "two heads";
    QTest::newRow("longer") << "Two heads 2";
    QTest::newRow("space at the end") << "Two heads ";
    QTest::newRow("apostrophe") << "Two' heads";
    QTest::newRow("wildcard") << "Two%heads";
}

void MorphologyFormTest::comparesNamesExactly()
{
    QFETCH(QString, name);
    storeWorm("Two heads");
    OpenForm open(worm.get(), library->db());
    open.type(name);
    const ModalAnswerer answerer;
    open.press(QDialogButtonBox::Ok);
    QVERIFY(open.isAccepted());
    QCOMPARE(worm->name(), name);
    QCOMPARE(answerer.problems(), QStringList());
}

// --- Pictures ---

void MorphologyFormTest::addsAPictureAsItIsInItsFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("png") << "worm.png" << picture("png");
    QTest::newRow("jpg") << "worm.jpg" << picture("jpg");
    QTest::newRow("jpeg") << "worm.jpeg" << picture("jpg");
    QTest::newRow("bmp") << "worm.bmp" << picture("bmp");
    QTest::newRow("more bytes behind the picture") << "worm.png" << picture("png") + "notes";
}

void MorphologyFormTest::addsAPictureAsItIsInItsFile()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    OpenForm open(worm.get(), library->db());
    QVERIFY(open.imageArea()->isHidden());
    addPicture(&open, fileWith(name, bytes));

    QCOMPARE(worm->nImages(), 1);
    QCOMPARE(worm->getImage(0)->bytes(), bytes);
    QVERIFY(open.imageArea()->isVisible());
    QCOMPARE(open.pictures().size(), 1);
    QVERIFY(open.pictures().first()->isVisible());
    QTRY_VERIFY(open.pictures().first()->width() > 50);

    open.type("Worm");
    open.press(QDialogButtonBox::Ok);
    QVERIFY(open.isAccepted());
    const Morphology stored(worm->submit(library->db()), library->db(), true);
    QCOMPARE(stored.getImage(0)->bytes(), bytes);
    QCOMPARE(library->brokenReferences(), QStringList());
}

void MorphologyFormTest::asksForPicturesByTheirEndings()
{
    OpenForm open(worm.get(), library->db());
    ModalAnswerer answerer;
    const auto seen = expectFileDialog(&answerer, fileWith("worm.png", picture("png")));
    QTest::mouseClick(open.addButton(), Qt::LeftButton);
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(seen->asksToSave, false);
    QCOMPARE(seen->title, "Add image");
    QCOMPARE(seen->filters, QStringList{"Images (*.bmp *.jpg *.jpeg *.png)"});
    QCOMPARE(seen->parent, &open.form);
}

void MorphologyFormTest::asksForPicturesInTheFolderThatWasLastVisited()
{
    const QString folder = library->filePath("pictures");
    QVERIFY(QDir().mkpath(folder));
    OpenForm open(worm.get(), library->db());
    ModalAnswerer answerer;
    answerer.expectDialog([&folder](QDialog *dialog) {
        qobject_cast<QFileDialog *>(dialog)->setDirectory(folder);
        dialog->reject();
    });
    QTest::mouseClick(open.addButton(), Qt::LeftButton);
    const auto seen = expectFileDialog(&answerer, fileWith("worm.png", picture("png")));
    QTest::mouseClick(open.addButton(), Qt::LeftButton);
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(seen->folder, folder);
}

void MorphologyFormTest::addsNothingWhenTheUserCancels()
{
    OpenForm open(worm.get(), library->db());
    addPicture(&open, QString());
    QCOMPARE(worm->nImages(), 0);
    QVERIFY(open.imageArea()->isHidden());
}

void MorphologyFormTest::refusesAFileThatCannotBeOpened()
{
    OpenForm open(worm.get(), library->db());
    const QString fileName = fileWith("worm.png", picture("png"));
    ModalAnswerer answerer;
    answerer.expectDialog([&fileName](QDialog *dialog) {
        dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(fileName);
        connect(dialog, &QDialog::accepted, dialog, [&fileName] { QFile::remove(fileName); });
        dialog->accept();
    });
    answerer.expectBox(cannotOpen, QMessageBox::Ok);
    QTest::mouseClick(open.addButton(), Qt::LeftButton);
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(worm->nImages(), 0);
    QVERIFY(open.imageArea()->isHidden());
}

void MorphologyFormTest::refusesAFileThatIsTooLarge()
{
    OpenForm open(worm.get(), library->db());
    const QString fileName = fileWith("worm.png", picture("png"));
    QVERIFY(QFile::resize(fileName, MorphologyImage::largestFile + 1)); // takes no room on the disk
    addPicture(&open, fileName, cannotOpen);
    QCOMPARE(worm->nImages(), 0);
    QVERIFY(open.pictures().isEmpty());
    QVERIFY(open.imageArea()->isHidden());
}

void MorphologyFormTest::refusesATextThatIsNamedLikeAPicture()
{
    OpenForm open(worm.get(), library->db());
    addPicture(&open, fileWith("worm.png", "Schmidtea, two heads"),
               {"Cannot understand file", "Unable to understand the format of the image file.",
                QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Critical});
    QCOMPARE(worm->nImages(), 0);
    QVERIFY(open.pictures().isEmpty());
    QVERIFY(open.imageArea()->isHidden());
}

void MorphologyFormTest::sharesTheWidthAmongPictures()
{
    worm->addImage(picture("png", {10, 10}));
    worm->addImage(picture("png", {200, 10}));
    OpenForm open(worm.get(), library->db());
    addPicture(&open, fileWith("worm.png", picture("png")));
    QCOMPARE(open.pictures().size(), 3);
    const int width = open.pictures().first()->width();
    for (const MorphologyImageWidget *widget : open.pictures())
        QTRY_VERIFY(qAbs(widget->width() - open.pictures().first()->width()) <= 1);
    QVERIFY(width > 50);
    const auto *layout = qobject_cast<QHBoxLayout *>(open.imageArea()->layout());
    QVERIFY(layout);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(layout->stretch(i), 1);
}

void MorphologyFormTest::hidesThePicturesWithTheLastOfThem()
{
    worm->addImage(picture("png"));
    OpenForm open(worm.get(), library->db());
    addPicture(&open, fileWith("worm.png", picture("png")));
    deletePicture(open.pictures().at(0));
    QVERIFY(open.imageArea()->isVisible());
    deletePicture(open.pictures().at(1)); // connected when it was added
    QVERIFY(open.imageArea()->isHidden());
    QCOMPARE(worm->nImages(), 0);
}

void MorphologyFormTest::showsPicturesAgainAfterTheLastWasDeleted()
{
    worm->addImage(picture("png"));
    OpenForm open(worm.get(), library->db());
    deletePicture(open.pictures().at(0));
    QVERIFY(open.imageArea()->isHidden()); // connected when the form was made
    addPicture(&open, fileWith("worm.png", picture("png")));
    QVERIFY(open.imageArea()->isVisible());
    QCOMPARE(worm->nImages(), 1);
    QTRY_VERIFY(open.pictures().at(1)->width() > open.imageArea()->width() - 10);
}

// --- Editing ---

void MorphologyFormTest::redrawsTheWormOneStepBehindADrag()
{
    OpenForm open(worm.get(), library->db());
    const QList<QPainterPath> first = outlines(*worm);
    QList<QPainterPath> before = first;
    int step = 0;
    dragNode(open.graph(), worm->regions().first(), {{30, 0}, {30, 10}, {0, -20}}, [&] {
        ++step;
        const QList<QPainterPath> now = outlines(*worm);
        QVERIFY2(now != before, qPrintable(QString::number(step)));
        QVERIFY2(shownOutlines(open.drawing()) == before, qPrintable(QString::number(step)));
        before = now;
    });
    QCOMPARE(step, 3);
    QVERIFY(shownOutlines(open.drawing()) != first);
}

void MorphologyFormTest::redrawsTheWormAfterADeletion()
{
    OpenForm open(worm.get(), library->db());
    const auto regions = worm->regions().size();
    deleteNode(&open, worm->regions().last());
    QCOMPARE(worm->regions().size(), regions - 1);
    QCOMPARE(shownOutlines(open.drawing()), outlines(*worm));
}

void MorphologyFormTest::leavesTheFileUntouchedWhenItIsCancelled_data()
{
    using Way = std::function<void(OpenForm *)>;
    QTest::addColumn<Way>("giveUp");
    QTest::newRow("Cancel") << Way([](OpenForm *open) { open->press(QDialogButtonBox::Cancel); });
    QTest::newRow("Escape in the name")
        << Way([](OpenForm *open) { QTest::keyClick(open->nameEdit(), Qt::Key_Escape); });
    QTest::newRow("Escape in the drawing")
        << Way([](OpenForm *open) { QTest::keyClick(open->drawing(), Qt::Key_Escape); });
    QTest::newRow("window closed") << Way([](OpenForm *open) { open->form.close(); });
}

void MorphologyFormTest::leavesTheFileUntouchedWhenItIsCancelled()
{
    QFETCH(std::function<void(OpenForm *)>, giveUp);
    const int id = storeWorm("Stored");
    const Morphology original(id, library->db(), true);
    const QByteArray bytes = libraryBytes();
    Morphology edited(id, library->db(), true);
    OpenForm open(&edited, library->db());
    open.type("Edited");
    dragNode(open.graph(), edited.regions().first(), {{30, 0}, {30, 10}});
    addPicture(&open, fileWith("worm.png", picture("png")));
    deleteNode(&open, edited.regions().last());
    giveUp(&open);

    QVERIFY(open.form.isHidden());
    QCOMPARE(open.form.result(), int(QDialog::Rejected));
    QVERIFY(!(edited == original)); // nothing is undone in memory
    QCOMPARE(libraryBytes(), bytes);
    QVERIFY(Morphology(id, library->db(), true) == original);
}

void MorphologyFormTest::staysOpenAtEscapeInTheGraph()
{
    OpenForm open(worm.get(), library->db());
    const QPoint corner(3, 3);
    QTest::mouseClick(open.graph()->viewport(), Qt::LeftButton, Qt::NoModifier, corner);
    QCOMPARE(QApplication::focusWidget(), open.graph());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QVERIFY(open.form.isVisible());
}

void MorphologyFormTest::staysOpenAtEscapeInTheMidstOfADrag()
{
    OpenForm open(worm.get(), library->db());
    Region *dragged = worm->regions().first();
    double dist = dragged->links().first()->totalDist();
    int step = 0;
    dragNode(open.graph(), dragged, {{0, -20}, {0, -30}, {0, -10}}, [&] {
        QVERIFY(dragged->links().first()->totalDist() > dist);
        dist = dragged->links().first()->totalDist();
        QCOMPARE(QApplication::focusWidget(), open.graph());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        QVERIFY(open.form.isVisible());
        ++step;
    });
    QCOMPARE(step, 3);
    QVERIFY(open.form.isVisible());
    QCOMPARE(dragged->links().first()->totalDist(), dist);
}

void MorphologyFormTest::staysOpenAtEscapeInARubberBand()
{
    OpenForm open(worm.get(), library->db());
    QWidget *viewport = open.graph()->viewport();
    const QPoint end = viewport->rect().bottomRight() - QPoint(3, 3);
    QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, QPoint(3, 3));
    QTest::mouseMove(viewport, end);
    QVERIFY(!open.graph()->rubberBandRect().isNull());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QVERIFY(open.form.isVisible());
    QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, end);
    for (const MGRegion *node : open.graph()->regionNodes())
        QVERIFY(node->isSelected());
}

void MorphologyFormTest::writesNothingWhenItIsAccepted()
{
    const QByteArray bytes = libraryBytes();
    OpenForm open(worm.get(), library->db());
    open.type("Worm");
    open.press(QDialogButtonBox::Ok);
    QVERIFY(open.isAccepted());
    QCOMPARE(worm->id(), 0);
    QCOMPARE(libraryBytes(), bytes);
}

// --- Settings ---

void MorphologyFormTest::remembersItsSize()
{
    {
        MorphologyForm form(worm.get(), library->db(), nullptr);
        form.resize(640, 480);
    }
    QCOMPARE(setting("size").toSize(), QSize(640, 480));
    QCOMPARE(setting("maximized"), QVariant(false));
    QCOMPARE(setting("showAllParameters"), QVariant(false));
    QCOMPARE(QSettings().allKeys().size(), 3);
    QCOMPARE(MorphologyForm(worm.get(), library->db(), nullptr).size(), QSize(640, 480));
}

void MorphologyFormTest::keepsItsNormalSizeWhileItIsMaximized()
{
    setSetting("size", QSize(640, 480));
    {
        MorphologyForm form(worm.get(), library->db(), nullptr);
        form.showMaximized();
        QTRY_VERIFY(form.size() != QSize(640, 480));
    }
    QCOMPARE(setting("maximized").toBool(), true);
    QCOMPARE(setting("size").toSize(), QSize(640, 480));
}

void MorphologyFormTest::remembersAllParameters()
{
    {
        OpenForm open(worm.get(), library->db());
        open.allParameters()->trigger();
    }
    QCOMPARE(setting("showAllParameters").toBool(), true);
    OpenForm open(worm.get(), library->db());
    QVERIFY(open.allParameters()->isChecked());
    for (QGraphicsItem *item : open.graph()->scene()->items())
        QVERIFY(!dynamic_cast<MGOrgan *>(item) || item->isVisible());
}

void MorphologyFormTest::isModalWhenItOpensMaximized()
{
    setSetting("maximized", true);
    MorphologyForm form(worm.get(), library->db(), nullptr);
    QVERIFY(form.isHidden());
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

QTEST_MAIN(MorphologyFormTest)
#include "MorphologyFormTest.moc"
