#include "browse/SearchStatement.h"

#include "browse/ManipulationNameWalk.h"
#include "browse/MorphologyNameWalk.h"
#include "browse/SearchFields.h"
#include "db/DB.h"

#include <QHash>

namespace Planaria {

using namespace Qt::StringLiterals;

namespace {

/// The entry of @p list at @p index; null where there is none.
template <typename List> auto at(const List &list, int index)
{
    return index >= 0 && index < static_cast<int>(list.size()) ? &list[static_cast<size_t>(index)]
                                                               : nullptr;
}

QString baseColumns(const SearchType &type)
{
    return u"%1.Id, %1.%2 AS %1%3"_s.arg(type.table, type.nameColumn, type.moreColumns);
}

QString select(const QString &columns, const SearchType &type, const QString &tail)
{
    return "SELECT "_L1 + columns + " FROM "_L1 + type.table + u' ' + tail;
}

/// SQLite takes this many terms in one compound SELECT.
constexpr qsizetype maxTerms = 500;

/// Rows of ids and names as terms of a compound SELECT, the first of which names the columns.
QString terms(const QList<std::pair<int, QString>> &rows, const TreeField &field)
{
    QString text;
    for (const auto &[id, names] : rows) {
        if (text.isEmpty())
            text = "SELECT "_L1 + QString::number(id) + " as '"_L1 + field.idColumn + "', '"_L1 +
                   names + "' as '"_L1 + field.namesColumn + u'\'';
        else
            text += " UNION SELECT "_L1 + QString::number(id) + ", '"_L1 + names + u'\'';
    }
    return text;
}

/// The same for any number of rows: in groups where they are too many for one compound.
QString table(const QHash<int, QString> &namesOfId, const TreeField &field)
{
    QList<std::pair<int, QString>> rows;
    for (auto entry = namesOfId.cbegin(); entry != namesOfId.cend(); ++entry)
        rows.emplace_back(entry.key(), entry.value());
    if (rows.size() <= maxTerms)
        return terms(rows, field);

    QStringList groups;
    for (qsizetype first = 0; first < rows.size(); first += maxTerms)
        groups += "SELECT * FROM ("_L1 + terms(rows.mid(first, maxTerms), field) + u')';
    while (groups.size() > maxTerms) {
        QStringList larger;
        for (qsizetype first = 0; first < groups.size(); first += maxTerms)
            larger += "SELECT * FROM ("_L1 + groups.mid(first, maxTerms).join(" UNION "_L1) + u')';
        groups = larger;
    }
    return groups.join(" UNION "_L1);
}

/// Makes the statement of a field, by the form that the field has.
class Builder final
{
public:
    Builder(const SearchType &searchedType, const SearchQuestion &asked, DB *database)
        : type(searchedType), question(asked), db(database),
          comparison(SearchStatement::buildOperator(asked.operatorIndex, asked.value))
    {
    }

    QString operator()(const PlainField &field) const
    {
        return select(baseColumns(type) + field.columns, type, field.tail + comparison);
    }

    // The list is made with commas, since DISTINCT leaves no choice of the separator; the commas
    // of the values are put aside meanwhile.
    QString operator()(const MatchField &field) const
    {
        const MatchTarget &target = *field.target;
        const QString columns =
            u"%1Id, %1%2 AS %1, REPLACE(REPLACE(GROUP_CONCAT(DISTINCT REPLACE(%3, ',', 'xYz')), "
            "',', '; '), 'xYz', ',') AS '%4' "
            "FROM( SELECT %1.Id AS %1Id, %1.%2 AS %1%2, %5 AS %3"_s.arg(
                type.table, type.nameColumn, target.alias, target.label, target.column) +
            field.moreColumns;
        return select(columns, type,
                      type.chain + target.chain + "WHERE "_L1 + target.column + u' ' + comparison +
                          " ORDER BY "_L1 + target.column + ") GROUP BY "_L1 + type.table +
                          "Id"_L1);
    }

