#pragma once

#include <QIcon>
#include <QString>

namespace Planaria {

/// The icon that the set of silk icons calls @p name.
inline QIcon silkIcon(const QString &name)
{
    return QIcon(QStringLiteral(":/Images/famfamfam_silk_icons/%1.png").arg(name));
}

} // namespace Planaria
