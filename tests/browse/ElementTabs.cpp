#include "browse/ElementTabs.h"

#include "browse/DrugsWidget.h"
#include "browse/ExperimentsWidget.h"
#include "browse/ManipulationsWidget.h"
#include "browse/MorphologiesWidget.h"
#include "browse/PublicationsWidget.h"
#include "browse/RNAiWidget.h"
#include "browse/SpeciesWidget.h"

#include <QItemSelectionModel>
#include <QTest>
#include <QVBoxLayout>

#include <algorithm>

namespace Planaria {

namespace {

struct Words
{
    QString title;
    QString element;
    QString nameColumn;
    QString word;
    QString singular;
    QString plural;
    QString inQuestion;
};

template <typename Widget> TabType tabType(const Words &words)
{
    return {words.title,
            words.element,
            words.element,
            words.nameColumn,
            words.word,
            words.singular,
            words.plural,
            QStringLiteral("This action will completely delete the selected %1 from the database! "
                           "Are you sure?")
                .arg(words.inQuestion),
            [](DB *db, QWidget *parent) -> QWidget * { return new Widget(db, parent); },
            [](QWidget *tab, int id) { qobject_cast<Widget *>(tab)->updateModel(id); },
            [](QWidget *tab) { qobject_cast<Widget *>(tab)->clear(); }};
}

} // namespace

const QList<TabType> &tabTypes()
{
    static const QList<TabType> types = {
        tabType<ExperimentsWidget>({"Experiments", "Experiment", "Name", "experiment", "experiment",
                                    "experiments", "experiments"}),
        tabType<ManipulationsWidget>({"Manipulations", "Manipulation", "Name", "manipulation",
                                      "manipulation", "manipulations", "menipulations"}),
        tabType<MorphologiesWidget>({"Morphologies", "Morphology", "Name", "morphology",
                                     "morphology", "morphologies", "morphologies"}),
        tabType<DrugsWidget>({"Drugs", "Drug", "Name", "drug", "drug", "drugs", "drugs"}),
        tabType<RNAiWidget>({"RNAi", "RNAi", "Name", "RNAi", "RNAi", "RNAi", "RNAis"}),
        tabType<SpeciesWidget>(
            {"Species", "Species", "Name", "species", "Species", "Species", "species"}),
        tabType<PublicationsWidget>({"Publications", "Publication", "Title", "publication",
                                     "publication", "publications", "publications"}),
    };
    return types;
}

void addTabTypes()
{
    QTest::addColumn<int>("type");
    for (int i = 0; i < tabTypes().size(); ++i)
        QTest::newRow(qUtf8Printable(tabTypes()[i].title)) << i;
}

ElementTab::ElementTab(int typeIndex, std::unique_ptr<TemporaryLibrary> file)
    : type(tabTypes().at(typeIndex)),
      library(file ? std::move(file) : std::make_unique<TemporaryLibrary>("library.edb")),
      tab(type.make(library->db(), &window)),
      told(tab.get(), SIGNAL(nEleChanged(int, QString, QString))),
      searched(tab.get(), SIGNAL(search(int, int, int, QString))),
      corrupted(tab.get(), SIGNAL(databaseCorrupted()))
{
    auto *layout = new QVBoxLayout(&window);
    layout->addWidget(tab.get());
    window.resize(700, 900);
    window.show();
    window.activateWindow();
    if (!QTest::qWaitForWindowActive(&window))
        qFatal("the tab does not become active");
}

DataTableView *ElementTab::view() const
{
    return tab->findChild<DataTableView *>();
}

QPushButton *ElementTab::button(const QString &text) const
{
    for (auto *button : tab->findChildren<QPushButton *>()) {
        if (button->text() == u'&' + text)
            return button;
    }
    qFatal("no button %s", qUtf8Printable(text));
}

QStringList ElementTab::enabledButtons() const
{
    QStringList enabled = {"Copy", "Edit", "Delete"};
    enabled.removeIf([this](const QString &text) { return !button(text)->isEnabled(); });
    return enabled;
}

void ElementTab::press(const QString &text)
{
    QTest::mouseClick(button(text), Qt::LeftButton);
}

void ElementTab::command(const QString &name)
{
    if (!QMetaObject::invokeMethod(tab.get(), qPrintable(name + type.element)))
        qFatal("no command %s", qUtf8Printable(name));
}

void ElementTab::command(const QString &name, int id)
{
    if (!QMetaObject::invokeMethod(tab.get(), qPrintable(name + type.element), Q_ARG(int, id)))
        qFatal("no command %s", qUtf8Printable(name));
}

int ElementTab::copy(int id)
{
    int copied = -1;
    if (!QMetaObject::invokeMethod(tab.get(), qPrintable("copy" + type.element),
                                   Q_RETURN_ARG(int, copied), Q_ARG(int, id)))
        qFatal("no command to copy");
    return copied;
}

QStringList ElementTab::headers() const
{
    QStringList texts;
    for (int column = 0; column < view()->model()->columnCount(); ++column) {
        if (!view()->isColumnHidden(column))
            texts += view()->model()->headerData(column, Qt::Horizontal).toString();
    }
    return texts;
}

QStringList ElementTab::shown() const
{
    QStringList names;
    for (int row = 0; row < view()->model()->rowCount(); ++row)
        names += view()->model()->index(row, 1).data().toString();
    return names;
}

QString ElementTab::current() const
{
    const QModelIndex index = view()->currentIndex();
    return index.isValid() ? index.siblingAtColumn(1).data().toString() : QString();
}

QStringList ElementTab::selected() const
{
    QStringList names;
    for (const QModelIndex &index : view()->selectionModel()->selectedRows(1))
        names += index.data().toString();
    return names;
}

QModelIndex ElementTab::cell(const QString &name, int column) const
{
    const qsizetype row = shown().indexOf(name);
    if (row < 0)
        qFatal("no row %s", qUtf8Printable(name));
    return view()->model()->index(static_cast<int>(row), column);
}

QPoint ElementTab::centre(const QString &name, int column) const
{
    const QModelIndex index = cell(name, column);
    view()->scrollTo(index);
    return view()->visualRect(index).center();
}

QPoint ElementTab::centreInWindow(const QString &name, int column) const
{
    return view()->viewport()->mapTo(&window, centre(name, column));
}

void ElementTab::select(const QStringList &names)
{
    for (const QString &name : names)
        QTest::mouseClick(view()->viewport(), Qt::LeftButton,
                          name == names.first() ? Qt::NoModifier : Qt::ControlModifier,
                          centre(name));
}

int ElementTab::idOf(const QString &name)
{
    return library->db()->existId(type.table, type.nameColumn, name);
}

} // namespace Planaria
