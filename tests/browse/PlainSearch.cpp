#include "PlainSearch.h"

#include <QHash>
#include <QRegularExpression>

#include <algorithm>

namespace Planaria {

namespace {

const QStringList tables{"Experiment", "Manipulation", "Morphology", "Drug",
                         "RNAi",       "Species",      "Publication"};

/// The elements of each type with the experiments in which they take part.
const QStringList partQueries{
    "SELECT Id, Name, NULL, Id FROM Experiment",
    "SELECT m.Id, m.Name, NULL, e.Id FROM Manipulation m, Experiment e WHERE e.Manipulation = m.Id",
    "SELECT m.Id, m.Name, NULL, s.Experiment FROM Morphology m, ResultantMorphology r, ResultSet s "
    "WHERE r.Morphology = m.Id AND r.ResultSet = s.Id",
    "SELECT d.Id, d.Name, NULL, e.Experiment FROM Drug d, ExperimentDrug e WHERE e.Drug = d.Id",
    "SELECT r.Id, r.Name, NULL, e.Experiment FROM RNAi r, ExperimentRNAi e WHERE e.RNAi = r.Id",
    "SELECT s.Id, s.Name, NULL, e.Id FROM Species s, Experiment e WHERE e.Species = s.Id",
    "SELECT p.Id, p.Title, p.Year, e.Id FROM Publication p, Experiment e WHERE e.Publication = "
    "p.Id"};

/// How many there are in each morphology that has a region.
const QHash<QString, QString> countQueries{
    {"Num. regions", "SELECT COUNT(*) FROM Region r WHERE r.Morphology = m.Id"},
    {"Num. links", "SELECT COUNT(*) FROM RegionsLink l, Region r WHERE l.FromRegion = r.Id AND "
                   "r.Morphology = m.Id"},
    {"Num. heads", "SELECT COUNT(*) FROM Region r WHERE r.Morphology = m.Id AND r.Type = 1"},
    {"Num. trunks", "SELECT COUNT(*) FROM Region r WHERE r.Morphology = m.Id AND r.Type = 2"},
    {"Num. tails", "SELECT COUNT(*) FROM Region r WHERE r.Morphology = m.Id AND r.Type = 3"},
    {"Num. eyes", "SELECT COUNT(*) FROM Region r, Organ o, SpotOrgan s WHERE r.Morphology = m.Id "
                  "AND o.Region = r.Id AND o.SpotOrgan = s.Id AND s.Type = 1"},
    {"Num. brain lobes", "SELECT COUNT(*) FROM Region r, Organ o, SpotOrgan s WHERE r.Morphology = "
                         "m.Id AND o.Region = r.Id AND o.SpotOrgan = s.Id AND s.Type = 2"},
    {"Num. pharynxes", "SELECT COUNT(*) FROM Region r, Organ o, SpotOrgan s WHERE r.Morphology = "
                       "m.Id AND o.Region = r.Id AND o.SpotOrgan = s.Id AND s.Type = 3"},
    {"Num. nerve cords", "SELECT COUNT(*) FROM Region r, Organ o, LineOrgan l WHERE r.Morphology = "
                         "m.Id AND o.Region = r.Id AND o.LineOrgan = l.Id AND l.Type = 1"}};

/// The type whose elements a field names; -1 for one of the element's own.
int typeNamedBy(const QString &field)
{
    static const QHash<QString, int> types{{"Experiment name", 0}, {"Manipulation name", 1},
                                           {"Morphology name", 2}, {"Results morphology name", 2},
                                           {"Drug name", 3},       {"RNAi name", 4},
                                           {"Species name", 5},    {"Publication title", 6},
                                           {"Publication year", 6}};
    return types.value(field, -1);
}

/// What LIKE does: capitals make no difference, % is any text and _ any character.
QRegularExpression likeness(const QString &pattern)
{
    QString expression;
    for (const QChar c : pattern)
        expression += c == '%' ? QString(".*")
                               : (c == '_' ? QString(".") : QRegularExpression::escape(QString(c)));
    return QRegularExpression(QRegularExpression::anchoredPattern(expression),
                              QRegularExpression::CaseInsensitiveOption |
                                  QRegularExpression::DotMatchesEverythingOption);
}

/// Negative, zero or positive. A number comes before any text, but is compared as text with a text.
int order(const QVariant &left, const QString &right)
{
    bool isNumber = false;
    const double number = right.toDouble(&isNumber);
    if (left.typeId() == QMetaType::QString)
        return QString::compare(left.toString(), right);
    if (!isNumber)
        return -1;
    return left.toDouble() < number ? -1 : (left.toDouble() > number ? 1 : 0);
}

class Comparison final
{
public:
    explicit Comparison(const SearchQuestion &question)
        : op(question.operatorIndex), asked(question.value),
          like(likeness(op == 0 ? '%' + asked + '%' : asked))
    {
    }

