#include "browse/ElementTabs.h"
#include "browse/RenderLinkDelegate.h"

#include <QApplication>
#include <QDesktopServices>
#include <QImage>
#include <QPainter>
#include <QStandardItemModel>
#include <QStyledItemDelegate>
#include <QtTest>

namespace Planaria {

/// The addresses in the tab of the publications.
class PublicationsWidgetTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    // Clicks
    void opensTheAddressThatIsClicked();
    void opensNothingForAClickOnAnEmptyAddress();
    void opensNothingForAClickOnAnotherColumn();

    // Cursor
    void showsAHandOverAnAddress();
    void showsNoHandOverOtherCells();
    void showsNoHandAfterSeveralAddresses();
    void showsNoHandBelowTheRows();
    void showsNoHandBesidesTheTable();
    void showsNoHandWhenTheMouseHasLeft_data();
    void showsNoHandWhenTheMouseHasLeft();
    void showsNoHandWhenTheFileIsClosed();
    void leavesTheCursorsOfOthers();

    // Drawing
    void showsAddressesAsPlainText();
    void drawsAddressesAsLinks();
    void drawsNothingForAnEmptyAddress();
    void drawsOtherColumnsAsUsual();
    void leavesThePainterAsItWas();
    void showsAHandWhereItDrawsUnderTheMouse();
};

namespace {

constexpr int publications = 6;
constexpr int title = 1;
constexpr int url = 2;

constexpr auto withAddress = "Studies on pharynx regeneration and axial patterning in Phagocata "
                             "gracilis";
constexpr auto otherWithAddress = "APC-1 and the nerve cord";
constexpr auto withoutAddress = "Smedwi-2 restricts the dorsoventral axis";

/// Takes the place of the browser.
class Browser final : public QObject
{
    Q_OBJECT

public:
    Browser() { QDesktopServices::setUrlHandler("http", this, "open"); }
    ~Browser() override { QDesktopServices::unsetUrlHandler("http"); }

    QStringList opened;

public slots:
    void open(const QUrl &address) { opened += address.toString(); }
};

/// The tab with all its rows, and the mouse over it.
class PublicationsTab final
{
public:
    PublicationsTab() : tab(publications) { tab.update(); }

    void click(const QString &name, int column)
    {
        QTest::mouseClick(tab.view()->viewport(), Qt::LeftButton, Qt::NoModifier,
                          tab.centre(name, column));
    }

    void moveTo(const QString &name, int column)
    {
        QTest::mouseMove(tab.view()->viewport(), tab.centre(name, column));
    }

    ElementTab tab;
};

bool hasHand()
{
    const QCursor *cursor = QApplication::overrideCursor();
    return cursor && cursor->shape() == Qt::PointingHandCursor;
}

} // namespace

void PublicationsWidgetTest::init()
{
    while (QApplication::overrideCursor())
        QApplication::restoreOverrideCursor();
    QCursor::setPos(0, 0); // a mouse that stays where it is tells of no move
}

// --- Clicks ---

void PublicationsWidgetTest::opensTheAddressThatIsClicked()
{
    Browser browser;
    PublicationsTab mouse;
    mouse.click(withAddress, url);
    QCOMPARE(browser.opened, QStringList("http://example.org/doi/10.1000/750.1"));
}

void PublicationsWidgetTest::opensNothingForAClickOnAnEmptyAddress()
{
    Browser browser;
    PublicationsTab mouse;
    mouse.click(withoutAddress, url);
    QCOMPARE(mouse.tab.current(), QString(withoutAddress));
    QCOMPARE(browser.opened, QStringList());
}

void PublicationsWidgetTest::opensNothingForAClickOnAnotherColumn()
{
    Browser browser;
    PublicationsTab mouse;
    mouse.click(withAddress, title);
    mouse.click(withAddress, 3);
    QCOMPARE(browser.opened, QStringList());
}

// --- Cursor ---

void PublicationsWidgetTest::showsAHandOverAnAddress()
{
    PublicationsTab mouse;
    mouse.moveTo(withAddress, url);
    QVERIFY(hasHand());
}

void PublicationsWidgetTest::showsNoHandOverOtherCells()
{
    PublicationsTab mouse;
    mouse.moveTo(withAddress, url);
    mouse.moveTo(withAddress, title);
    QVERIFY(!hasHand());
    mouse.moveTo(withAddress, url);
    mouse.moveTo(withoutAddress, url);
    QVERIFY(!hasHand());
}

void PublicationsWidgetTest::showsNoHandAfterSeveralAddresses()
{
    PublicationsTab mouse;
    mouse.moveTo(withAddress, url);
    mouse.moveTo(otherWithAddress, url);
    QVERIFY(hasHand());
    mouse.moveTo(otherWithAddress, title);
    QVERIFY(!hasHand());
}

void PublicationsWidgetTest::showsNoHandBelowTheRows()
{
    PublicationsTab mouse;
    const QWidget *viewport = mouse.tab.view()->viewport();
    mouse.moveTo(withAddress, url);
    QVERIFY(hasHand());
    QTest::mouseMove(mouse.tab.view()->viewport(), {viewport->width() / 2, viewport->height() - 2});
    QVERIFY(!hasHand());
}

void PublicationsWidgetTest::showsNoHandBesidesTheTable()
{
    PublicationsTab mouse;
    mouse.moveTo(withAddress, url);
    QTest::mouseMove(mouse.tab.widget(), {2, 2});
    QVERIFY(!hasHand());
}

