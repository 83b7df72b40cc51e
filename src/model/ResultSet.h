#pragma once

#include "db/DBElementData.h"

#include <QList>

namespace Planaria {

class Experiment;
class Morphology;
class ResultantMorphology;

/// What came of an experiment after one period of regeneration.
///
/// What is removed waits for the next submit(), which erases it; until then the file is untouched.
class ResultSet final : public DBElement
{
public:
    /// Of no worms and no period yet.
    explicit ResultSet(Experiment *experiment);
    ResultSet(Experiment *experiment, const DBElementData &parentData);
    /// A deep copy: with @p keepIds of the same rows, without a new element. The morphologies are
    /// the same stored ones in either case.
    ResultSet(const ResultSet &other, Experiment *experiment, bool keepIds);
    ~ResultSet() override;

    /// Null once the set is removed.
    [[nodiscard]] Experiment *experiment() const { return experiment_; }
    /// The number of worms.
    [[nodiscard]] int num() const { return num_; }
    void setNum(int num) { num_ = num; }
    /// Days.
    [[nodiscard]] double regenPeriod() const { return regenPeriod_; }
    void setRegenPeriod(double period) { regenPeriod_ = period; }
    [[nodiscard]] const QList<ResultantMorphology *> &resultantMorphologies() const
    {
        return resultantMorphologies_;
    }
    /// What waits to be erased; for looking only.
    [[nodiscard]] const DBElementData &record() const { return data; }

    /// Takes ownership of @p morphology.
    ResultantMorphology *addResultantMorphology(Morphology *morphology);
    /// False where @p resultantMorphology is not of this set.
    bool removeResultantMorphology(ResultantMorphology *resultantMorphology);

    /// Takes the set out of its experiment, which then owns it until its next submit.
    void removeFromExperiment();

    /// Compares the periods and, in order, the resultant morphologies; not the numbers of worms.
    bool operator==(const ResultSet &other) const;

    [[nodiscard]] int id() const override { return data.id(); }
    int submit(DB *db) override;
    /// Leaves the morphologies in the file.
    bool erase() override;

private:
    void load();

    Experiment *experiment_;
    int num_ = 0;
    double regenPeriod_ = 0.0;
    QList<ResultantMorphology *> resultantMorphologies_;
    DBElementData data;
};

} // namespace Planaria
