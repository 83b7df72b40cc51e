#include "SearchTab.h"

#include "browse/DataTableView.h"

#include <QComboBox>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QtTest>

#include <algorithm>

namespace Planaria {

SearchTab::SearchTab()
    : library("library.edb"), widget(library.db(), nullptr),
      told(&widget, &SearchWidget::nEleChanged),
      corrupted(&widget, &SearchWidget::databaseCorrupted)
{
    const auto combos = widget.findChildren<QComboBox *>();
    if (combos.size() != 3)
        qFatal("the tab has %lld combo boxes", static_cast<long long>(combos.size()));
    type = combos[0];
    field = combos[1];
    op = combos[2];
    value = widget.findChild<QLineEdit *>();
    view = widget.findChild<DataTableView *>();
    menu = widget.findChild<QMenu *>(QString(), Qt::FindDirectChildrenOnly);
    logSignals();
    widget.resize(800, 600);
    widget.show();
    if (!QTest::qWaitForWindowExposed(&widget))
        qFatal("the tab does not show");
}

void SearchTab::logSignals()
{
    const auto log = [this](const char *name, void (SearchWidget::*signal)()) {
        QObject::connect(&widget, signal, &widget, [this, name] { asked += name; });
    };
    const auto logId = [this](const char *name, void (SearchWidget::*signal)(int)) {
        QObject::connect(&widget, signal, &widget, [this, name](int id) {
            asked += QStringLiteral("%1(%2)").arg(name).arg(id);
        });
    };
    log("newExperiment", &SearchWidget::newExperiment);
    log("newManipulation", &SearchWidget::newManipulation);
    log("newMorphology", &SearchWidget::newMorphology);
    log("newDrug", &SearchWidget::newDrug);
    log("newRNAi", &SearchWidget::newRNAi);
    log("newSpecies", &SearchWidget::newSpecies);
    log("newPublication", &SearchWidget::newPublication);
    logId("copyExperiment", &SearchWidget::copyExperiment);
    logId("copyManipulation", &SearchWidget::copyManipulation);
    logId("copyMorphology", &SearchWidget::copyMorphology);
    logId("copyDrug", &SearchWidget::copyDrug);
    logId("copyRNAi", &SearchWidget::copyRNAi);
    logId("copySpecies", &SearchWidget::copySpecies);
    logId("copyPublication", &SearchWidget::copyPublication);
    logId("editExperiment", &SearchWidget::editExperiment);
    logId("editManipulation", &SearchWidget::editManipulation);
    logId("editMorphology", &SearchWidget::editMorphology);
    logId("editDrug", &SearchWidget::editDrug);
    logId("editRNAi", &SearchWidget::editRNAi);
    logId("editSpecies", &SearchWidget::editSpecies);
    logId("editPublication", &SearchWidget::editPublication);
    logId("deleteExperiment", &SearchWidget::deleteExperiment);
    logId("deleteManipulation", &SearchWidget::deleteManipulation);
    logId("deleteMorphology", &SearchWidget::deleteMorphology);
    logId("deleteDrug", &SearchWidget::deleteDrug);
    logId("deleteRNAi", &SearchWidget::deleteRNAi);
    logId("deleteSpecies", &SearchWidget::deleteSpecies);
    logId("deletePublication", &SearchWidget::deletePublication);
}

void SearchTab::ask(const SearchQuestion &question)
{
    type->setCurrentIndex(question.typeIndex);
    field->setCurrentIndex(question.fieldIndex);
    op->setCurrentIndex(question.operatorIndex);
    value->setText(question.value);
    press("Search");
}

QString SearchTab::question() const
{
    return QStringLiteral("%1 with %2 %3 %4")
        .arg(type->currentText(), field->currentText(), op->currentText(), value->text());
}

QStringList SearchTab::fields() const
{
    QStringList texts;
    for (int i = 0; i < field->count(); ++i)
        texts += field->itemText(i);
    return texts;
}

QStringList SearchTab::shown() const
{
    QStringList names;
    for (int row = 0; row < view->model()->rowCount(); ++row)
        names += view->model()->index(row, 1).data().toString();
    return names;
}

QStringList SearchTab::rows() const
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

QString SearchTab::current() const
{
    const QModelIndex index = view->currentIndex();
    return index.isValid() ? index.siblingAtColumn(1).data().toString() : QString();
}

int SearchTab::idOf(const QString &name) const
{
    return view->model()->index(static_cast<int>(shown().indexOf(name)), 0).data().toInt();
}

QPoint SearchTab::placeOf(const QString &name) const
{
    const QModelIndex index = view->model()->index(static_cast<int>(shown().indexOf(name)), 1);
    if (!index.isValid())
        qFatal("the table does not show %s", qUtf8Printable(name));
    view->scrollTo(index);
    return view->visualRect(index).center();
}

void SearchTab::click(const QString &name, Qt::KeyboardModifiers modifiers) const
{
    QTest::mouseClick(view->viewport(), Qt::LeftButton, modifiers, placeOf(name));
}

void SearchTab::doubleClick(const QString &name) const
{
    click(name);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, placeOf(name));
}

void SearchTab::callMenu() const
{
    const QPoint place(7, 5);
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, view->viewport()->mapToGlobal(place));
    QCoreApplication::sendEvent(view->viewport(), &event);
}

void SearchTab::choose(const QString &entry) const
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

void SearchTab::press(const QString &text) const
{
    QTest::mouseClick(button(text), Qt::LeftButton);
}

QPushButton *SearchTab::button(const QString &text) const
{
    for (auto *candidate : widget.findChildren<QPushButton *>())
        if (candidate->text() == text)
            return candidate;
    qFatal("there is no button %s", qUtf8Printable(text));
}

QStringList SearchTab::enabledButtons() const
{
    QStringList enabled;
    for (const char *text : {"&New", "&Copy", "&Edit", "&Delete"})
        if (button(text)->isEnabled())
            enabled += QString(text).remove(u'&');
    return enabled;
}

QStringList SearchTab::takeSignals()
{
    return std::exchange(asked, {});
}

QString SearchTab::lastTold() const
{
    if (told.isEmpty())
        return {};
    const QList<QVariant> last = told.last();
    return QStringLiteral("%1 %2/%3")
        .arg(last[0].toInt())
        .arg(last[1].toString(), last[2].toString());
}

} // namespace Planaria
