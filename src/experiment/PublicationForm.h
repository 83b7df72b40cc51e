#pragma once

#include "experiment/ElementForm.h"

namespace Planaria {

class Publication;

/// The dialog in which a publication gets its title, address and year.
class PublicationForm final : public ElementForm
{
    Q_OBJECT

public:
    /// @param edited must outlive the form
    PublicationForm(Publication *edited, DB *database, QWidget *parent);

private slots:
    void titleChanged();
    void urlChanged();
    void yearChanged(int year);

private:
    void createRows();
    void takeTexts() override;

    Publication *publication;
    QLineEdit *urlEdit = nullptr;
};

} // namespace Planaria
