#pragma once

#include "model/Drug.h"
#include "model/Experiment.h"
#include "model/ExperimentDrug.h"
#include "model/ExperimentRNAi.h"
#include "model/Manipulation.h"
#include "model/Morphology.h"
#include "model/Publication.h"
#include "model/RNAi.h"
#include "model/RemoveAction.h"
#include "model/ResultSet.h"
#include "model/ResultantMorphology.h"
#include "model/Shorthand.h"
#include "model/Species.h"

#include <memory>

/// Experiments, and what they refer to, for tests. All new elements; raw pointers are for a new
/// owner.
namespace Planaria {

template <typename Word> Word *newWord(const QString &name)
{
    auto word = std::make_unique<Word>();
    word->setName(name);
    return word.release();
}

inline Publication *newPublication(const QString &title, const QString &url = QString(),
                                   int year = 1901)
{
    auto publication = std::make_unique<Publication>();
    publication->setTitle(title);
    publication->setUrl(url);
    publication->setYear(year);
    return publication.release();
}

/// Of one region.
inline Morphology *newWorm(const QString &name)
{
    auto worm = std::make_unique<Morphology>();
    worm->setName(name);
    worm->addRegion(headType());
    return worm.release();
}

/// Cuts a corner off the worm "body".
inline Manipulation *newManipulation(const QString &name)
{
    auto manipulation = std::make_unique<Manipulation>(newWorm("body"));
    manipulation->setName(name);
    manipulation->addRemoveAction(manipulation->rootAction())->addAreaPoint({1.0, 2.0});
    return manipulation.release();
}

/// With a manipulation, a publication and a species.
inline std::unique_ptr<Experiment> bareExperiment(const QString &name)
{
    auto experiment = std::make_unique<Experiment>();
    experiment->setName(name);
    experiment->setManipulation(newManipulation("cut"));
    experiment->setPublication(newPublication("paper", "https://paper.example"));
    experiment->setSpecies(newWord<Species>("species"));
    return experiment;
}

inline ResultSet *addSet(Experiment *experiment, int worms, double period)
{
    ResultSet *set = experiment->addResultSet();
    set->setNum(worms);
    set->setRegenPeriod(period);
    return set;
}

inline ExperimentDrug *addDrug(Experiment *experiment, const QString &name, double start,
                               double end)
{
    ExperimentDrug *treatment = experiment->addExperimentDrug(newWord<Drug>(name));
    treatment->setStartTime(start);
    treatment->setEndTime(end);
    return treatment;
}

/// With two RNAi, two drugs, and sets of two results and one.
inline std::unique_ptr<Experiment> fullExperiment(const QString &name)
{
    std::unique_ptr<Experiment> experiment = bareExperiment(name);
    for (const char *gene : {"gene A", "gene B"})
        experiment->addExperimentRNAi(newWord<RNAi>(gene));
    addDrug(experiment.get(), "drug A", 1.0, 2.5);
    addDrug(experiment.get(), "drug B", 0.25, 7.0);
    ResultSet *early = addSet(experiment.get(), 12, 7.0);
    early->addResultantMorphology(newWorm("worm A"))->setFrequency(0.75);
    early->addResultantMorphology(newWorm("worm B"))->setFrequency(0.25);
    addSet(experiment.get(), 9, 14.5)->addResultantMorphology(newWorm("worm C"))->setFrequency(1.0);
    return experiment;
}

} // namespace Planaria
