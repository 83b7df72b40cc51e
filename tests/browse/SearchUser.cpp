#include "SearchUser.h"

#include "browse/SearchWidget.h"

#include <QComboBox>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QtTest>

#include <algorithm>

namespace Planaria {

void callMenuOn(const QAbstractItemView *view)
{
    const QPoint place(7, 5);
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, view->viewport()->mapToGlobal(place));
    QCoreApplication::sendEvent(view->viewport(), &event);
}

void chooseFrom(QMenu *menu, const QString &entry)
{
    for (QAction *action : menu->actions()) {
        if (action->text() == entry) {
            QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier,
                              menu->actionGeometry(action).center());
            return;
        }
    }
    qFatal("the menu has no entry %s", qUtf8Printable(entry));
}

SearchUser::SearchUser(SearchWidget *searchWidget) : tab(searchWidget)
{
    const auto combos = tab->findChildren<QComboBox *>();
    if (combos.size() != 3)
        qFatal("the tab has %lld combo boxes", static_cast<long long>(combos.size()));
    type = combos[0];
    field = combos[1];
    op = combos[2];
    value = tab->findChild<QLineEdit *>();
    view = tab->findChild<DataTableView *>();
    menu = tab->findChild<QMenu *>(QString(), Qt::FindDirectChildrenOnly);
}

void SearchUser::ask(const SearchQuestion &question) const
{
    type->setCurrentIndex(question.typeIndex);
    field->setCurrentIndex(question.fieldIndex);
    op->setCurrentIndex(question.operatorIndex);
    value->setText(question.value);
    press("Search");
}

QString SearchUser::question() const
{
    return QStringLiteral("%1 with %2 %3 %4")
        .arg(type->currentText(), field->currentText(), op->currentText(), value->text());
}

QStringList SearchUser::fields() const
{
    QStringList texts;
    for (int i = 0; i < field->count(); ++i)
        texts += field->itemText(i);
    return texts;
}

QStringList SearchUser::shown() const
{
    QStringList names;
    for (int row = 0; row < view->model()->rowCount(); ++row)
        names += view->model()->index(row, 1).data().toString();
    return names;
}

QStringList SearchUser::rows() const
{
    QStringList texts;
    for (int row = 0; row < view->model()->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < view->model()->columnCount(); ++column)
            cells += view->model()->index(row, column).data().toString();
        texts += cells.join(" | ");
    }
    std::sort(texts.begin(), texts.end());
    return texts;
}

QString SearchUser::current() const
{
    const QModelIndex index = view->currentIndex();
    return index.isValid() ? index.siblingAtColumn(1).data().toString() : QString();
}

int SearchUser::idOf(const QString &name) const
{
    return view->model()->index(static_cast<int>(shown().indexOf(name)), 0).data().toInt();
}

QPoint SearchUser::placeOf(const QString &name) const
{
    const QModelIndex index = view->model()->index(static_cast<int>(shown().indexOf(name)), 1);
    if (!index.isValid())
        qFatal("the table does not show %s", qUtf8Printable(name));
    view->scrollTo(index);
    return view->visualRect(index).center();
}

void SearchUser::click(const QString &name, Qt::KeyboardModifiers modifiers) const
{
    QTest::mouseClick(view->viewport(), Qt::LeftButton, modifiers, placeOf(name));
}

void SearchUser::doubleClick(const QString &name) const
{
    click(name);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, placeOf(name));
}

void SearchUser::press(const QString &text) const
{
    QTest::mouseClick(button(text), Qt::LeftButton);
}

QPushButton *SearchUser::button(const QString &text) const
{
    for (auto *candidate : tab->findChildren<QPushButton *>())
        if (candidate->text() == text)
            return candidate;
    qFatal("there is no button %s", qUtf8Printable(text));
}

QStringList SearchUser::enabledButtons() const
{
    QStringList enabled;
    for (const char *text : {"&New", "&Copy", "&Edit", "&Delete"})
        if (button(text)->isEnabled())
            enabled += QString(text).remove(u'&');
    return enabled;
}

} // namespace Planaria
