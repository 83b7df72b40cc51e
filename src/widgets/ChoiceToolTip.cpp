#include "widgets/ChoiceToolTip.h"

#include <QComboBox>
#include <QTextDocument>

namespace Planaria {

void showChoiceInToolTip(QComboBox *box)
{
    const auto show = [box](const QString &text) {
        // As rich text it breaks into lines, and is shown as it stands.
        box->setToolTip(text.isEmpty() ? QString()
                                       : Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal));
    };
    QObject::connect(box, &QComboBox::currentTextChanged, box, show);
    show(box->currentText());
}

} // namespace Planaria
