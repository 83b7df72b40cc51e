#pragma once

#include "model/ManipulationAction.h"

namespace Planaria {

/// Grafts the output of its second input onto that of the first, which stays the body.
class JoinAction final : public ManipulationAction
{
public:
    /// Without shift and rotation.
    JoinAction(ManipulationAction *from1, ManipulationAction *from2, ManipulationAction *toAction,
               Manipulation *manipulation);
    JoinAction(ManipulationAction *toAction, Manipulation *manipulation, int ownRowId,
               int actionRowId, DB *db);
    JoinAction(const JoinAction &other, ManipulationAction *toAction, Manipulation *manipulation,
               bool keepIds);

    // Null only in a damaged tree, or once the action is removed.

    [[nodiscard]] ManipulationAction *fromAction1() const { return fromAction1_; }
    [[nodiscard]] ManipulationAction *fromAction2() const { return fromAction2_; }
    void setFromAction1(ManipulationAction *action) { fromAction1_ = action; }
    void setFromAction2(ManipulationAction *action) { fromAction2_ = action; }

    // Where the graft goes: its origin, scene units, and the turn about it, radians.

    [[nodiscard]] double vectX() const { return vectX_; }
    [[nodiscard]] double vectY() const { return vectY_; }
    [[nodiscard]] double rot() const { return rot_; }
    void setVectX(double x) { vectX_ = x; }
    void setVectY(double y) { vectY_ = y; }
    void setRot(double rot) { rot_ = rot; }

    /// Equal inputs, each by its place, shifts that agree to 1e-12, and the very same rotation.
    bool operator==(const ManipulationAction &other) const override;
    void accept(Visitor *visitor) override;
    [[nodiscard]] QList<Morphology *> calcMorphologiesList() const override;

    [[nodiscard]] int id() const override { return data.id(); }
    int submit(DB *db) override;
    bool erase() override;

protected:
    ManipulationAction *copy(Manipulation *manipulation, ManipulationAction *toAction,
                             bool keepIds) const override;
    void replaceFromAction(ManipulationAction *oldFrom, ManipulationAction *newFrom) override;
    ManipulationAction *removeFromManipulationNoRec() override;
    void removeFromManipulationRec() override;

private:
    void load();

    ManipulationAction *fromAction1_ = nullptr;
    ManipulationAction *fromAction2_ = nullptr;
    double vectX_ = 0.0;
    double vectY_ = 0.0;
    double rot_ = 0.0;
    DBElementData data;
};

} // namespace Planaria
