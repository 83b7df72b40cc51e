#include "model/ResultSet.h"

#include "model/Children.h"
#include "model/Experiment.h"
#include "model/ResultantMorphology.h"

#include <utility>

namespace Planaria {

namespace {

constexpr auto table = "ResultSet";

} // namespace

ResultSet::ResultSet(Experiment *experiment) : experiment_(experiment), data(table) {}

ResultSet::ResultSet(Experiment *experiment, const DBElementData &parentData)
    : experiment_(experiment), data(table, parentData)
{
    load();
}

ResultSet::ResultSet(const ResultSet &other, Experiment *experiment, bool keepIds)
    : experiment_(experiment), num_(other.num_), regenPeriod_(other.regenPeriod_),
      data(other.data, keepIds)
{
    for (const ResultantMorphology *result : other.resultantMorphologies_)
        resultantMorphologies_.append(new ResultantMorphology(*result, this, keepIds));
}

ResultSet::~ResultSet()
{
    qDeleteAll(resultantMorphologies_);
}

void ResultSet::load()
{
    num_ = data.loadValue(2).toInt();
    regenPeriod_ = finiteNumber(data.loadValue(3));
    data.loadReferences("ResultantMorphology");
    while (data.nextReference())
        resultantMorphologies_.append(new ResultantMorphology(this, data));
    data.loadFinished();
}

ResultantMorphology *ResultSet::addResultantMorphology(Morphology *morphology)
{
    auto *added = new ResultantMorphology(morphology, this);
    resultantMorphologies_.append(added);
    return added;
}

bool ResultSet::removeResultantMorphology(ResultantMorphology *resultantMorphology)
{
    if (!resultantMorphologies_.removeOne(resultantMorphology))
        return false;
    resultantMorphology->removeFromResultSet();
    data.removeReference(resultantMorphology);
    return true;
}

void ResultSet::removeFromExperiment()
{
    if (Experiment *former = std::exchange(experiment_, nullptr))
        former->removeResultSet(this);
}

bool ResultSet::operator==(const ResultSet &other) const
{
    return regenPeriod_ == other.regenPeriod_ &&
           haveEqualChildren(resultantMorphologies_, other.resultantMorphologies_);
}

int ResultSet::submit(DB *db)
{
    return data.submit(db, DBElementData::Parent("Experiment", experiment_), {},
                       DBElementData::Values{{"Num", num_}, {"RegenPeriod", regenPeriod_}},
                       writableChildren(resultantMorphologies_, db));
}

bool ResultSet::erase()
{
    return data.erase({}, resultantMorphologies_);
}

} // namespace Planaria
