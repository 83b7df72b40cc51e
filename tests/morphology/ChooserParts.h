#pragma once

#include "model/Morphology.h"
#include "morphology/MorphologyChooser.h"
#include "morphology/MorphologyView.h"
#include "support/ModalAnswerer.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <memory>

namespace Planaria {

/// A chooser as a user sees it.
class ChooserParts final
{
public:
    explicit ChooserParts(MorphologyChooser *shown) : chooser(shown) {}

    [[nodiscard]] QComboBox *list() const { return chooser->findChild<QComboBox *>(); }
    [[nodiscard]] MorphologyView *view() const { return chooser->findChild<MorphologyView *>(); }
    [[nodiscard]] QString chosenName() const { return list()->currentText(); }
    /// Empty while no worm is shown.
    [[nodiscard]] QString shownName() const
    {
        return chooser->morphology() ? chooser->morphology()->name() : QString();
    }
    [[nodiscard]] QStringList names() const
    {
        QStringList all;
        for (int row = 0; row < list()->count(); ++row)
            all += list()->itemText(row);
        return all;
    }

    [[nodiscard]] QPushButton *button(const QString &text) const
    {
        for (auto *button : chooser->findChildren<QPushButton *>()) {
            if (button->text() == text)
                return button;
        }
        qFatal("no button \"%s\"", qUtf8Printable(text));
    }
    void press(const QString &text) const { QTest::mouseClick(button(text), Qt::LeftButton); }
    void choose(const QString &name) const { list()->setCurrentText(name); }

    MorphologyChooser *chooser;
};

/// What the editor of a worm showed before it was answered.
struct SeenMorphologyForm
{
    QString title;
    QString name;
    const QWidget *parent = nullptr;
};

/// Plans the answer to the editor: types @p name in place of the one that is there and presses OK,
/// or cancels where it is empty. Before that, @p work is done in it.
/// @return what was seen, once the editor is answered
inline std::shared_ptr<SeenMorphologyForm> expectMorphologyForm(
    ModalAnswerer *answerer, const QString &name,
    const std::function<void(QDialog *)> &work = [](QDialog *) {})
{
    auto seen = std::make_shared<SeenMorphologyForm>();
    answerer->expectDialog([name, seen, work](QDialog *dialog) {
        auto *nameEdit = dialog->findChild<QLineEdit *>();
        const auto *buttons = dialog->findChild<QDialogButtonBox *>();
        if (!nameEdit || !buttons) {
            dialog->reject();
            return;
        }
        *seen = {dialog->windowTitle(), nameEdit->text(), dialog->parentWidget()};
        work(dialog);
        nameEdit->selectAll();
        QTest::keyClicks(nameEdit, name);
        buttons->button(name.isEmpty() ? QDialogButtonBox::Cancel : QDialogButtonBox::Ok)->click();
    });
    return seen;
}

} // namespace Planaria