void PublicationsWidgetTest::showsNoHandWhenTheMouseHasLeft_data()
{
    QTest::addColumn<bool>("stillInTab");
    QTest::newRow("the tab") << false;
    QTest::newRow("the rows, for a header or a button") << true;
}

void PublicationsWidgetTest::showsNoHandWhenTheMouseHasLeft()
{
    QFETCH(const bool, stillInTab);
    PublicationsTab mouse;
    mouse.moveTo(withAddress, url);
    QVERIFY(hasHand());
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(stillInTab ? mouse.tab.view()->viewport() : mouse.tab.widget(), &leave);
    QVERIFY(!hasHand());
}

void PublicationsWidgetTest::showsNoHandWhenTheFileIsClosed()
{
    PublicationsTab mouse;
    mouse.moveTo(withAddress, url);
    QVERIFY(hasHand());
    mouse.tab.clear();
    QVERIFY(!hasHand());
}

void PublicationsWidgetTest::leavesTheCursorsOfOthers()
{
    PublicationsTab mouse;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    mouse.tab.clear();
    QVERIFY(QApplication::overrideCursor());
    QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
}

// --- Drawing ---

namespace {

/// A cell on white, and what a delegate draws into it.
class Cell final
{
public:
    Cell()
    {
        option.rect = {0, 0, 200, 30};
        option.palette.setColor(QPalette::Link, Qt::red);
        image.fill(Qt::white);
    }

    QImage drawn(const QStyledItemDelegate &delegate, const QModelIndex &index)
    {
        image.fill(Qt::white);
        QPainter painter(&image);
        delegate.paint(&painter, option, index);
        return image;
    }

    QStyleOptionViewItem option;

private:
    QImage image{200, 30, QImage::Format_RGB32};
};

QImage blank()
{
    QImage image(200, 30, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

/// As @p draw does on white.
QImage drawing(const std::function<void(QPainter *)> &draw)
{
    QImage image = blank();
    QPainter painter(&image);
    draw(&painter);
    return image;
}

} // namespace

void PublicationsWidgetTest::showsAddressesAsPlainText()
{
    const PublicationsTab mouse;
    const auto *delegate = mouse.tab.view()->itemDelegateForIndex(mouse.tab.cell(withAddress, url));
    QVERIFY(!qobject_cast<const PublicationsWidget::RenderLinkDelegate *>(delegate));
}

void PublicationsWidgetTest::drawsAddressesAsLinks()
{
    PublicationsTab mouse;
    const PublicationsWidget::RenderLinkDelegate delegate(mouse.tab.view()->viewport(),
                                                          mouse.tab.view());
    const QModelIndex index = mouse.tab.cell(withAddress, url);
    Cell cell;
    const QImage expected = drawing([&](QPainter *painter) {
        QFont font = cell.option.font;
        font.setUnderline(true);
        painter->setFont(font);
        painter->setPen(Qt::red);
        painter->drawText(cell.option.rect, Qt::AlignLeft | Qt::AlignVCenter,
                          index.data().toString());
    });
    QVERIFY(expected != blank());
    QCOMPARE(cell.drawn(delegate, index), expected);
}

void PublicationsWidgetTest::drawsNothingForAnEmptyAddress()
{
    PublicationsTab mouse;
    const PublicationsWidget::RenderLinkDelegate delegate(mouse.tab.view()->viewport(),
                                                          mouse.tab.view());
    Cell cell;
    cell.option.state |= QStyle::State_Selected | QStyle::State_MouseOver;
    QCOMPARE(cell.drawn(delegate, mouse.tab.cell(withoutAddress, url)), blank());
}

void PublicationsWidgetTest::drawsOtherColumnsAsUsual()
{
    PublicationsTab mouse;
    const PublicationsWidget::RenderLinkDelegate delegate(mouse.tab.view()->viewport(),
                                                          mouse.tab.view());
    const QModelIndex index = mouse.tab.cell(withAddress, title);
    Cell cell;
    const QImage usual = cell.drawn(QStyledItemDelegate(), index);
    QVERIFY(usual != blank());
    QCOMPARE(cell.drawn(delegate, index), usual);
}

void PublicationsWidgetTest::leavesThePainterAsItWas()
{
    PublicationsTab mouse;
    const PublicationsWidget::RenderLinkDelegate delegate(mouse.tab.view()->viewport(),
                                                          mouse.tab.view());
    QImage image = blank();
    QPainter painter(&image);
    painter.setPen(Qt::green);
    const QFont font = painter.font();
    delegate.paint(&painter, Cell().option, mouse.tab.cell(withAddress, url));
    QCOMPARE(painter.pen().color(), QColor(Qt::green));
    QCOMPARE(painter.font(), font);
}

void PublicationsWidgetTest::showsAHandWhereItDrawsUnderTheMouse()
{
    PublicationsTab mouse;
    QWidget *viewport = mouse.tab.view()->viewport();
    const PublicationsWidget::RenderLinkDelegate delegate(viewport, mouse.tab.view());
    QCursor::setPos(viewport->mapToGlobal(mouse.tab.centre(withAddress, url)));
    Cell cell;
    cell.option.state |= QStyle::State_MouseOver;
    cell.drawn(delegate, mouse.tab.cell(withAddress, url));
    QVERIFY(hasHand());
    cell.drawn(delegate, mouse.tab.cell(otherWithAddress, url));
    QVERIFY(!hasHand());
    cell.option.state &= ~QStyle::State_MouseOver;
    cell.drawn(delegate, mouse.tab.cell(withAddress, url));
    QVERIFY(!hasHand());
}

} // namespace Planaria

QTEST_MAIN(Planaria::PublicationsWidgetTest)
#include "PublicationsWidgetTest.moc"
