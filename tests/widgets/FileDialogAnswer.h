#pragma once

#include "support/ModalAnswerer.h"

#include <QDir>
#include <QFileDialog>
#include <QLineEdit>

#include <memory>

namespace Planaria {

/// What a dialog that asks for a file to save showed before it was answered.
struct SeenFileDialog
{
    bool asksToSave = false;
    QString title;
    QString folder;
    QStringList filters;
    const QWidget *parent = nullptr;
};

/// Plans the answer to such a dialog: types @p fileName and accepts, or cancels where it is empty.
/// @return what was seen, once the dialog is answered
inline std::shared_ptr<SeenFileDialog> expectFileDialog(ModalAnswerer *answerer,
                                                        const QString &fileName)
{
    auto seen = std::make_shared<SeenFileDialog>();
    answerer->expectDialog([fileName, seen](QDialog *dialog) {
        auto *fileDialog = qobject_cast<QFileDialog *>(dialog);
        if (fileDialog == nullptr || fileName.isEmpty()) {
            dialog->reject();
            return;
        }
        *seen = {fileDialog->acceptMode() == QFileDialog::AcceptSave, dialog->windowTitle(),
                 fileDialog->directory().path(), fileDialog->nameFilters(), dialog->parentWidget()};
        fileDialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(fileName);
        dialog->accept();
    });
    return seen;
}

} // namespace Planaria
