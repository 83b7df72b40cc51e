#pragma once

#include <QString>
#include <QStringList>

/// Compares texts as people order them: the numbers within a text count by their value.
///
/// A text is cut into numbers and runs of other characters, which are compared pair by pair. A
/// number takes its sign and one decimal point along: "a-10" comes before "a-9", and "1.5" after
/// "1.10". A number comes before a run of text.
///
/// It is a consistent order except among numbers that have no value as a double, because they are
/// written in digits other than 0 to 9 or are too large for one: those are compared as text, and
/// some of them stand in a circle with others. So sort with a stable sort, never with std::sort.
class NaturalStringCompare final
{
public:
    /// Cuts the token at @p position out of @p string and moves @p position behind it. At the end
    /// of the string the token is empty, and @p isNumber stays as it is.
    static void ExtractToken(QString &token, const QString &string, int &position, bool &isNumber);

    /// Negative, zero or positive, as @p a comes before, with or after @p b.
    [[nodiscard]] static int naturalStringCompare(const QString &a, const QString &b,
                                                  Qt::CaseSensitivity cs);

    [[nodiscard]] static bool naturalStringCompareLessThan(const QString &a, const QString &b);
    [[nodiscard]] static bool naturalStringCaseInsensitiveCompareLessThan(const QString &a,
                                                                          const QString &b);

    /// A sorted copy; equal texts keep their order.
    [[nodiscard]] static QStringList naturalStringSort(const QStringList &list,
                                                       Qt::CaseSensitivity cs);
};
