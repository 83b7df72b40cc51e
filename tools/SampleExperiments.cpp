#include "SampleExperiments.h"

#include "db/DB.h"
#include "model/Drug.h"
#include "model/Experiment.h"
#include "model/ExperimentDrug.h"
#include "model/ExperimentRNAi.h"
#include "model/Manipulation.h"
#include "model/Morphology.h"
#include "model/Publication.h"
#include "model/RNAi.h"
#include "model/ResultSet.h"
#include "model/ResultantMorphology.h"
#include "model/Species.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace Planaria::SampleExperiments {

namespace {

// --- What is told of an experiment ---

struct Paper
{
    const char *title;
    int year;
    const char *url = nullptr;
};

/// Times are days.
struct Treatment
{
    const char *drug;
    double start;
    double end;
};

/// A worm and its share.
struct Result
{
    const char *worm;
    double frequency;
};

/// What came of the worms after some days.
struct Results
{
    int worms;
    double days;
    std::vector<Result> shapes;
};

struct Record
{
    const char *name;
    Paper paper;
    const char *species;
    const char *manipulation;
    std::vector<Treatment> drugs;
    std::vector<const char *> genes;
    std::vector<Results> results;
};

using Records = std::vector<Record>;

constexpr auto headAmputation = "Head amputation";
constexpr auto frontHalf = "Transverse cut, front half";
constexpr auto backHalf = "Transverse cut, back half";
constexpr auto lateralCut = "Lateral cut";
constexpr auto longitudinalSplit = "Longitudinal split";
constexpr auto trunkFragment = "Trunk fragment";
constexpr auto headGraft = "Head grafted onto a trunk";
constexpr auto localIrradiation = "Local irradiation";

constexpr auto maculata = "Planaria maculata";
constexpr auto dorotocephala = "Planaria dorotocephala";
constexpr auto mediterranea = "Schmidtea mediterranea";

Records cuts()
{
    return {
        {"Pieces of the body become whole worms",
         {"Observations and experiments on regeneration in planarians (H. Randolph, Archiv für "
          "Entwicklungsmechanik der Organismen 5)",
          1897},
         maculata,
         frontHalf,
         {},
         {},
         {{10, 14.0, {{"Wild type", 1.0}}}}},
        {"A piece of the trunk forms head and tail",
         {"Experimental studies of the regeneration of Planaria maculata (T. H. Morgan, Archiv für "
          "Entwicklungsmechanik der Organismen 7)",
          1898},
         maculata,
         trunkFragment,
         {},
         {},
         {{10, 4.0, {{"Regenerating fragment", 1.0}}}, {10, 14.0, {{"Wild type", 1.0}}}}},
        {"A head grows from a cut in the side",
         {"Regeneration (T. H. Morgan, The Macmillan Company, New York)", 1901},
         maculata,
         lateralCut,
         {},
         {},
         {{10, 14.0, {{"Lateral head", 0.5}, {"Wild type", 0.5}}}}},
        {"The time that a head takes to form",
         {"The time-graded regeneration field in Planaria (Dugesia) lugubris (A. Brøndsted and "
          "H. V. Brøndsted, Videnskabelige Meddelelser fra Dansk Naturhistorisk Forening 114)",
          1952},
         "Planaria lugubris",
         headAmputation,
         {},
         {},
         {{20, 2.0, {{"Headless fragment", 1.0}}}, {20, 10.0, {{"Wild type", 1.0}}}}},
        {"A planarian that forms no head behind the pharynx",
         {"Studies upon regeneration. I. The contrasting powers of regeneration in Planaria and "
          "Procotyla (W. C. Curtis and L. M. Schulze, Journal of Morphology 55)",
          1934},
         "Procotyla fluviatilis",
         backHalf,
         {},
         {},
         {{10, 30.0, {{"Tail fragment", 1.0}}}}},
    };
}

Records doubledHeads()
{
    return {
        {"Two heads after a split",
         {"Ueber Heteromorphose bei Planarien (J. van Duyne, Archiv für die gesammte Physiologie "
          "64)",
          1896},
         "Planaria torva",
         longitudinalSplit,
         {},
         {},
         {{10, 14.0, {{"Janus heads", 1.0}}}}},
        {"Heads side by side in a split worm",
         {"The production of duplicitas cruciata and multiple heads by regeneration in Euplanaria "
          "tigrina (R. Silber and V. Hamburger, Physiological Zoology 12)",
          1939},
         "Euplanaria tigrina",
         longitudinalSplit,
         {},
         {},
         {{10, 21.0, {{"Janus heads", 1.0}}}}},
        {"A head at each end of a short piece",
         {"The control of heteromorphosis in Planaria maculata (T. H. Morgan, Archiv für "
          "Entwicklungsmechanik der Organismen 17)",
          1904},
         maculata,
         trunkFragment,
         {},
         {},
         {{10, 14.0, {{"Two-headed", 0.25}, {"Wild type", 0.75}}}}},
    };
}

/// Grafts and rays.
Records inductions()
{
    return {
        {"A grafted head and what it calls forth",
         {"Studies on transplantation in Planaria (F. V. Santos, Physiological Zoology 4)", 1931},
         dorotocephala,
         headGraft,
         {},
         {},
         {{10, 20.0, {{"Lateral head", 0.5}, {"Two-headed, two pharynges", 0.5}}}}},
        {"Cells come from where no rays fell",
         {"Contribution à l'étude de la migration des cellules de régénération chez les planaires "
          "dulcicoles (F. Dubois, Bulletin biologique de la France et de la Belgique 83)",
          1949},
         "Euplanaria lugubris",
         localIrradiation,
         {},
         {},
         {{10, 10.0, {{"Headless fragment", 1.0}}}, {10, 40.0, {{"Wild type", 1.0}}}}},
    };
}

Records drugs()
{
    return {
        {"Heads that form in alcohol",
         {"Experimental control of morphogenesis in the regulation of Planaria (C. M. Child, "
          "Biological Bulletin 20)",
          1911},
         dorotocephala,
         trunkFragment,
         {{"Alcohol", 0.0, 14.0}},
         {},
         {{20,
           14.0,
           {{"Wild type", 0.25},
            {"Cyclops", 0.25},
            {"Eyeless", 0.25},
            {"Headless fragment", 0.25}}}}},
        {"Heads that form under anaesthesia",
         {"The control of head formation in Planaria by means of anesthetics (J. W. Buchanan, "
          "Journal of Experimental Zoology 36)",
          1922},
         dorotocephala,
         trunkFragment,
         {{"Ether", 0.0, 2.0}},
         {},
         {{20, 14.0, {{"Wild type", 0.5}, {"Cyclops", 0.25}, {"Headless fragment", 0.25}}}}},
        {"Colchicine holds the head back",
         {"The effect of colchicine on reconstitutional development in Dugesia dorotocephala "
          "(M. A. McWhinnie, Biological Bulletin 108)",
          1955},
         "Dugesia dorotocephala",
         headAmputation,
         {{"Colchicine", 0.0, 2.0}},
         {},
         {{20, 14.0, {{"Wild type", 0.5}, {"Eyeless", 0.25}, {"Headless fragment", 0.25}}}}},
        {"Demecolcine turns the tail into a head",
         {"Formation of bipolar heads induced by demecolcine in the planarian, Dugesia gonocephala "
          "(H. Kanatani, Journal of the Faculty of Science, University of Tokyo, Section IV 8)",
          1958},
         "Dugesia gonocephala",
         trunkFragment,
         {{"Demecolcine", 0.0, 1.0}},
         {},
         {{20, 14.0, {{"Two-headed", 0.5}, {"Wild type", 0.5}}}}},
    };
}

Records genes()
{
    const Paper gurley{"β-Catenin defines head versus tail identity during planarian regeneration "
                       "and homeostasis (K. A. Gurley, J. C. Rink and A. Sánchez Alvarado, Science "
                       "319)",
                       2008, "https://doi.org/10.1126/science.1150029"};
    return {
        {"No blastema without SMEDWI-2",
         {"SMEDWI-2 is a PIWI-like protein that regulates planarian stem cells (P. W. Reddien, "
          "N. J. Oviedo, J. R. Jennings, J. C. Jenkin and A. Sánchez Alvarado, Science 310)",
          2005, "https://doi.org/10.1126/science.1116110"},
         mediterranea,
         headAmputation,
         {},
         {"smedwi-2"},
         {{10, 9.0, {{"Headless fragment", 1.0}}}}},
        {"A head in place of the tail",
         gurley,
         mediterranea,
         trunkFragment,
         {},
         {"Smed-βcatenin-1"},
         {{10, 14.0, {{"Two-headed", 1.0}}}}},
        {"A tail in place of the head",
         gurley,
         mediterranea,
         trunkFragment,
         {},
         {"Smed-APC-1"},
         {{10, 14.0, {{"Two-tailed", 1.0}}}}},
        {"The blastema at the rear forms a head",
         {"Smed-βcatenin-1 is required for anteroposterior blastema polarity in planarian "
          "regeneration (C. P. Petersen and P. W. Reddien, Science 319)",
          2008, "https://doi.org/10.1126/science.1149943"},
         mediterranea,
         trunkFragment,
         {},
         {"Smed-βcatenin-1"},
         {{10, 14.0, {{"Two-headed", 1.0}}}}},
    };
}

// --- The elements ---

/// Makes experiments on the elements of a library. Words and publications that it lacks are written
/// one after the other, so that their rows come in the order of the records.
class Writer final
{
public:
    explicit Writer(DB *database) : db(database) {}

