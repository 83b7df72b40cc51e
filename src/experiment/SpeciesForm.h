#pragma once

#include "experiment/ElementForm.h"

namespace Planaria {

class Species;

/// The dialog in which a species gets its name.
class SpeciesForm final : public ElementForm
{
    Q_OBJECT

public:
    /// @param edited must outlive the form
    SpeciesForm(Species *edited, DB *database, QWidget *parent);

private slots:
    void nameChanged();

private:
    void takeTexts() override;

    Species *species;
};

} // namespace Planaria
