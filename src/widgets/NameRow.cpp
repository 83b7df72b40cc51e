#include "widgets/NameRow.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

namespace Planaria {

NameRow::NameRow(const QString &name, QWidget *parent)
    : QWidget(parent), edit_(new QLineEdit(name, this))
{
    auto *label = new QLabel(tr("Name:"), this);
    label->setBuddy(edit_);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(label);
    layout->addWidget(edit_);
}

} // namespace Planaria
