#pragma once

#include "distance/ComparedMorphologies.h"

#include <QDialog>

#include <memory>

class QDialogButtonBox;

namespace Planaria {

class MorphoGraphView;
class MorphologyListView;
class MorphologyView;

/// The graphical search: the user draws a worm, and gets the stored ones by their distance from it.
class MorphologyDistSearchForm final : public QDialog
{
    Q_OBJECT

public:
    explicit MorphologyDistSearchForm(DB *database, QWidget *parent = nullptr);
    ~MorphologyDistSearchForm() override;

public slots:
    void updateComparator();

private:
    void createWidgets();
    QWidget *createSearchedHalf();
    QWidget *createResultsHalf();
    QDialogButtonBox *createButtons();

    DB *db;
    std::unique_ptr<QSqlQueryModel> model;
    std::unique_ptr<Morphology> searched;
    ComparedMorphologies compared;
    MorphoGraphView *graphView = nullptr;
    MorphologyView *view = nullptr;
    MorphologyListView *resultsView = nullptr;
};

} // namespace Planaria
