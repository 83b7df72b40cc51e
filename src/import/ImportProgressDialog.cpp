#include "import/ImportProgressDialog.h"

#include <QProgressDialog>

namespace Planaria {

ImportProgressDialog::ImportProgressDialog(QDialog *owner) : form(owner) {}

ImportProgressDialog::~ImportProgressDialog() = default;

void ImportProgressDialog::start(const QString &label, int maximum)
{
    dialog = std::make_unique<QProgressDialog>(label, QStringLiteral("Abort"), 0, maximum, form);
    QObject::connect(form, &QDialog::finished, dialog.get(), &QProgressDialog::cancel);
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setMinimumDuration(500);
    dialog->setAutoReset(false); // it would forget that it was aborted during the last row
    done = 0;
    dialog->setValue(done);
}

void ImportProgressDialog::setLabel(const QString &label)
{
    dialog->setLabelText(label);
}

void ImportProgressDialog::advance()
{
    dialog->setValue(++done);
}

bool ImportProgressDialog::wasCanceled() const
{
    return dialog && dialog->wasCanceled();
}

} // namespace Planaria
