#pragma once

#include "db/DBElementData.h"

#include <memory>

namespace Planaria {

class Morphology;
class ResultSet;

/// A worm shape that came of an experiment, with the share of the worms that had it. It has a
/// Morphology of its own, also where others show the same stored one.
class ResultantMorphology final : public DBElement
{
public:
    /// Of no worm yet. Takes ownership of @p morphology.
    ResultantMorphology(Morphology *morphology, ResultSet *newOwner);
    /// The same with the default morphology of @p db.
    ResultantMorphology(ResultSet *newOwner, DB *db);
    ResultantMorphology(ResultSet *newOwner, const DBElementData &parentData);
    /// Of the same stored morphology, also where @p keepIds is false.
    ResultantMorphology(const ResultantMorphology &other, ResultSet *newOwner, bool keepIds);
    ~ResultantMorphology() override;

    /// Without name and body where a damaged file has lost it.
    [[nodiscard]] Morphology *morphology() const { return morphology_.get(); }
    /// Takes ownership; the former morphology is deleted.
    void setMorphology(Morphology *morphology);
    /// Null once removed.
    [[nodiscard]] ResultSet *resultSet() const { return resultSet_; }
    /// From 0 to 1; all those of a set make 1.
    [[nodiscard]] double frequency() const { return frequency_; }
    void setFrequency(double frequency) { frequency_ = frequency; }

    /// Whether a damaged file has lost the morphology. What the file holds in its place is left
    /// alone, and a copy cannot be written.
    [[nodiscard]] bool isLost() const;
    [[nodiscard]] const DBElementData &record() const { return data; }

    /// Takes it out of its result set, which then owns it until its next submit.
    void removeFromResultSet();

    /// Compares the names of the morphologies, and the frequencies.
    bool operator==(const ResultantMorphology &other) const;

    [[nodiscard]] int id() const override { return data.id(); }
    int submit(DB *db) override;
    /// Leaves the morphology in the file.
    bool erase() override;

private:
    void load();

    std::unique_ptr<Morphology> morphology_;
    ResultSet *resultSet_;
    double frequency_ = 0.0;
    DBElementData data;
};

} // namespace Planaria
