#pragma once

#include <QSqlQueryModel>
#include <QString>
#include <QStringList>

#include <memory>

namespace Planaria {

class DB;

/// One question to the library: which elements of a type have a field that compares with a value.
/// All indexes are positions in the lists of the search tab.
struct SearchQuestion
{
    int typeIndex = 0;
    int fieldIndex = 0;
    int operatorIndex = 0;
    QString value;
};

/// The statement that answers a question. The first column of its rows is the element's id, the
/// second its name or title.
///
/// A number compared by "less than" or "greater than" stands in the text, and so compares as a
/// number; any other value is bound to the one placeholder.
class SearchStatement final
{
public:
    // What the search tab offers

    static QStringList typeLabels();
    static QStringList operatorLabels();
    /// Empty for a type that there is not.
    static QStringList fieldLabels(int typeIndex);
    static QString singular(int typeIndex);
    static QString plural(int typeIndex);

    // Parts of the text

    /// The comparison with @p value; empty for an operator that there is not.
    static QString buildOperator(int operatorIndex, const QString &value);
    /// @p value as it is where it is a number, else a placeholder.
    static QString buildBindOrNumberEdit(const QString &value);

    /// The statement of no question.
    SearchStatement() = default;
    /// Questions about action trees are answered from @p db here already.
    SearchStatement(const SearchQuestion &question, DB *db);

    /// Whether the question names a field that there is.
    [[nodiscard]] bool isKnown() const { return !text_.isEmpty(); }
    [[nodiscard]] const QString &text() const { return text_; }
    /// Whether the text has a question mark anywhere, be it in a name.
    [[nodiscard]] bool bindsValue() const;
    /// What is bound where bindsValue().
    [[nodiscard]] const QString &value() const { return value_; }

    /// The rows of the answer; none where SQLite refuses the statement.
    [[nodiscard]] std::unique_ptr<QSqlQueryModel> newModel(DB *db) const;

private:
    QString text_;
    QString value_;
};

} // namespace Planaria
