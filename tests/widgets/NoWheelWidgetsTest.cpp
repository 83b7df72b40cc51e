#include "TurnWheel.h"
#include "widgets/ComboBoxNoWheel.h"
#include "widgets/DoubleSpinBoxNoWheel.h"
#include "widgets/SpinBoxNoWheel.h"

#include <QMetaProperty>
#include <QScrollArea>
#include <QScrollBar>

using namespace Planaria;

namespace {

constexpr int scrolledTo = 100;

QWidget *newSpinBox(QWidget *parent)
{
    auto *box = new SpinBoxNoWheel(parent);
    box->setValue(50);
    return box;
}

QWidget *newDoubleSpinBox(QWidget *parent)
{
    auto *box = new DoubleSpinBoxNoWheel(parent);
    box->setValue(50.5);
    return box;
}

QWidget *newComboBox(QWidget *parent)
{
    auto *box = new ComboBoxNoWheel(parent);
    box->addItems({"Eye", "Brain", "Pharynx"});
    box->setCurrentIndex(1);
    return box;
}

QWidget *newEditableComboBox(QWidget *parent)
{
    QWidget *box = newComboBox(parent);
    box->setProperty("editable", true);
    return box;
}

using Make = QWidget *(*)(QWidget *);

const QList<std::pair<const char *, Make>> kinds = {
    {"spin box", &newSpinBox},
    {"spin box for fractions", &newDoubleSpinBox},
    {"combo box", &newComboBox},
    {"editable combo box", &newEditableComboBox},
};

/// A scroll area with one widget in sight, and room to scroll up and down.
class ScrolledWidget final
{
public:
    explicit ScrolledWidget(Make make)
    {
        auto *content = new QWidget;
        content->resize(200, 2000);
        widget = make(content);
        widget->setGeometry(20, scrolledTo + 80, 120, 30);
        area.setWidget(content);
        area.resize(300, 200);
        area.show();
        area.verticalScrollBar()->setValue(scrolledTo);
    }

    [[nodiscard]] bool activate() { return QTest::qWaitForWindowActive(&area); }
    [[nodiscard]] int position() const { return area.verticalScrollBar()->value(); }
    [[nodiscard]] QVariant value() const
    {
        return widget->metaObject()->userProperty().read(widget);
    }

    QWidget *widget;

private:
    QScrollArea area;
};

} // namespace

Q_DECLARE_METATYPE(Make)

class NoWheelWidgetsTest final : public QObject
{
    Q_OBJECT

private slots:
    void leaveTheWheelToTheScrollArea_data();
    void leaveTheWheelToTheScrollArea();
    void answerTheKeyboard_data();
    void answerTheKeyboard();
};

void NoWheelWidgetsTest::leaveTheWheelToTheScrollArea_data()
{
    QTest::addColumn<Make>("make");
    QTest::addColumn<bool>("focused");
    for (const auto &[name, make] : kinds) {
        QTest::addRow("%s", name) << make << false;
        QTest::addRow("%s with the focus", name) << make << true;
    }
}

void NoWheelWidgetsTest::leaveTheWheelToTheScrollArea()
{
    QFETCH(const Make, make);
    QFETCH(const bool, focused);
    ScrolledWidget scrolled(make);
    QVERIFY(scrolled.activate());
    if (focused)
        scrolled.widget->setFocus();
    else
        scrolled.widget->clearFocus();
    QCOMPARE(scrolled.widget->hasFocus(), focused);
    const QVariant value = scrolled.value();

    turnWheel(scrolled.widget, wheelDown);
    QCOMPARE(scrolled.value(), value);
    const int below = scrolled.position();
    QVERIFY(below > scrolledTo);

    turnWheel(scrolled.widget, wheelUp);
    QCOMPARE(scrolled.value(), value);
    QVERIFY(scrolled.position() < below);
}

void NoWheelWidgetsTest::answerTheKeyboard_data()
{
    QTest::addColumn<Make>("make");
    for (const auto &[name, make] : kinds)
        QTest::addRow("%s", name) << make;
}

void NoWheelWidgetsTest::answerTheKeyboard()
{
    QFETCH(const Make, make);
    ScrolledWidget scrolled(make);
    const QVariant value = scrolled.value();

    QTest::keyClick(scrolled.widget, Qt::Key_Down);
    QVERIFY(scrolled.value() != value);
    QTest::keyClick(scrolled.widget, Qt::Key_Up);
    QCOMPARE(scrolled.value(), value);
}

QTEST_MAIN(NoWheelWidgetsTest)
#include "NoWheelWidgetsTest.moc"
