#pragma once

#include <QString>
#include <QStringView>

#include <algorithm>
#include <set>

namespace Planaria {

/// Names in one text, joined by "; ", each as a rule once.
///
/// A name counts as gathered where the text has it before a ";" or behind the last "; ": so it does
/// also where a gathered name ends with it and is followed by another. That is looked up among all
/// places before a ";", ordered by what they end with, since the text may become long.
class GatheredNames final
{
public:
    GatheredNames() = default;

    GatheredNames(const GatheredNames &) = delete;
    GatheredNames &operator=(const GatheredNames &) = delete;

    void add(const QString &name);
    [[nodiscard]] const QString &text() const { return text_; }

private:
    /// Compares beginnings of the text, by their lengths, and names from their ends.
    class EndsLess
    {
    public:
        using is_transparent = void;

        explicit EndsLess(const QString *wholeText) : text(wholeText) {}

        template <typename A, typename B> bool operator()(A a, B b) const
        {
            const QStringView left = view(a);
            const QStringView right = view(b);
            return std::lexicographical_compare(left.rbegin(), left.rend(), right.rbegin(),
                                                right.rend());
        }

    private:
        [[nodiscard]] QStringView view(qsizetype length) const
        {
            return QStringView(*text).first(length);
        }
        [[nodiscard]] static QStringView view(QStringView name) { return name; }

        const QString *text;
    };

    [[nodiscard]] bool isGathered(const QString &name) const;
    void append(const QString &part);

    QString text_;
    std::set<qsizetype, EndsLess> semicolons{EndsLess(&text_)};
};

} // namespace Planaria
