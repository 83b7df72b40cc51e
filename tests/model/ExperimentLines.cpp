#include "model/ExperimentLines.h"

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
#include "support/TemporaryLibrary.h"

#include <QMap>

namespace Planaria {

namespace {

QString text(double number)
{
    return QString::number(number, 'g', 17);
}

/// Writes lines, with or without ids.
class Lines final
{
public:
    explicit Lines(Ids idKind) : ids(idKind) {}

    /// A line about @p element, which refers to @p reference of this name.
    void add(const DBElement &element, const QString &text, const DBElement &reference,
             const QString &name)
    {
        lines += QStringLiteral("%1%2 %3%4").arg(text, idOf(element), name, idOf(reference));
    }
    void add(const DBElement &element, const QString &text) { lines += text + idOf(element); }
    template <typename Element>
    void addReference(const QString &what, const Element *element, const QString &name)
    {
        lines += element ? QStringLiteral("%1 %2%3").arg(what, name, idOf(*element)) : "no " + what;
    }

    QStringList lines;

private:
    [[nodiscard]] QString idOf(const DBElement &element) const
    {
        return ids == Ids::With ? QStringLiteral(" #%1").arg(element.id()) : QString();
    }

    Ids ids;
};

void addReferences(const Experiment &experiment, Lines *lines)
{
    const Manipulation *manipulation = experiment.manipulation();
    lines->addReference("manipulation", manipulation,
                        manipulation ? QStringLiteral("%1 of %2 actions")
                                           .arg(manipulation->name())
                                           .arg(manipulation->actions().size())
                                     : QString());
    const Publication *publication = experiment.publication();
    lines->addReference("publication", publication,
                        publication ? QStringLiteral("%1, %2, %3")
                                          .arg(publication->title(), publication->url())
                                          .arg(publication->year())
                                    : QString());
    const Species *species = experiment.species();
    lines->addReference("species", species, species ? species->name() : QString());
}

void addResults(const ResultSet &set, Lines *lines)
{
    lines->add(
        set, QStringLiteral("%1 worms after %2 days").arg(set.num()).arg(text(set.regenPeriod())));
    for (const ResultantMorphology *result : set.resultantMorphologies())
        lines->add(*result, text(result->frequency()), *result->morphology(),
                   result->morphology()->name());
}

} // namespace

QStringList experimentLines(const Experiment &experiment, Ids ids)
{
    Lines lines(ids);
    lines.add(experiment, experiment.name());
    addReferences(experiment, &lines);
    for (const ExperimentRNAi *treatment : experiment.experimentRNAis())
        lines.add(*treatment, "RNAi", *treatment->rnai(), treatment->rnai()->name());
    for (const ExperimentDrug *treatment : experiment.experimentDrugs())
        lines.add(*treatment,
                  QStringLiteral("day %1 to %2")
                      .arg(text(treatment->startTime()), text(treatment->endTime())),
                  *treatment->drug(), treatment->drug()->name());
    for (const ResultSet *set : experiment.resultSets())
        addResults(*set, &lines);
    return lines.lines;
}

QString firstDifference(const Experiment &actual, const Experiment &expected)
{
    const QStringList found = experimentLines(actual, Ids::With);
    const QStringList wanted = experimentLines(expected, Ids::With);
    for (qsizetype line = 0; line < std::max(found.size(), wanted.size()); ++line) {
        if (found.value(line) != wanted.value(line))
            return QStringLiteral("\"%1\" for \"%2\"").arg(found.value(line), wanted.value(line));
    }
    return {};
}

QStringList experimentRowsOf(const QList<const Experiment *> &experiments)
{
    QMap<QString, qsizetype> counts;
    for (const Experiment *experiment : experiments) {
        counts["Experiment"] += 1;
        counts["ExperimentDrug"] += experiment->experimentDrugs().size();
        counts["ExperimentRNAi"] += experiment->experimentRNAis().size();
        counts["ResultSet"] += experiment->resultSets().size();
        for (const ResultSet *set : experiment->resultSets())
            counts["ResultantMorphology"] += set->resultantMorphologies().size();
    }
    QStringList lines;
    for (auto count = counts.cbegin(); count != counts.cend(); ++count) {
        if (count.value() > 0)
            lines += QStringLiteral("%1: %2").arg(count.key()).arg(count.value());
    }
    return lines;
}

QStringList experimentRowsIn(TemporaryLibrary *library)
{
    static const QStringList tables{"Experiment", "ExperimentDrug", "ExperimentRNAi", "ResultSet",
                                    "ResultantMorphology"};
    QStringList lines = rowsIn(library);
    lines.removeIf([](const QString &line) { return !tables.contains(line.section(':', 0, 0)); });
    return lines;
}

} // namespace Planaria
