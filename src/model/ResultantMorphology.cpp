#include "model/ResultantMorphology.h"

#include "db/ExperimentFactory.h"
#include "model/Morphology.h"
#include "model/ResultSet.h"

#include <utility>

namespace Planaria {

namespace {

constexpr auto table = "ResultantMorphology";

} // namespace

ResultantMorphology::ResultantMorphology(Morphology *morphology, ResultSet *newOwner)
    : morphology_(morphology), resultSet_(newOwner), data(table)
{
}

ResultantMorphology::ResultantMorphology(ResultSet *newOwner, DB *db)
    : morphology_(ExperimentFactory::instance(nullptr)->loadStoredDefaultMorphology(db)),
      resultSet_(newOwner), data(table)
{
}

ResultantMorphology::ResultantMorphology(ResultSet *newOwner, const DBElementData &parentData)
    : resultSet_(newOwner), data(table, parentData)
{
    load();
}

ResultantMorphology::ResultantMorphology(const ResultantMorphology &other, ResultSet *newOwner,
                                         bool keepIds)
    : morphology_(std::make_unique<Morphology>(*other.morphology_, true)), resultSet_(newOwner),
      frequency_(other.frequency_), data(other.data, keepIds)
{
}

ResultantMorphology::~ResultantMorphology() = default;

void ResultantMorphology::load()
{
    const int morphologyId = rowId(data.loadValue(2));
    morphology_ = morphologyId > 0 ? std::make_unique<Morphology>(morphologyId, data.db(), false)
                                   : std::make_unique<Morphology>();
    frequency_ = finiteNumber(data.loadValue(3));
    data.loadFinished();
}

void ResultantMorphology::setMorphology(Morphology *morphology)
{
    morphology_.reset(morphology);
}

bool ResultantMorphology::isLost() const
{
    return data.db() && morphology_->name().isNull();
}

void ResultantMorphology::removeFromResultSet()
{
    if (ResultSet *former = std::exchange(resultSet_, nullptr))
        former->removeResultantMorphology(this);
}

bool ResultantMorphology::operator==(const ResultantMorphology &other) const
{
    return morphology_->name() == other.morphology_->name() && frequency_ == other.frequency_;
}

int ResultantMorphology::submit(DB *db)
{
    DBElementData::References references;
    if (!isLost())
        references.insert("Morphology", morphology_.get());
    return data.submit(db, DBElementData::Parent("ResultSet", resultSet_), references,
                       DBElementData::Values{{"Frequency", frequency_}});
}

bool ResultantMorphology::erase()
{
    return data.erase();
}

} // namespace Planaria
