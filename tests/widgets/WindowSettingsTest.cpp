#include "widgets/WindowSettings.h"

#include "support/ModalAnswerer.h"

#include <QDialog>
#include <QSettings>
#include <QTest>

using namespace Planaria;

namespace {
const QString group = QStringLiteral("SomeForm");
}

class WindowSettingsTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void keepsTheSize();
    void keepsTheMaximizedState();
    void leavesTheStoredSizeAloneWhileMaximized();
    void returnsToTheStoredSizeAfterMaximizing();
    void leavesANewWindowAsItIs();
    void keepsTheWindowsApart();
    void showsNoWindow();
    void leavesAMaximizedDialogModal();
};

void WindowSettingsTest::init()
{
    QSettings().clear();
}

void WindowSettingsTest::keepsTheSize()
{
    QWidget first;
    first.resize(640, 480);
    WindowSettings::write(&first, group);
    QCOMPARE(QSettings().value("SomeForm/size").toSize(), QSize(640, 480));
    QCOMPARE(QSettings().value("SomeForm/maximized"), QVariant(false));

    QWidget second;
    WindowSettings::read(&second, group);
    QCOMPARE(second.size(), QSize(640, 480));
    QVERIFY(!second.isMaximized());
}

void WindowSettingsTest::keepsTheMaximizedState()
{
    QWidget first;
    first.showMaximized();
    WindowSettings::write(&first, group);
    QCOMPARE(QSettings().value("SomeForm/maximized").toBool(), true);

    QWidget second;
    WindowSettings::read(&second, group);
    QVERIFY(second.isMaximized());
    second.show();
    QVERIFY(second.isMaximized());
}

void WindowSettingsTest::leavesTheStoredSizeAloneWhileMaximized()
{
    QSettings().setValue("SomeForm/size", QSize(640, 480));
    QWidget window;
    window.showMaximized();
    QTRY_VERIFY(window.size() != QSize(640, 480));
    WindowSettings::write(&window, group);
    QCOMPARE(QSettings().value("SomeForm/size").toSize(), QSize(640, 480));
}

void WindowSettingsTest::returnsToTheStoredSizeAfterMaximizing()
{
    QSettings().setValue("SomeForm/size", QSize(640, 480));
    QSettings().setValue("SomeForm/maximized", true);
    QWidget window;
    WindowSettings::read(&window, group);
    window.show();
    QTRY_VERIFY(window.size() != QSize(640, 480));
    window.showNormal();
    QTRY_COMPARE(window.size(), QSize(640, 480));
}

void WindowSettingsTest::leavesANewWindowAsItIs()
{
    QWidget window;
    window.resize(345, 234);
    WindowSettings::read(&window, group);
    QCOMPARE(window.size(), QSize(345, 234));
    QVERIFY(!window.isMaximized());
    QVERIFY(QSettings().allKeys().isEmpty());
}

void WindowSettingsTest::keepsTheWindowsApart()
{
    QWidget window;
    window.resize(640, 480);
    WindowSettings::write(&window, group);
    QWidget other;
    other.resize(345, 234);
    WindowSettings::read(&other, QStringLiteral("OtherForm"));
    QCOMPARE(other.size(), QSize(345, 234));
}

void WindowSettingsTest::showsNoWindow()
{
    QSettings().setValue("SomeForm/maximized", true);
    QWidget window;
    WindowSettings::read(&window, group);
    QVERIFY(window.isHidden());
}

void WindowSettingsTest::leavesAMaximizedDialogModal()
{
    QSettings().setValue("SomeForm/maximized", true);
    QDialog dialog;
    WindowSettings::read(&dialog, group);
    const QDialog *modal = nullptr;
    ModalAnswerer answerer;
    answerer.expectDialog([&modal](QDialog *active) {
        modal = active;
        active->reject();
    });
    QTimer::singleShot(2000, &dialog, &QDialog::reject); // what is not modal is never answered
    dialog.exec();
    QCOMPARE(answerer.problems(), QStringList());
    QCOMPARE(modal, &dialog);
    QVERIFY(dialog.isMaximized());
}

QTEST_MAIN(WindowSettingsTest)
#include "WindowSettingsTest.moc"
