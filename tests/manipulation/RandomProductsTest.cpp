#include "db/ExperimentFactory.h"
#include "model/CropAction.h"
#include "model/IrradiationAction.h"
#include "model/JoinAction.h"
#include "model/Manipulation.h"
#include "model/Morphology.h"
#include "model/RemoveAction.h"
#include "morphology/MorphologyItem.h"
#include "support/DrawnProduct.h"

#include <QPainter>
#include <QRandomGenerator>
#include <QTest>
#include <QTransform>

#include <numbers>

using namespace Planaria;

namespace {

const QRectF wormWindow(-300.0, -300.0, 600.0, 600.0);

std::unique_ptr<Morphology> wildType()
{
    return ExperimentFactory::instance(nullptr)->createWildMorphology();
}

/// Makes the same trees of cuts, grafts and irradiations on wild types for the same seed.
class RandomProducts
{
public:
    enum Kind { Chains, Trees };

    explicit RandomProducts(quint32 seed) : generator(seed) {}

    std::unique_ptr<Manipulation> manipulation(Kind kind);

private:
    double number(double from, double to)
    {
        return from + (to - from) * generator.generateDouble();
    }
    /// Corners in any order, so that some areas cross themselves.
    void addArea(AreaAction *action);

    QRandomGenerator generator;
};

void RandomProducts::addArea(AreaAction *action)
{
    const double x = number(-60.0, 60.0);
    const double y = number(-250.0, 250.0);
    for (int corners = 3 + generator.bounded(4); corners > 0; --corners) {
        const double dx = number(-150.0, 150.0);
        action->addAreaPoint({x + dx, y + number(-150.0, 150.0)});
    }
}

std::unique_ptr<Manipulation> RandomProducts::manipulation(Kind kind)
{
    auto manipulation = std::make_unique<Manipulation>(wildType().release());
    bool isIrradiated = false;
    for (int size = 1 + generator.bounded(6); size > 0; --size) {
        const qsizetype count = manipulation->actions().size();
        ManipulationAction *action =
            manipulation->actions().at(generator.bounded(static_cast<int>(count)));
        switch (generator.bounded(kind == Chains ? 4 : 6)) {
        case 0:
            addArea(manipulation->addCropAction(action));
            break;
        case 1:
        case 2:
            addArea(manipulation->addRemoveAction(action));
            break;
        case 3:
            // Behind a join or another irradiation a mark may stand beside the worm.
            if (kind == Chains && !isIrradiated)
                addArea(manipulation->addIrradiationAction(action));
            isIrradiated = true;
            break;
        default:
            JoinAction *join = manipulation->addJoinAction(action, wildType().release());
            join->setVectX(number(-100.0, 100.0));
            join->setVectY(number(-200.0, 200.0));
            join->setRot(number(0.0, 2.0 * std::numbers::pi));
        }
    }
    return manipulation;
}

/// Tells point by point what is left of a wild type under a tree of actions, without any outline
/// being computed.
class PointwiseProduct
{
public:
    PointwiseProduct();

    [[nodiscard]] bool covers(const ManipulationAction *action, const QPointF &point) const;

private:
    static bool isInArea(const AreaAction *action, const QPointF &point)
    {
        return QPolygonF(action->calcAreaVector()).containsPoint(point, Qt::OddEvenFill);
    }

    QImage worm; // two pixels a unit
};

PointwiseProduct::PointwiseProduct()
    : worm((2.0 * wormWindow.size()).toSize(), QImage::Format_ARGB32_Premultiplied)
{
    worm.fill(Qt::transparent);
    QPainter painter(&worm);
    painter.scale(2.0, 2.0);
    painter.translate(-wormWindow.topLeft());
    painter.fillPath(MorphologyItem(*wildType(), nullptr, false).shape(), Qt::black);
}

bool PointwiseProduct::covers(const ManipulationAction *action, const QPointF &point) const
{
    if (const auto *remove = dynamic_cast<const RemoveAction *>(action))
        return covers(remove->fromAction(), point) && !isInArea(remove, point);
    if (const auto *crop = dynamic_cast<const CropAction *>(action))
        return covers(crop->fromAction(), point) && isInArea(crop, point);
    if (const auto *mark = dynamic_cast<const IrradiationAction *>(action))
        return covers(mark->fromAction(), point); // the mark stays on the worm
    if (const auto *join = dynamic_cast<const JoinAction *>(action)) {
        QTransform back;
        back.rotateRadians(-join->rot());
        return covers(join->fromAction1(), point) ||
               covers(join->fromAction2(), back.map(point - QPointF(join->vectX(), join->vectY())));
    }
    const QPoint pixel = (2.0 * (point - wormWindow.topLeft())).toPoint();
    return worm.rect().contains(pixel) && qAlpha(worm.pixel(pixel)) > 0;
}

QImage expectedImage(const PointwiseProduct &product, const Manipulation &manipulation,
                     const QRectF &window, double scale)
{
    QImage image((window.size() * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QPointF point = window.topLeft() + QPointF(x + 0.5, y + 0.5) / scale;
            if (product.covers(manipulation.rootAction(), point))
                image.setPixel(x, y, 0xff000000);
        }
    }
    return image;
}

} // namespace

class RandomProductsTest final : public QObject
{
    Q_OBJECT

private slots:
    void drawingShowsWhatTheActionsLeave_data();
    void drawingShowsWhatTheActionsLeave();
};

void RandomProductsTest::drawingShowsWhatTheActionsLeave_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("cuts and marks in a chain") << int(RandomProducts::Chains);
    QTest::newRow("cuts and grafts in a tree") << int(RandomProducts::Trees);
}

void RandomProductsTest::drawingShowsWhatTheActionsLeave()
{
    QFETCH(int, kind);
    const bool isChain = kind == RandomProducts::Chains;
    const QRectF window = isChain ? wormWindow : QRectF(-900.0, -900.0, 1800.0, 1800.0);
    const double scale = isChain ? 0.5 : 0.25;
    const PointwiseProduct product;
    qsizetype drawnPixels = 0;
    for (quint32 seed = 1; seed <= 40; ++seed) {
        const auto manipulation =
            RandomProducts(seed).manipulation(static_cast<RandomProducts::Kind>(kind));
        const QImage image = drawnProduct(*manipulation, window, scale);
        const qsizetype wrong =
            pixelsOffTheEdges(image, expectedImage(product, *manipulation, window, scale));
        QVERIFY2(wrong == 0, qPrintable(QStringLiteral("seed %1: %2 pixels").arg(seed).arg(wrong)));
        drawnPixels += inkedPixels(image);
    }
    QVERIFY(drawnPixels > 40 * 1000);
}

QTEST_MAIN(RandomProductsTest)
#include "RandomProductsTest.moc"
