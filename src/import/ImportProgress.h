#pragma once

#include <QString>

namespace Planaria {

/// Hears of the steps of a long job, and may end it.
class ImportProgress
{
public:
    virtual ~ImportProgress();

    /// A job of @p maximum rows begins; none is done yet.
    virtual void start(const QString &label, int maximum) = 0;
    virtual void setLabel(const QString &label) = 0;
    /// One row further.
    virtual void advance() = 0;
    /// Asked at each row.
    [[nodiscard]] virtual bool wasCanceled() const = 0;
};

} // namespace Planaria
