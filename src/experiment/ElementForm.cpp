#include "experiment/ElementForm.h"

#include "widgets/WindowSettings.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>

namespace Planaria {

ElementForm::ElementForm(const Kind &kind, const QString &name, bool stored, DB *database,
                         QWidget *parent)
    : QDialog(parent), settingsGroup(kind.settingsGroup), check(kind.check), db(database),
      nameEdit_(new QLineEdit(name, this)), rows_(new QFormLayout(this))
{
    setWindowTitle(stored ? kind.editTitle : kind.newTitle);
    if (stored)
        oldName = name;
    rows_->addRow(kind.nameLabel, nameEdit_);
}

ElementForm::~ElementForm()
{
    WindowSettings::write(this, settingsGroup);
}

void ElementForm::finish(const QSize &size)
{
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &ElementForm::formAccepted);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    rows_->addRow(buttons);

    if (size.isValid())
        resize(size);
    else
        adjustSize();
    WindowSettings::read(this, settingsGroup);
}

void ElementForm::formAccepted()
{
    takeTexts(); // a key that presses Ok leaves the focus, and the text, in the line edit
    if (check.passes(nameEdit_, oldName, db))
        accept();
}

} // namespace Planaria