    bool write(const Record &record)
    {
        Experiment experiment;
        experiment.setName(QString::fromUtf8(record.name));
        experiment.setPublication(publication(record.paper));
        experiment.setSpecies(word<Species>(record.species));
        experiment.setManipulation(manipulation(record.manipulation));
        for (const char *gene : record.genes)
            experiment.addExperimentRNAi(word<RNAi>(gene));
        for (const Treatment &treatment : record.drugs) {
            ExperimentDrug *drug = experiment.addExperimentDrug(word<Drug>(treatment.drug));
            drug->setStartTime(treatment.start);
            drug->setEndTime(treatment.end);
        }
        for (const Results &results : record.results)
            addResults(results, experiment.addResultSet());
        return allIsThere && experiment.submit(db) > 0;
    }

private:
    /// The id of the element with this name; 0 where there is none.
    int idOf(const char *table, const QString &name)
    {
        return db->existId(QLatin1String(table), QStringLiteral("Name"), name);
    }

    template <typename Word> Word *word(const char *utf8Name)
    {
        const QString name = QString::fromUtf8(utf8Name);
        if (const int id = idOf(Word::table, name))
            return new Word(id, db);
        auto added = std::make_unique<Word>();
        added->setName(name);
        added->submit(db);
        return added.release();
    }