    [[nodiscard]] bool holdsFor(const QVariant &value) const
    {
        if (value.isNull())
            return false;
        if (op < 2)
            return like.match(value.toString()).hasMatch();
        return op == 2 ? order(value, asked) < 0 : order(value, asked) > 0;
    }

private:
    int op;
    QString asked;
    QRegularExpression like;
};

} // namespace

PlainSearch::PlainSearch(DB *database) : db(database)
{
    for (int type = 0; type < partQueries.size(); ++type) {
        const auto query = db->newQuery(partQueries[type]);
        while (query->next())
            parts += Part{type, query->value(0).toInt(), query->value(1), query->value(2),
                          query->value(3).toInt()};
    }
}

bool PlainSearch::isAboutActionTrees(const SearchQuestion &question)
{
    const QString field =
        SearchStatement::fieldLabels(question.typeIndex).value(question.fieldIndex);
    return (question.typeIndex == 1 && field == "Morphology name") ||
           (question.typeIndex == 2 && field == "Manipulation name");
}

QList<PlainSearch::Match> PlainSearch::ownMatches(int type, const QString &field) const
{
    const bool isPublication = type == 6;
    QList<Match> found;
    const auto query = db->newQuery(
        QStringLiteral("SELECT Id, %1, %2 FROM %3")
            .arg(isPublication ? "Title" : "Name", isPublication ? "Year" : "NULL", tables[type]));
    while (query->next())
        found += Match{query->value(0).toInt(), query->value(1).toString(),
                       query->value(field == "Year" ? 2 : 1),
                       isPublication ? " | " + query->value(2).toString() : QString()};
    return found;
}

QList<PlainSearch::Match> PlainSearch::counts(const QString &field) const
{
    QList<Match> found;
    const auto query = db->newQuery(
        QStringLiteral("SELECT m.Id, m.Name, (%1) FROM Morphology m WHERE m.Id IN (SELECT "
                       "Morphology FROM Region)")
            .arg(countQueries[field]));
    while (query->next())
        if (field != "Num. links" || query->value(2).toInt() > 0)
            found +=
                Match{query->value(0).toInt(), query->value(1).toString(), query->value(2), ""};
    return found;
}

QList<PlainSearch::Match> PlainSearch::matches(int type, const QString &field) const
{
    const bool isYear = field == "Publication year";
    QMultiHash<int, Part> named;
    for (const Part &part : parts)
        if (part.type == typeNamedBy(field))
            named.insert(part.experiment, part);
    QList<Match> found;
    for (const Part &part : parts) {
        if (part.type != type)
            continue;
        for (const Part &other : named.values(part.experiment)) {
            const QVariant more = isYear ? other.name : other.year;
            found += Match{part.id, part.name.toString(), isYear ? other.year : other.name,
                           other.type == 6 ? " | " + more.toString() : QString()};
        }
    }
    return found;
}

QStringList PlainSearch::rows(const SearchQuestion &question) const
{
    const int type = question.typeIndex;
    const QString field = SearchStatement::fieldLabels(type)[question.fieldIndex];
    const int target = typeNamedBy(field);
    const bool isCount = countQueries.contains(field);
    const bool isOneEach = type == 0 && (target == 1 || target == 5 || target == 6);
    const bool isRowEach = isOneEach || (type == 1 && target == 0);

    const Comparison comparison(question);
    QStringList texts;
    QHash<QString, QStringList> lists;
    for (const Match &match :
         isCount ? counts(field) : (target < 0 ? ownMatches(type, field) : matches(type, field))) {
        if (!comparison.holdsFor(match.value))
            continue;
        const QString head = QStringLiteral("%1 | %2").arg(match.id).arg(match.name);
        const QString value = match.value.toString();
        if (isCount || isRowEach)
            texts += head + " | " + value + match.more;
        else if (target < 0)
            texts += head + match.more;
        else if (!lists[head].contains(value))
            lists[head] += value;
    }
    for (auto list = lists.begin(); list != lists.end(); ++list) {
        std::sort(list->begin(), list->end());
        texts += list.key() + " | " + list->join("; ");
    }
    return texts;
}

} // namespace Planaria
