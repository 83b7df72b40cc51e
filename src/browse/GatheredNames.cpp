#include "browse/GatheredNames.h"

namespace Planaria {

void GatheredNames::add(const QString &name)
{
    if (text_.isEmpty())
        append(name);
    else if (!isGathered(name))
        append(QLatin1String("; ") + name);
}

bool GatheredNames::isGathered(const QString &name) const
{
    if (text_ == name || text_.endsWith(QLatin1String("; ") + name))
        return true;
    const auto found = semicolons.lower_bound(QStringView(name));
    return found != semicolons.cend() && QStringView(text_).first(*found).endsWith(name);
}

void GatheredNames::append(const QString &part)
{
    qsizetype position = text_.size();
    text_ += part;
    while ((position = text_.indexOf(QLatin1Char(';'), position)) >= 0)
        semicolons.insert(position++);
}

} // namespace Planaria
