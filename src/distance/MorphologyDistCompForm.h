#pragma once

#include "distance/ComparedMorphologies.h"

#include <QDialog>

#include <memory>

class QGraphicsScene;
class QGraphicsTextItem;

namespace Planaria {

class MorphologyChooser;
class ZoomGraphicsView;

/// The comparator: draws all stored morphologies in a row, by their distance from one of them. The
/// first comparison is done in the constructor, under a progress dialog.
class MorphologyDistCompForm final : public QDialog
{
    Q_OBJECT

public:
    explicit MorphologyDistCompForm(DB *database, QWidget *parent = nullptr);
    ~MorphologyDistCompForm() override;

    /// Whether the user stopped a comparison; after the first, the form is not to be shown.
    [[nodiscard]] bool isAborted() const { return aborted; }

public slots:
    void morphologyComboBoxChanged(int index);
    void updateComparator();
    void newMorphology();
    void copyMorphology();
    void editMorphology();
    void saveCompImage();

private:
    void createWidgets();
    void createChooser();
    void clearComparison();
    void drawResults();
    /// Writes a distance at height 0. @param x its middle, scene units
    QGraphicsTextItem *addDistance(double distance, double x);
    /// Tells those who cannot see them which worms are drawn.
    void describeResults();

    DB *db;
    std::unique_ptr<QSqlQueryModel> model;
    MorphologyChooser *chooser = nullptr;
    ZoomGraphicsView *compView = nullptr;
    QGraphicsScene *compScene = nullptr; // of compView
    ComparedMorphologies compared;
    bool aborted = false;
};

} // namespace Planaria
