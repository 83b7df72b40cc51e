#include "experiment/SpeciesForm.h"

#include "model/Species.h"

#include <QLineEdit>

namespace Planaria {

SpeciesForm::SpeciesForm(Species *edited, DB *database, QWidget *parent)
    : ElementForm(
          {QStringLiteral("SpeciesForm"),
           tr("New species"),
           tr("Edit species"),
           tr("&Name:"),
           {QStringLiteral("Species"),
            QStringLiteral("Name"),
            {tr("Name is empty"), tr("The name of a species cannot be left blank. Please, specify "
                                     "a name for the species.")},
            {tr("Species with same name found"),
             tr("The database already contains a species with the same name. Please, specify a "
                "different name for this species.")}}},
          edited->name(), edited->id() != 0, database, parent),
      species(edited)
{
    connect(nameEdit(), &QLineEdit::editingFinished, this, &SpeciesForm::nameChanged);
    finish();
}

void SpeciesForm::nameChanged()
{
    species->setName(nameEdit()->text());
}

void SpeciesForm::takeTexts()
{
    nameChanged();
}

} // namespace Planaria
