#pragma once

#include <QApplication>
#include <QGraphicsView>
#include <QMenu>
#include <QTest>
#include <QTimer>
#include <QWindow>

namespace Planaria {

/// A mouse over a view, which is led to places of the scene.
class Pointer final
{
public:
    explicit Pointer(QGraphicsView *shown) : view(shown) {}

    [[nodiscard]] QPoint placeOf(const QPointF &point) const { return view->mapFromScene(point); }
    /// Where the scene takes the pointer to be at @p point: at the corner of its pixel.
    [[nodiscard]] QPointF at(const QPointF &point) const
    {
        return view->mapToScene(placeOf(point));
    }

    void press(const QPointF &point, Qt::MouseButton button = Qt::LeftButton) const
    {
        QTest::mousePress(view->viewport(), button, Qt::NoModifier, placeOf(point));
    }
    void move(const QPointF &point) const { QTest::mouseMove(view->viewport(), placeOf(point)); }
    void release(const QPointF &point, Qt::MouseButton button = Qt::LeftButton) const
    {
        QTest::mouseRelease(view->viewport(), button, Qt::NoModifier, placeOf(point));
    }
    void click(const QPointF &point, Qt::KeyboardModifiers keys = Qt::NoModifier) const
    {
        QTest::mouseClick(view->viewport(), Qt::LeftButton, keys, placeOf(point));
    }
    /// Presses at the first place, goes on from one to the next, and lets go at the last.
    void drag(const QList<QPointF> &way) const
    {
        press(way.first());
        for (const QPointF &point : way.mid(1))
            move(point);
        release(way.last());
    }

    /// The entries of the menu that a right click at @p point opens, from which @p command is then
    /// chosen, or nothing.
    QStringList menuAt(const QPointF &point, const QString &command = {}) const
    {
        QStringList texts;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, view, [&] {
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            if (!menu)
                return;
            timer.stop();
            for (const QAction *action : menu->actions())
                texts += action->text();
            // It takes the release of the button, of which the view hears nothing.
            QTest::mouseRelease(menu->windowHandle(), Qt::RightButton, Qt::NoModifier, {-9, -9});
            choose(menu, command);
        });
        timer.start(10);
        // By way of the window, which turns the press into a request for a menu.
        const QPoint place = view->viewport()->mapTo(view->window(), placeOf(point));
        QTest::mousePress(view->window()->windowHandle(), Qt::RightButton, Qt::NoModifier, place);
        return texts;
    }

private:
    static void choose(QMenu *menu, const QString &command)
    {
        for (QAction *action : menu->actions()) {
            if (action->text() == command) {
                QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier,
                                  menu->actionGeometry(action).center());
                return;
            }
        }
        menu->close();
    }

    QGraphicsView *view;
};

} // namespace Planaria
