#pragma once

#include "db/DBElementData.h"

#include <QList>
#include <QString>

#include <memory>

namespace Planaria {

class Drug;
class ExperimentDrug;
class ExperimentRNAi;
class Manipulation;
class Publication;
class ResultSet;
class RNAi;
class Species;

/// What was done to which worms, by whom it was told, with which treatments, and what came of it.
///
/// It owns its treatments and result sets, and an instance of its own of each element that it
/// refers to. Writing it writes these elements too; erasing it leaves them in the file.
///
/// What is removed waits for the next submit(), which erases it; until then the file is untouched.
class Experiment final : public DBElement
{
public:
    Experiment();
    Experiment(int id, DB *db);
    /// A deep copy: with @p keepIds of the same rows, without a new element. What it refers to are
    /// the same rows in either case.
    Experiment(const Experiment &other, bool keepIds);
    ~Experiment() override;

    Experiment(const Experiment &) = delete;
    /// Replaces content and identity. What is replaced stays in the file; what waited to be erased
    /// still does.
    Experiment &operator=(const Experiment &other);
    /// Replaces the content and keeps the identity: the old treatments and results are erased at
    /// the next submit.
    void copy(const Experiment &other);

    [[nodiscard]] const QString &name() const { return name_; }
    void setName(const QString &name) { name_ = name; }

    // Null until chosen, and where a damaged file has lost them: what it holds in their place is
    // left alone then.

    [[nodiscard]] Manipulation *manipulation() const { return manipulation_.get(); }
    [[nodiscard]] Publication *publication() const { return publication_.get(); }
    [[nodiscard]] Species *species() const { return species_.get(); }

    // Each takes ownership; the former one is deleted.

    void setManipulation(Manipulation *manipulation);
    void setPublication(Publication *publication);
    void setSpecies(Species *species);

    // In the order in which they were added.

    [[nodiscard]] const QList<ExperimentRNAi *> &experimentRNAis() const
    {
        return experimentRNAis_;
    }
    [[nodiscard]] const QList<ExperimentDrug *> &experimentDrugs() const
    {
        return experimentDrugs_;
    }
    [[nodiscard]] const QList<ResultSet *> &resultSets() const { return resultSets_; }
    /// What waits to be erased; for looking only.
    [[nodiscard]] const DBElementData &record() const { return data; }

    /// Takes ownership of @p rnai.
    ExperimentRNAi *addExperimentRNAi(RNAi *rnai);
    /// Takes ownership of @p drug.
    ExperimentDrug *addExperimentDrug(Drug *drug);
    ResultSet *addResultSet();
    /// A copy of @p other as a new set.
    ResultSet *addResultSet(const ResultSet &other);

    // False where the child is not of this experiment.

    bool removeExperimentRNAi(ExperimentRNAi *experimentRNAi);
    bool removeExperimentDrug(ExperimentDrug *experimentDrug);
    bool removeResultSet(ResultSet *resultSet);

    void clearExperimentRNAis();
    void clearExperimentDrugs();
    void clearResultSets();
    /// Removes all children, and lets go of what the experiment refers to.
    void removeAndDeleteAll();

    /// Compares names, those of manipulation, publication and species, which must all be there, and
    /// in order the treatments and result sets; without ids.
    bool operator==(const Experiment &other) const;

    [[nodiscard]] int id() const override { return data.id(); }
    int submit(DB *db) override;
    bool erase() override;

private:
    void load();
    template <typename Child> void loadChildren(const QString &table, QList<Child *> *children);
    void copy(const Experiment &other, bool keepIds);
    /// Deletes all children, and leaves their rows in the file.
    void deleteAll();
    void deleteReferences();
    template <typename Child> bool removeChild(Child *child, QList<Child *> *children);

    QString name_;
    std::unique_ptr<Manipulation> manipulation_;
    std::unique_ptr<Publication> publication_;
    std::unique_ptr<Species> species_;
    QList<ExperimentRNAi *> experimentRNAis_;
    QList<ExperimentDrug *> experimentDrugs_;
    QList<ResultSet *> resultSets_;
    DBElementData data;
};

} // namespace Planaria
