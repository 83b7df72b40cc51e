#pragma once

#include <QLabel>
#include <QPixmap>

namespace Planaria {

class MorphologyImage;

/// Shows one picture of a morphology, as wide as the widget. The picture belongs to somebody else.
class MorphologyImageWidget final : public QLabel
{
    Q_OBJECT

public:
    MorphologyImageWidget(MorphologyImage *shownImage, QWidget *parent);

public slots:
    void saveImage();
    /// Takes the picture out of its morphology and hides the widget; the owner destroys it.
    void deleteImage();

signals:
    void deleted();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    MorphologyImage *image;
    QPixmap fullPixmap;
};

} // namespace Planaria
