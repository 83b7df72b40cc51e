#pragma once

#include <QFile>
#include <QString>

#include <sys/stat.h>
#include <unistd.h>

namespace Planaria {

/// Where the tests run as root, takes root's rights over all files away for as long as it lives:
/// a file without write permission is then as closed to the program as it is to its users.
class OrdinaryUser final
{
public:
    OrdinaryUser()
    {
        if (wasRoot && setresuid(nobody, nobody, root) != 0)
            qFatal("cannot act as an ordinary user");
    }
    ~OrdinaryUser()
    {
        if (wasRoot && setresuid(root, root, root) != 0)
            qFatal("cannot act as root again");
    }

    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

private:
    static constexpr uid_t root = 0;
    static constexpr uid_t nobody = 65534;

    const bool wasRoot = geteuid() == root;
};

/// @param mode as of chmod
inline void setMode(const QString &path, mode_t mode)
{
    if (chmod(QFile::encodeName(path).constData(), mode) != 0)
        qFatal("cannot change the mode of %s", qUtf8Printable(path));
}

} // namespace Planaria
