#include "SearchTab.h"

#include <QtTest>

#include <utility>

namespace Planaria {

SearchTab::SearchTab() : SearchUser(&widget)
{
    logSignals();
    widget.resize(800, 600);
    widget.show();
    if (!QTest::qWaitForWindowExposed(&widget))
        qFatal("the tab does not show");
}

void SearchTab::logSignals()
{
    const auto log = [this](const char *name, void (SearchWidget::*signal)()) {
        QObject::connect(&widget, signal, &widget, [this, name] { asked += name; });
    };
    const auto logId = [this](const char *name, void (SearchWidget::*signal)(int)) {
        QObject::connect(&widget, signal, &widget, [this, name](int id) {
            asked += QStringLiteral("%1(%2)").arg(name).arg(id);
        });
    };
    log("newExperiment", &SearchWidget::newExperiment);
    log("newManipulation", &SearchWidget::newManipulation);
    log("newMorphology", &SearchWidget::newMorphology);
    log("newDrug", &SearchWidget::newDrug);
    log("newRNAi", &SearchWidget::newRNAi);
    log("newSpecies", &SearchWidget::newSpecies);
    log("newPublication", &SearchWidget::newPublication);
    logId("copyExperiment", &SearchWidget::copyExperiment);
    logId("copyManipulation", &SearchWidget::copyManipulation);
    logId("copyMorphology", &SearchWidget::copyMorphology);
    logId("copyDrug", &SearchWidget::copyDrug);
    logId("copyRNAi", &SearchWidget::copyRNAi);
    logId("copySpecies", &SearchWidget::copySpecies);
    logId("copyPublication", &SearchWidget::copyPublication);
    logId("editExperiment", &SearchWidget::editExperiment);
    logId("editManipulation", &SearchWidget::editManipulation);
    logId("editMorphology", &SearchWidget::editMorphology);
    logId("editDrug", &SearchWidget::editDrug);
    logId("editRNAi", &SearchWidget::editRNAi);
    logId("editSpecies", &SearchWidget::editSpecies);
    logId("editPublication", &SearchWidget::editPublication);
    logId("deleteExperiment", &SearchWidget::deleteExperiment);
    logId("deleteManipulation", &SearchWidget::deleteManipulation);
    logId("deleteMorphology", &SearchWidget::deleteMorphology);
    logId("deleteDrug", &SearchWidget::deleteDrug);
    logId("deleteRNAi", &SearchWidget::deleteRNAi);
    logId("deleteSpecies", &SearchWidget::deleteSpecies);
    logId("deletePublication", &SearchWidget::deletePublication);
}

QStringList SearchTab::takeSignals()
{
    return std::exchange(asked, {});
}

QString SearchTab::lastTold() const
{
    if (told.isEmpty())
        return {};
    const QList<QVariant> last = told.last();
    return QStringLiteral("%1 %2/%3")
        .arg(last[0].toInt())
        .arg(last[1].toString(), last[2].toString());
}

} // namespace Planaria
