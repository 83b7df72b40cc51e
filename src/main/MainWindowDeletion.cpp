#include "browse/ExperimentsWidget.h"
#include "browse/ManipulationsWidget.h"
#include "browse/MorphologiesWidget.h"
#include "browse/SearchWidget.h"
#include "db/DB.h"
#include "main/MainWindow.h"

#include <QMessageBox>

// The commands of MainWindow that empty whole groups of tables. They go around the elements and
// report nothing; drugs, RNAi, species, publications and the vocabularies stay.

namespace Planaria {

namespace {

bool askDanger(QWidget *parent, const QString &text, QMessageBox::StandardButton proceed)
{
    return QMessageBox::warning(parent, QStringLiteral("Danger!"), text,
                                proceed | QMessageBox::Cancel, QMessageBox::Cancel) == proceed;
}

} // namespace

void MainWindow::deleteAllExperiments()
{
    if (!askDanger(this,
                   QStringLiteral("This action will delete ALL the experiments stored in the "
                                  "database! Are you sure?"),
                   QMessageBox::Ok))
        return;
    searchWidget->clear();
    emptyExperimentTables();
    experimentsWidget->updateModel(0);
}

void MainWindow::deleteAllExpAndManipulations()
{
    if (!askDanger(this,
                   QStringLiteral("This action will delete ALL the experiments and ALL the "
                                  "manipulations stored in the database! Are you sure?"),
                   QMessageBox::Yes))
        return;
    searchWidget->clear();
    emptyExperimentTables();
    emptyManipulationTables();
    experimentsWidget->updateModel(0);
    manipulationsWidget->updateModel(0);
}

void MainWindow::deleteAll()
{
    if (!askDanger(this,
                   QStringLiteral("This action will delete ALL the experiments, manipulations, and "
                                  "morphologies stored in the database! Are you sure?"),
                   QMessageBox::Yes))
        return;
    searchWidget->clear();
    emptyExperimentTables();
    emptyManipulationTables();
    emptyMorphologyTables();
    experimentsWidget->updateModel(0);
    manipulationsWidget->updateModel(0);
    morphologiesWidget->updateModel(0);
}

// Children come before parents.

void MainWindow::emptyExperimentTables()
{
    db->emptyTables({QStringLiteral("ExperimentDrug"), QStringLiteral("ExperimentRNAi"),
                     QStringLiteral("ResultantMorphology"), QStringLiteral("ResultSet"),
                     QStringLiteral("Experiment")});
}

void MainWindow::emptyManipulationTables()
{
    db->emptyTables({QStringLiteral("Manipulation"), QStringLiteral("RemoveActionAreaPoint"),
                     QStringLiteral("CropActionAreaPoint"),
                     QStringLiteral("IrradiationActionAreaPoint")});
    // The actions refer to each other in circles.
    db->emptyTablesNoKeys({QStringLiteral("ManipulationAction"), QStringLiteral("MorphologyAction"),
                           QStringLiteral("RemoveAction"), QStringLiteral("CropAction"),
                           QStringLiteral("JoinAction"), QStringLiteral("IrradiationAction")});
}

void MainWindow::emptyMorphologyTables()
{
    db->emptyTables({QStringLiteral("Organ"), QStringLiteral("LineOrgan"),
                     QStringLiteral("SpotOrgan"), QStringLiteral("RegionsLink"),
                     QStringLiteral("RegionParam"), QStringLiteral("RegionParam"),
                     QStringLiteral("Region")});
    // Images stay, and one of them keeps all morphologies. That is asked before, since SQLite would
    // look through all images for each morphology before it refuses.
    const bool hasImage =
        db->newQuery(QStringLiteral("SELECT 1 FROM MorphologyImage INNER JOIN Morphology "
                                    "ON Morphology.Id = MorphologyImage.Morphology LIMIT 1"))
            ->next();
    if (!hasImage)
        db->emptyTables({QStringLiteral("Morphology")});
}

} // namespace Planaria
