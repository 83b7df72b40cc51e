#include "morphology/MorphologyImageWidget.h"

#include "model/MorphologyImage.h"
#include "morphology/PictureSize.h"
#include "widgets/ImageSaver.h"
#include "widgets/SilkIcon.h"

#include <QAction>

namespace Planaria {

MorphologyImageWidget::MorphologyImageWidget(MorphologyImage *shownImage, QWidget *parent)
    : QLabel(parent), image(shownImage), fullPixmap(shownImage->createPixmap())
{
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    setAccessibleName(QStringLiteral("Picture of the morphology"));

    auto *saveAction = new QAction(silkIcon(QStringLiteral("picture_save")),
                                   QStringLiteral("Save image..."), this);
    connect(saveAction, &QAction::triggered, this, &MorphologyImageWidget::saveImage);
    auto *deleteAction = new QAction(silkIcon(QStringLiteral("picture_delete")),
                                     QStringLiteral("Delete image"), this);
    connect(deleteAction, &QAction::triggered, this, &MorphologyImageWidget::deleteImage);
    addActions({saveAction, deleteAction});
    setContextMenuPolicy(Qt::ActionsContextMenu);
}

void MorphologyImageWidget::saveImage()
{
    ImageSaver::savePixmap(fullPixmap, this);
}

void MorphologyImageWidget::deleteImage()
{
    image->removeFromMorphology();
    setVisible(false);
    emit deleted();
}

void MorphologyImageWidget::resizeEvent(QResizeEvent *event)
{
    const int height = PictureSize::heightForWidth(width(), fullPixmap.size());
    setPixmap(fullPixmap.scaled(width(), height, Qt::IgnoreAspectRatio, Qt::FastTransformation));
    setFixedHeight(height);
    QLabel::resizeEvent(event);
}

} // namespace Planaria
