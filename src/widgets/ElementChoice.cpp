#include "widgets/ElementChoice.h"

#include "db/DB.h"
#include "widgets/ChoiceToolTip.h"

#include <QComboBox>
#include <QScopedValueRollback>

#include <utility>

namespace Planaria {

ElementChoice::ElementChoice(QComboBox *shownIn, std::shared_ptr<QSqlQueryModel> rows)
    : QObject(shownIn), box(shownIn), model(std::move(rows))
{
    box->setModel(model.get());
    box->setModelColumn(1);
    box->setCurrentIndex(-1);
    showChoiceInToolTip(box);
    // Connected after the box, which has followed each change of the rows when these are called.
    connect(model.get(), &QSqlQueryModel::modelAboutToBeReset, this,
            &ElementChoice::rowsAboutToChange);
    connect(model.get(), &QSqlQueryModel::modelReset, this, &ElementChoice::rowsChanged);
    connect(box, &QComboBox::currentIndexChanged, this, [this](int row) {
        if (moving || row == -1)
            return;
        keptId = idAt(row);
        emit chosen(row);
    });
}

ElementChoice::~ElementChoice() = default;

int ElementChoice::idAt(int row) const
{
    return model->data(model->index(row, 0)).toInt();
}

int ElementChoice::id() const
{
    return idAt(box->currentIndex());
}

void ElementChoice::choose(int id)
{
    const QScopedValueRollback guard(moving, true);
    keptId = id;
    box->setCurrentIndex(DB::getModelIdRow(model.get(), id));
}

void ElementChoice::update(const DB *db, int id)
{
    keptId = id;
    db->updateModel(model.get());
}

void ElementChoice::rowsAboutToChange()
{
    moving = true;
}

void ElementChoice::rowsChanged()
{
    choose(keptId);
    moving = false;
}

} // namespace Planaria
