// Merges all of one library into another, tells of each row, and waits at one of them for its end,
// which the test brings about.

#include "db/DB.h"
#include "db/ExperimentFactory.h"
#include "import/ImportProgress.h"
#include "import/LibraryImporter.h"

#include <QCoreApplication>
#include <QThread>

#include <cstdio>

using namespace Planaria;

namespace {

class SilentProgress : public ImportProgress
{
public:
    void start(const QString & /*label*/, int /*maximum*/) override {}
    void setLabel(const QString & /*label*/) override {}
    void advance() override {}
    [[nodiscard]] bool wasCanceled() const override { return false; }
};

class TellingProgress final : public SilentProgress
{
public:
    /// @param newLastRow where to wait
    explicit TellingProgress(int newLastRow) : lastRow(newLastRow) {}

    void advance() override
    {
        std::printf("%d\n", ++rows);
        std::fflush(stdout);
        while (rows == lastRow)
            QThread::sleep(1);
    }

private:
    int rows = 0;
    int lastRow;
};

bool open(DB *db, const QString &fileName)
{
    return db->connect(fileName, false) == DB::Opened;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    DB source;
    DB destination;
    if (arguments.size() != 4 || !open(&source, arguments.at(1)) ||
        !open(&destination, arguments.at(2)))
        return 1;
    // What is written goes to the disk at once, and not first at the commit.
    destination.newQuery(QStringLiteral("PRAGMA cache_size = 1"));
    ExperimentFactory::instance(nullptr)->load(&destination);

    LibraryImporter importer(&source, &destination);
    SilentProgress silent;
    if (!importer.populateElements(silent, [](ImportKind) {}))
        return 1;
    TellingProgress progress(arguments.at(3).toInt());
    return importer.importElements(progress) == LibraryImporter::Outcome::Done ? 0 : 1;
}