    QString operator()(const SumField &field) const
    {
        const QString columns =
            "* FROM (SELECT "_L1 + baseColumns(type) +
            u", SUM(CASE WHEN %1 THEN 1 ELSE 0 END) AS [%2]"_s.arg(field.condition, field.column);
        return select(columns, type,
                      field.joins + "GROUP BY Morphology.Id) WHERE ["_L1 + field.column + "] "_L1 +
                          comparison);
    }

    QString operator()(const TreeField &field) const
    {
        const QHash<int, QString> found = namesOfElements(field);
        if (found.isEmpty())
            return select(baseColumns(type), type, u"WHERE 1 = 0"_s);
        const QString columns =
            baseColumns(type) + ", T."_L1 + field.namesColumn + " AS '"_L1 + field.label + u'\'';
        return select(columns, type,
                      "INNER JOIN ("_L1 + table(found, field) + ") AS T ON "_L1 + type.table +
                          ".Id = T."_L1 + field.idColumn + " GROUP BY "_L1 + type.table +
                          ".Id, T."_L1 + field.namesColumn);
    }

private:
    [[nodiscard]] QHash<int, QString> namesOfElements(const TreeField &field) const
    {
        if (field.upwards)
            return ManipulationNameWalk(db, comparison, question.value)
                .morphologiesWithManipulationName();
        return MorphologyNameWalk(db, comparison, question.value).manipulationsWithMorphologyName();
    }

    const SearchType &type;
    const SearchQuestion &question;
    DB *db;
    QString comparison;
};

template <typename List> QStringList labels(const List &list)
{
    QStringList texts;
    for (const auto &entry : list)
        texts += entry.label;
    return texts;
}

} // namespace

QStringList SearchStatement::typeLabels()
{
    return labels(searchTypes());
}

QStringList SearchStatement::operatorLabels()
{
    QStringList texts;
    for (const QLatin1String &text : searchOperators())
        texts += text;
    return texts;
}

QStringList SearchStatement::fieldLabels(int typeIndex)
{
    const SearchType *type = at(searchTypes(), typeIndex);
    return type != nullptr ? labels(type->fields) : QStringList();
}

QString SearchStatement::singular(int typeIndex)
{
    const SearchType *type = at(searchTypes(), typeIndex);
    return type != nullptr ? QString(type->singular) : QString();
}

QString SearchStatement::plural(int typeIndex)
{
    const SearchType *type = at(searchTypes(), typeIndex);
    return type != nullptr ? QString(type->plural) : QString();
}

QString SearchStatement::buildOperator(int operatorIndex, const QString &value)
{
    switch (operatorIndex) {
    case 0:
        return u"LIKE '%' || ? || '%'"_s;
    case 1:
        return u"LIKE ?"_s;
    case 2:
        return "< "_L1 + buildBindOrNumberEdit(value);
    case 3:
        return "> "_L1 + buildBindOrNumberEdit(value);
    default:
        return {};
    }
}

QString SearchStatement::buildBindOrNumberEdit(const QString &value)
{
    bool isNumber = false;
    value.toDouble(&isNumber);
    return isNumber ? value : u"?"_s;
}

SearchStatement::SearchStatement(const SearchQuestion &question, DB *db)
    : value_(question.value.isNull() ? u""_s : question.value) // a null text compares with nothing
{
    const SearchType *type = at(searchTypes(), question.typeIndex);
    const SearchField *field = type != nullptr ? at(type->fields, question.fieldIndex) : nullptr;
    if (field == nullptr)
        return;
    text_ = std::visit(
        Builder(*type, {question.typeIndex, question.fieldIndex, question.operatorIndex, value_},
                db),
        field->form);
}

bool SearchStatement::bindsValue() const
{
    return text_.contains(u'?');
}

std::unique_ptr<QSqlQueryModel> SearchStatement::newModel(DB *db) const
{
    return bindsValue() ? db->newModel(text_, QVariant(value_)) : db->newModel(text_);
}

} // namespace Planaria
