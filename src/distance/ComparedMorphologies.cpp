#include "distance/ComparedMorphologies.h"

#include "db/BulkRead.h"
#include "distance/ShownDistance.h"
#include "model/Morphology.h"

#include <QProgressDialog>
#include <QSqlQueryModel>

namespace Planaria {

ComparedMorphologies::ComparedMorphologies(DB *database) : db(database) {}

ComparedMorphologies::~ComparedMorphologies()
{
    clear();
}

std::unique_ptr<QProgressDialog> ComparedMorphologies::newProgress(const QSqlQueryModel &model,
                                                                   QWidget *parent)
{
    auto progress = std::make_unique<QProgressDialog>(
        QStringLiteral("Comparing worms..."), QStringLiteral("Abort"), 0, model.rowCount(), parent);
    progress->setWindowModality(Qt::WindowModal);
    progress->setMinimumDuration(500);
    progress->setValue(0);
    return progress;
}

bool ComparedMorphologies::compare(const Morphology &reference, const QSqlQueryModel &model,
                                   QProgressDialog *progress)
{
    clear();
    const BulkRead job(db);
    for (int row = 0; row < model.rowCount(); ++row) {
        const int id = model.data(model.index(row, 0)).toInt();
        auto morphology = std::make_unique<Morphology>(id, db, false);
        const double distance = shownDistance(reference, *morphology);
        results_.insert(distance, morphology.release());
        progress->setValue(row);
        if (progress->wasCanceled())
            return false;
    }
    return true;
}

void ComparedMorphologies::clear()
{
    qDeleteAll(results_);
    results_.clear();
}

} // namespace Planaria
