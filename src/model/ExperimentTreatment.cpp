#include "model/ExperimentTreatment.h"

#include "model/Drug.h"
#include "model/Experiment.h"
#include "model/RNAi.h"

#include <utility>

namespace Planaria {

template <typename Given>
ExperimentTreatment<Given>::ExperimentTreatment(const char *table, Experiment *newOwner,
                                                Given *newGiven)
    : owner_(newOwner), given_(newGiven), data(table)
{
}

template <typename Given>
ExperimentTreatment<Given>::ExperimentTreatment(const char *table, Experiment *newOwner,
                                                const DBElementData &parentData)
    : owner_(newOwner), data(table, parentData)
{
    given_ = std::make_unique<Given>(rowId(data.loadValue(2)), data.db());
    data.loadFinished();
}

template <typename Given>
ExperimentTreatment<Given>::ExperimentTreatment(const ExperimentTreatment &other,
                                                Experiment *newOwner, bool keepIds)
    : owner_(newOwner), given_(std::make_unique<Given>(*other.given_, true)),
      data(other.data, keepIds)
{
}

template <typename Given> ExperimentTreatment<Given>::~ExperimentTreatment() = default;

template <typename Given> bool ExperimentTreatment<Given>::isLost() const
{
    return data.db() && given_->name().isNull();
}

template <typename Given> Experiment *ExperimentTreatment<Given>::leave()
{
    return std::exchange(owner_, nullptr);
}

template <typename Given> void ExperimentTreatment<Given>::setGiven(Given *given)
{
    given_.reset(given);
}

template <typename Given>
bool ExperimentTreatment<Given>::isEqual(const ExperimentTreatment &other) const
{
    return *given_ == *other.given_;
}

template <typename Given>
int ExperimentTreatment<Given>::submit(DB *db, const DBElementData::Values &values)
{
    DBElementData::References references;
    if (!isLost())
        references.insert(Given::table, given_.get());
    return data.submit(db, DBElementData::Parent("Experiment", owner_), references, values);
}

template <typename Given> bool ExperimentTreatment<Given>::erase()
{
    return data.erase();
}

template class ExperimentTreatment<Drug>;
template class ExperimentTreatment<RNAi>;

} // namespace Planaria
