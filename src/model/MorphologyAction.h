#pragma once

#include "model/ManipulationAction.h"

#include <memory>

namespace Planaria {

/// A leaf: a worm as it comes into the experiment. It has a Morphology of its own, which no other
/// action shares, even where both show the same stored one.
class MorphologyAction final : public ManipulationAction
{
public:
    /// Takes ownership of @p newMorphology.
    MorphologyAction(Morphology *newMorphology, Manipulation *manipulation);
    /// With the default morphology of @p db.
    MorphologyAction(Manipulation *manipulation, DB *db);
    MorphologyAction(ManipulationAction *toAction, Manipulation *manipulation, int ownRowId,
                     int actionRowId, DB *db);
    /// Of the same stored morphology, also where @p keepIds is false.
    MorphologyAction(const MorphologyAction &other, ManipulationAction *toAction,
                     Manipulation *manipulation, bool keepIds);
    ~MorphologyAction() override;

    /// Without name and body where a damaged file has lost it; null only where none was given.
    [[nodiscard]] Morphology *morphology() const { return morphology_.get(); }
    /// Takes ownership; the former morphology is deleted.
    void setMorphology(Morphology *morphology);

    /// Equal names of the morphologies, whatever their bodies: so that files can be compared.
    bool operator==(const ManipulationAction &other) const override;
    void accept(Visitor *visitor) override;
    [[nodiscard]] QList<Morphology *> calcMorphologiesList() const override;

    [[nodiscard]] int id() const override { return data.id(); }
    int submit(DB *db) override;
    /// Leaves the morphology in the file.
    bool erase() override;

protected:
    ManipulationAction *copy(Manipulation *manipulation, ManipulationAction *toAction,
                             bool keepIds) const override;
    void replaceFromAction(ManipulationAction *oldFrom, ManipulationAction *newFrom) override;
    ManipulationAction *removeFromManipulationNoRec() override;

private:
    void load(DB *db);

    std::unique_ptr<Morphology> morphology_;
    DBElementData data;
};

} // namespace Planaria
