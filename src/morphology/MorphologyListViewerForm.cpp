#include "morphology/MorphologyListViewerForm.h"

#include "db/BulkRead.h"
#include "db/DB.h"
#include "model/Morphology.h"
#include "morphology/MorphologyListView.h"
#include "widgets/WindowSettings.h"

#include <QDialogButtonBox>
#include <QProgressDialog>
#include <QVBoxLayout>

namespace Planaria {

namespace {
constexpr auto settingsGroup = "MorphologyListViewerForm";
}

MorphologyListViewerForm::MorphologyListViewerForm(DB *database, QWidget *parent)
    : QDialog(parent), db(database)
{
    createWidgets();
    setupView();
    if (!aborted)
        readSettings();
}

MorphologyListViewerForm::~MorphologyListViewerForm()
{
    writeSettings();
    listView->clear();
    qDeleteAll(morphologies);
}

void MorphologyListViewerForm::createWidgets()
{
    setWindowFlags(Qt::Window); // in place of a dialog's, which leave no button to maximize it
    resize(800, 700);
    setWindowTitle(QStringLiteral("Morphology list viewer"));

    model = db->newTableModel(QStringLiteral("Morphology"), QStringLiteral("Name"));
    listView = new MorphologyListView(this);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::accept);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(listView);
    layout->addWidget(buttons);
}

void MorphologyListViewerForm::setupView()
{
    const int n = model->rowCount();
    QProgressDialog progress(QStringLiteral("Drawing worms..."), QStringLiteral("Abort"), 0, n,
                             parentWidget());
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(500);

    const BulkRead job(db); // pictures are read while the worms are drawn
    for (int row = 0; row < n; ++row) {
        const int id = model->data(model->index(row, 0)).toInt();
        morphologies.append(new Morphology(id, db, false));
        progress.setValue(row);
        if (progress.wasCanceled()) {
            aborted = true;
            return;
        }
    }
    listView->setMorphologyList(morphologies);
}

void MorphologyListViewerForm::readSettings()
{
    WindowSettings::read(this, QLatin1String(settingsGroup));
}

void MorphologyListViewerForm::writeSettings() const
{
    WindowSettings::write(this, QLatin1String(settingsGroup));
}

} // namespace Planaria
