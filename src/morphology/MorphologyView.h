#pragma once

#include "widgets/ZoomGraphicsView.h"

namespace Planaria {

class Morphology;
class MorphologyItem;

/// Shows one worm. The morphology belongs to somebody else and must stay while it is shown.
class MorphologyView final : public ZoomGraphicsView
{
    Q_OBJECT
    Q_MOC_INCLUDE("model/Morphology.h")

public:
    explicit MorphologyView(QWidget *parent);
    MorphologyView(Morphology *morphology, QWidget *parent);

    /// Null while no worm is shown.
    [[nodiscard]] Morphology *morphology() const { return morphology_; }

public slots:
    void clear();
    /// @param morphology not null
    void setMorphology(Morphology *morphology);
    /// Draws the worm afresh after a change of its model.
    void morphologyChanged();
    /// Follows a change of the morphology's name.
    void updateAccessibleName();

private:
    void initWidget();
    void drawMorphology();
    void buildScaleLine();

    Morphology *morphology_ = nullptr;
    MorphologyItem *item = nullptr; // owned by the scene
};

} // namespace Planaria
