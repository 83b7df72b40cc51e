#include "SampleWorms.h"
#include "WormPainter.h"
#include "db/ExperimentFactory.h"
#include "model/Morphology.h"

#include <QApplication>

#include <cstdio>

// vermidex_draw_icon FOLDER: draws the program's icon in all its sizes.

using namespace Planaria;

namespace {

bool drawIcons(const QString &folder)
{
    ExperimentFactory::instance(nullptr)->load();
    const std::unique_ptr<Morphology> worm = SampleWorms::fourHeaded();
    for (const int side : {32, 48, 128, 256}) {
        const QString fileName = QStringLiteral("%1/quadrupleHead%2.png").arg(folder).arg(side);
        if (!WormPainter::icon(*worm, side).save(fileName)) {
            std::fprintf(stderr, "cannot write %s\n", qUtf8Printable(fileName));
            return false;
        }
    }
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "minimal"); // worms are drawn without fonts, and never shown
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 2) {
        std::fputs("usage: vermidex_draw_icon FOLDER\n", stderr);
        return 2;
    }
    return drawIcons(arguments.at(1)) ? 0 : 1;
}
