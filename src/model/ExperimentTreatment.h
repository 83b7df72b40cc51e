#pragma once

#include "db/DBElementData.h"

#include <memory>

namespace Planaria {

class Drug;
class Experiment;
class RNAi;

/// What the worms of an experiment were treated with: all that drugs and RNAi have in common. Each
/// treatment has an instance of its own of the element that was given.
/// @tparam Given whose table is also the name of the column that tells the row
template <typename Given> class ExperimentTreatment : public DBElement
{
public:
    ~ExperimentTreatment() override;

    /// Whether a damaged file has lost what was given; it stands here without a name then. What the
    /// file holds in its place is left alone, and a copy of such a treatment cannot be written.
    [[nodiscard]] bool isLost() const;
    [[nodiscard]] const DBElementData &record() const { return data; }

    [[nodiscard]] int id() const final { return data.id(); }
    using DBElement::submit;
    /// Leaves what was given in the file.
    bool erase() final;

protected:
    /// Takes ownership of @p newGiven.
    ExperimentTreatment(const char *table, Experiment *newOwner, Given *newGiven);
    /// From the current row of the experiment's references.
    ExperimentTreatment(const char *table, Experiment *newOwner, const DBElementData &parentData);
    /// What was given is the same row, also where @p keepIds is false.
    ExperimentTreatment(const ExperimentTreatment &other, Experiment *newOwner, bool keepIds);

    [[nodiscard]] Experiment *owner() const { return owner_; }
    /// Forgets the experiment. @return what it was; null the second time
    Experiment *leave();

    [[nodiscard]] Given *given() const { return given_.get(); }
    /// Takes ownership; what was given before is deleted.
    void setGiven(Given *given);

    [[nodiscard]] bool isEqual(const ExperimentTreatment &other) const;
    int submit(DB *db, const DBElementData::Values &values);

private:
    Experiment *owner_; // null once removed
    std::unique_ptr<Given> given_;
    DBElementData data;
};

extern template class ExperimentTreatment<Drug>;
extern template class ExperimentTreatment<RNAi>;

} // namespace Planaria
