#include "experiment/PublicationForm.h"

#include "model/Publication.h"

#include <QFormLayout>
#include <QLineEdit>
#include <QSpinBox>

namespace Planaria {

PublicationForm::PublicationForm(Publication *edited, DB *database, QWidget *parent)
    : ElementForm({QStringLiteral("PublicationForm"),
                   tr("New publication"),
                   tr("Edit publication"),
                   tr("&Title:"),
                   {QStringLiteral("Publication"),
                    QStringLiteral("Title"),
                    {tr("Title is empty"), tr("The title of a publication cannot be left blank. "
                                              "Please, specify a title for the publication.")},
                    {tr("Publication with same title found"),
                     tr("The database already contains a publication with the same title. Please, "
                        "specify a different title for this publication.")}}},
                  edited->title(), edited->id() != 0, database, parent),
      publication(edited)
{
    createRows();
    finish({300, 128});
}

void PublicationForm::createRows()
{
    rows()->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    urlEdit = new QLineEdit(publication->url(), this);
    rows()->addRow(tr("&URL:"), urlEdit);
    auto *yearBox = new QSpinBox(this);
    yearBox->setRange(1, 9999);
    yearBox->setValue(publication->year()); // a year that it cannot show stays
    rows()->addRow(tr("&Year:"), yearBox);

    connect(nameEdit(), &QLineEdit::editingFinished, this, &PublicationForm::titleChanged);
    connect(urlEdit, &QLineEdit::editingFinished, this, &PublicationForm::urlChanged);
    connect(yearBox, &QSpinBox::valueChanged, this, &PublicationForm::yearChanged);
}

void PublicationForm::titleChanged()
{
    publication->setTitle(nameEdit()->text());
}

void PublicationForm::urlChanged()
{
    if (urlEdit->text() != publication->url()) // an address that was never given stays so
        publication->setUrl(urlEdit->text());
}

void PublicationForm::yearChanged(int year)
{
    publication->setYear(year);
}

void PublicationForm::takeTexts()
{
    titleChanged();
    urlChanged();
}

} // namespace Planaria
