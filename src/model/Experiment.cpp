#include "model/Experiment.h"

#include "model/Children.h"
#include "model/Drug.h"
#include "model/ExperimentDrug.h"
#include "model/ExperimentRNAi.h"
#include "model/Manipulation.h"
#include "model/Publication.h"
#include "model/RNAi.h"
#include "model/ResultSet.h"
#include "model/Species.h"

#include <utility>

namespace Planaria {

namespace {

constexpr auto table = "Experiment";

const QString &nameOf(const Manipulation &manipulation)
{
    return manipulation.name();
}

const QString &nameOf(const Publication &publication)
{
    return publication.title();
}

const QString &nameOf(const Species &species)
{
    return species.name();
}

using std::unique_ptr;

/// The element in the row that @p value names; null where there is none (a damaged file).
template <typename Element> unique_ptr<Element> loaded(const QVariant &value, DB *db)
{
    auto element = std::make_unique<Element>(rowId(value), db);
    if (nameOf(*element).isNull())
        element.reset();
    return element;
}

template <typename Element> unique_ptr<Element> copyOf(const unique_ptr<Element> &element)
{
    return element ? std::make_unique<Element>(*element, true) : nullptr;
}

template <typename Element>
bool haveEqualNames(const unique_ptr<Element> &a, const unique_ptr<Element> &b)
{
    return a && b && nameOf(*a) == nameOf(*b);
}

template <typename Child>
void appendCopies(const QList<Child *> &source, Experiment *owner, bool keepIds,
                  QList<Child *> *children)
{
    for (const Child *child : source)
        children->append(new Child(*child, owner, keepIds));
}

template <typename Child> void removeFromLastToFirst(const QList<Child *> &children)
{
    while (!children.isEmpty())
        children.last()->removeFromExperiment();
}

} // namespace

Experiment::Experiment() : data(table) {}

Experiment::Experiment(int id, DB *db) : data(table, id, db)
{
    load();
}

Experiment::Experiment(const Experiment &other, bool keepIds) : data(other.data, keepIds)
{
    copy(other, keepIds);
}

Experiment::~Experiment()
{
    deleteAll();
}

Experiment &Experiment::operator=(const Experiment &other)
{
    if (this != &other) {
        deleteAll();
        data = other.data;
        copy(other, true);
    }
    return *this;
}

void Experiment::copy(const Experiment &other)
{
    if (this == &other)
        return;
    removeAndDeleteAll();
    copy(other, false);
}

void Experiment::copy(const Experiment &other, bool keepIds)
{
    name_ = other.name_;
    manipulation_ = copyOf(other.manipulation_);
    publication_ = copyOf(other.publication_);
    species_ = copyOf(other.species_);
    appendCopies(other.experimentRNAis_, this, keepIds, &experimentRNAis_);
    appendCopies(other.experimentDrugs_, this, keepIds, &experimentDrugs_);
    appendCopies(other.resultSets_, this, keepIds, &resultSets_);
}

// --- Loading ---

void Experiment::load()
{
    name_ = data.loadValue(1).toString();
    manipulation_ = loaded<Manipulation>(data.loadValue(2), data.db());
    publication_ = loaded<Publication>(data.loadValue(3), data.db());
    species_ = loaded<Species>(data.loadValue(4), data.db());
    loadChildren("ExperimentRNAi", &experimentRNAis_);
    loadChildren("ExperimentDrug", &experimentDrugs_);
    loadChildren("ResultSet", &resultSets_);
    data.loadFinished();
}

template <typename Child>
void Experiment::loadChildren(const QString &table, QList<Child *> *children)
{
    data.loadReferences(table);
    while (data.nextReference())
        children->append(new Child(this, data));
}

// --- References ---

void Experiment::setManipulation(Manipulation *manipulation)
{
    manipulation_.reset(manipulation);
}

void Experiment::setPublication(Publication *publication)
{
    publication_.reset(publication);
}

void Experiment::setSpecies(Species *species)
{
    species_.reset(species);
}

void Experiment::deleteReferences()
{
    manipulation_.reset();
    publication_.reset();
    species_.reset();
}

// --- Children ---

ExperimentRNAi *Experiment::addExperimentRNAi(RNAi *rnai)
{
    experimentRNAis_.append(new ExperimentRNAi(this, rnai));
    return experimentRNAis_.last();
}

ExperimentDrug *Experiment::addExperimentDrug(Drug *drug)
{
    experimentDrugs_.append(new ExperimentDrug(this, drug));
    return experimentDrugs_.last();
}

ResultSet *Experiment::addResultSet()
{
    resultSets_.append(new ResultSet(this));
    return resultSets_.last();
}

ResultSet *Experiment::addResultSet(const ResultSet &other)
{
    resultSets_.append(new ResultSet(other, this, false));
    return resultSets_.last();
}

template <typename Child> bool Experiment::removeChild(Child *child, QList<Child *> *children)
{
    if (!children->removeOne(child))
        return false;
    child->removeFromExperiment();
    data.removeReference(child);
    return true;
}

bool Experiment::removeExperimentRNAi(ExperimentRNAi *experimentRNAi)
{
    return removeChild(experimentRNAi, &experimentRNAis_);
}

bool Experiment::removeExperimentDrug(ExperimentDrug *experimentDrug)
{
    return removeChild(experimentDrug, &experimentDrugs_);
}

bool Experiment::removeResultSet(ResultSet *resultSet)
{
    return removeChild(resultSet, &resultSets_);
}

void Experiment::clearExperimentRNAis()
{
    removeFromLastToFirst(experimentRNAis_);
}

void Experiment::clearExperimentDrugs()
{
    removeFromLastToFirst(experimentDrugs_);
}

void Experiment::clearResultSets()
{
    removeFromLastToFirst(resultSets_);
}

void Experiment::removeAndDeleteAll()
{
    clearExperimentRNAis();
    clearExperimentDrugs();
    clearResultSets();
    deleteReferences();
}

void Experiment::deleteAll()
{
    qDeleteAll(std::exchange(experimentRNAis_, {}));
    qDeleteAll(std::exchange(experimentDrugs_, {}));
    qDeleteAll(std::exchange(resultSets_, {}));
    deleteReferences();
}

// --- The whole ---

bool Experiment::operator==(const Experiment &other) const
{
    return name_ == other.name_ && haveEqualNames(manipulation_, other.manipulation_) &&
           haveEqualNames(publication_, other.publication_) &&
           haveEqualNames(species_, other.species_) &&
           haveEqualChildren(experimentRNAis_, other.experimentRNAis_) &&
           haveEqualChildren(experimentDrugs_, other.experimentDrugs_) &&
           haveEqualChildren(resultSets_, other.resultSets_);
}

int Experiment::submit(DB *db)
{
    DBElementData::References references{{"Publication", publication_.get()},
                                         {"Species", species_.get()},
                                         {"Manipulation", manipulation_.get()}};
    references.removeIf([](const auto &reference) { return !reference.value(); });
    return data.submit(db, {}, references, DBElementData::Values{{"Name", name_}},
                       writableChildren(experimentRNAis_, db),
                       writableChildren(experimentDrugs_, db), resultSets_);
}

bool Experiment::erase()
{
    return data.erase({}, experimentRNAis_, experimentDrugs_, resultSets_);
}

} // namespace Planaria