    Publication *publication(const Paper &paper)
    {
        const QString title = QString::fromUtf8(paper.title);
        if (const int id = db->existId("Publication", "Title", title))
            return new Publication(id, db);
        auto added = std::make_unique<Publication>();
        added->setTitle(title);
        added->setYear(paper.year);
        added->setUrl(QString::fromUtf8(paper.url));
        added->submit(db);
        return added.release();
    }

    Manipulation *manipulation(const char *name)
    {
        const int id = idOf("Manipulation", name);
        allIsThere &= id > 0;
        return new Manipulation(id, db);
    }

    Morphology *worm(const char *name)
    {
        const int id = idOf("Morphology", QLatin1String(name));
        allIsThere &= id > 0;
        return new Morphology(id, db, false);
    }

    void addResults(const Results &results, ResultSet *set)
    {
        set->setNum(results.worms);
        set->setRegenPeriod(results.days);
        for (const Result &result : results.shapes)
            set->addResultantMorphology(worm(result.worm))->setFrequency(result.frequency);
    }

    DB *db;
    bool allIsThere = true;
};

} // namespace

bool write(DB *db)
{
    Writer writer(db);
    for (const Records &records : {cuts(), doubledHeads(), inductions(), drugs(), genes()}) {
        if (!std::all_of(records.cbegin(), records.cend(),
                         [&](const Record &record) { return writer.write(record); }))
            return false;
    }
    return true;
}

} // namespace Planaria::SampleExperiments
