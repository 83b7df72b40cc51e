#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

#include <memory>

namespace {

/// Keeps a test program that is started by hand away from the user's settings and folders, as
/// in-fresh-folder does for one that ctest starts. Made before main, since an application object
/// reads its environment at once.
class TestEnvironment final
{
public:
    TestEnvironment()
    {
        if (qEnvironmentVariableIsSet("VERMIDEX_TEST_FOLDER"))
            return;
        folder = std::make_unique<QTemporaryDir>();
        qputenv("VERMIDEX_TEST_FOLDER", folder->path().toLocal8Bit());
        qputenv("XDG_CONFIG_HOME", folder->filePath("config").toLocal8Bit());
        qputenv("XDG_DATA_HOME", folder->filePath("data").toLocal8Bit());
        qputenv("XDG_CACHE_HOME", folder->filePath("cache").toLocal8Bit());
        qputenv("XDG_RUNTIME_DIR", folder->path().toLocal8Bit());
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        QDir::setCurrent(folder->path());
    }

private:
    std::unique_ptr<QTemporaryDir> folder; // null under ctest
};

const TestEnvironment environment;

void prepareApplication()
{
    QCoreApplication::setOrganizationName("Vermidex tests");
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(prepareApplication)
