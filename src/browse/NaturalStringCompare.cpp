#include "browse/NaturalStringCompare.h"

#include <QStringView>

#include <algorithm>

namespace {

struct Token
{
    QStringView text;
    bool isNumber = false;
};

bool isSign(QChar c)
{
    return c == QLatin1Char('-') || c == QLatin1Char('+');
}

qsizetype digitsEnd(QStringView string, qsizetype position)
{
    while (position < string.size() && string[position].isDigit())
        ++position;
    return position;
}

/// Behind the number whose first digit stands at @p position.
qsizetype numberEnd(QStringView string, qsizetype position)
{
    position = digitsEnd(string, position);
    const bool hasPoint = position < string.size() && string[position] == QLatin1Char('.');
    return hasPoint ? digitsEnd(string, position + 1) : position;
}

qsizetype textEnd(QStringView string, qsizetype position)
{
    while (position < string.size() && !isSign(string[position]) && !string[position].isDigit())
        ++position;
    return position;
}

/// The token at @p position, which must be inside of @p string.
Token tokenAt(QStringView string, qsizetype position)
{
    const qsizetype body = isSign(string[position]) ? position + 1 : position;
    const bool isNumber = body < string.size() && string[body].isDigit();
    const qsizetype end = isNumber ? numberEnd(string, body) : textEnd(string, body);
    return {string.sliced(position, end - position), isNumber};
}

int compareNumbers(QStringView a, QStringView b, Qt::CaseSensitivity cs)
{
    bool aHasValue = false;
    bool bHasValue = false;
    const double aValue = a.toDouble(&aHasValue);
    const double bValue = b.toDouble(&bHasValue);
    if (!aHasValue || !bHasValue)
        return a.compare(b, cs);
    return static_cast<int>(aValue > bValue) - static_cast<int>(aValue < bValue);
}

/// The shorter of two runs goes first where it is the head of the other.
int compareTexts(QStringView a, QStringView b, Qt::CaseSensitivity cs)
{
    const qsizetype common = std::min(a.size(), b.size());
    const int result = a.first(common).compare(b.first(common), cs);
    if (result != 0)
        return result;
    return static_cast<int>(a.size() > b.size()) - static_cast<int>(a.size() < b.size());
}

int compareTokens(const Token &a, const Token &b, Qt::CaseSensitivity cs)
{
    if (a.isNumber != b.isNumber)
        return a.isNumber ? -1 : 1;
    return a.isNumber ? compareNumbers(a.text, b.text, cs) : compareTexts(a.text, b.text, cs);
}

} // namespace

void NaturalStringCompare::ExtractToken(QString &token, const QString &string, int &position,
                                        bool &isNumber)
{
    token.clear();
    if (position >= string.size())
        return;
    const Token found = tokenAt(string, position);
    token = found.text.toString();
    position += static_cast<int>(found.text.size());
    isNumber = found.isNumber;
}

int NaturalStringCompare::naturalStringCompare(const QString &a, const QString &b,
                                               Qt::CaseSensitivity cs)
{
    qsizetype aPosition = 0;
    qsizetype bPosition = 0;
    while (aPosition < a.size() && bPosition < b.size()) {
        const Token aToken = tokenAt(a, aPosition);
        const Token bToken = tokenAt(b, bPosition);
        const int result = compareTokens(aToken, bToken, cs);
        if (result != 0)
            return result;
        aPosition += aToken.text.size();
        bPosition += bToken.text.size();
    }
    return static_cast<int>(aPosition < a.size()) - static_cast<int>(bPosition < b.size());
}

bool NaturalStringCompare::naturalStringCompareLessThan(const QString &a, const QString &b)
{
    return naturalStringCompare(a, b, Qt::CaseSensitive) < 0;
}

bool NaturalStringCompare::naturalStringCaseInsensitiveCompareLessThan(const QString &a,
                                                                       const QString &b)
{
    return naturalStringCompare(a, b, Qt::CaseInsensitive) < 0;
}

QStringList NaturalStringCompare::naturalStringSort(const QStringList &list, Qt::CaseSensitivity cs)
{
    QStringList sorted = list;
    std::stable_sort(sorted.begin(), sorted.end(),
                     cs == Qt::CaseSensitive ? naturalStringCompareLessThan
                                             : naturalStringCaseInsensitiveCompareLessThan);
    return sorted;
}
