#pragma once

#include "import/ImportProgress.h"

#include <memory>

class QDialog;
class QProgressDialog;

namespace Planaria {

/// Shows the progress of a comparison or an import over @p form once it takes longer than half a
/// second, with a button that aborts it. A form that is closed meanwhile aborts it as well.
class ImportProgressDialog final : public ImportProgress
{
public:
    /// @param owner must outlive the object
    explicit ImportProgressDialog(QDialog *owner);
    ~ImportProgressDialog() override;

    void start(const QString &label, int maximum) override;
    void setLabel(const QString &label) override;
    void advance() override;
    [[nodiscard]] bool wasCanceled() const override;

private:
    QDialog *form;
    std::unique_ptr<QProgressDialog> dialog; // from start() on
    int done = 0; // kept here, since the dialog forgets its own when it is aborted
};

} // namespace Planaria
