#pragma once

#include "widgets/ZoomGraphicsView.h"

namespace Planaria {

class Manipulation;
class ManipulationItem;

/// Shows the final product of one manipulation, which belongs to somebody else and must stay while
/// it is shown.
class ManipulationView final : public ZoomGraphicsView
{
    Q_OBJECT

public:
    explicit ManipulationView(QWidget *parent = nullptr);

    /// Null while nothing is shown.
    [[nodiscard]] const Manipulation *manipulation() const { return manipulation_; }
    /// Draws @p manipulation and fits the view to it. @param manipulation not null
    void setManipulation(Manipulation *manipulation);
    /// Draws the product afresh after a change of the model; zoom and scroll stay as they are.
    void updateManipulation();
    void clear();
    /// Follows a change of the manipulation's name.
    void updateAccessibleName();

private:
    void drawManipulation();
    void setupScene();
    void clearScene();
    void updatePointItem();

    Manipulation *manipulation_ = nullptr;
    ManipulationItem *item = nullptr; // owned by the scene
};

} // namespace Planaria
