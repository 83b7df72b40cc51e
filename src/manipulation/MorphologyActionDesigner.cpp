#include "manipulation/MorphologyActionDesigner.h"

#include "db/DB.h"
#include "model/Manipulation.h"
#include "model/Morphology.h"
#include "model/MorphologyAction.h"
#include "morphology/MorphologyChooser.h"

#include <QVBoxLayout>

namespace Planaria {

MorphologyActionDesigner::MorphologyActionDesigner(DB *database, QWidget *parent)
    : QWidget(parent), db(database),
      model(db->newTableModel(QStringLiteral("Morphology"), QStringLiteral("Name")))
{
    createWidgets();
}

MorphologyActionDesigner::~MorphologyActionDesigner()
{
    delete chooser; // the list goes before its model
}

void MorphologyActionDesigner::createWidgets()
{
    chooser = new MorphologyChooser(tr("Morphology that comes in"), db, this);
    connect(chooser, &MorphologyChooser::rowChosen, this,
            &MorphologyActionDesigner::morphologyComboBoxChanged);
    connect(chooser, &MorphologyChooser::editClicked, this,
            &MorphologyActionDesigner::editMorphology);
    connect(chooser, &MorphologyChooser::copyClicked, this,
            &MorphologyActionDesigner::copyMorphology);
    connect(chooser, &MorphologyChooser::newClicked, this,
            &MorphologyActionDesigner::newMorphology);
    chooser->setModel(model.get());

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(chooser);
}

void MorphologyActionDesigner::setMorphologyAction(MorphologyAction *action)
{
    morphologyAction = action;
    chooser->setMorphology(action ? action->morphology() : nullptr);
}

void MorphologyActionDesigner::clear()
{
    chooser->clearView();
}

void MorphologyActionDesigner::morphologyComboBoxChanged(int index)
{
    if (!morphologyAction || !chooser->showRow(index))
        return;
    morphologyAction->setMorphology(chooser->release().release());
    emit morphologySelectedChanged();
}

// --- Editing ---

void MorphologyActionDesigner::editMorphology()
{
    if (!morphologyAction || !chooser->edit())
        return;
    chooser->keepRow(); // another name may have another place
    reloadOtherLeaves(morphologyAction->morphology()->id());
    takeOver();
}

void MorphologyActionDesigner::copyMorphology()
{
    if (morphologyAction && chooser->copy())
        takeOver();
}

void MorphologyActionDesigner::newMorphology()
{
    if (morphologyAction && chooser->create())
        takeOver();
}

void MorphologyActionDesigner::takeOver()
{
    Morphology *stored = chooser->release().release();
    morphologyAction->setMorphology(stored);
    emit morphologyChanged(stored->id());
}

void MorphologyActionDesigner::reloadOtherLeaves(int id)
{
    const Manipulation *manipulation = morphologyAction->manipulation();
    if (!manipulation || id < 1)
        return;
    for (ManipulationAction *other : manipulation->actions()) {
        auto *leaf = dynamic_cast<MorphologyAction *>(other);
        if (leaf && leaf != morphologyAction && leaf->morphology() &&
            leaf->morphology()->id() == id)
            leaf->setMorphology(new Morphology(id, db, false));
    }
}

} // namespace Planaria
