#include "model/ManipulationLines.h"

#include "model/AreaAction.h"
#include "model/CropAction.h"
#include "model/IrradiationAction.h"
#include "model/JoinAction.h"
#include "model/Manipulation.h"
#include "model/Morphology.h"
#include "model/MorphologyAction.h"
#include "model/RemoveAction.h"
#include "support/TemporaryLibrary.h"

#include <QMap>

namespace Planaria {

namespace {

QString text(double number)
{
    return QString::number(number, 'g', 17);
}

class KindVisitor final : public ManipulationAction::Visitor
{
public:
    void visit(RemoveAction * /*action*/) override { kind = "remove"; }
    void visit(CropAction * /*action*/) override { kind = "crop"; }
    void visit(JoinAction * /*action*/) override { kind = "join"; }
    void visit(IrradiationAction * /*action*/) override { kind = "irradiation"; }
    void visit(MorphologyAction * /*action*/) override { kind = "morphology"; }

    QString kind;
};

QString idText(const DBElement *element)
{
    return QStringLiteral(" #%1").arg(element->id());
}

QString detailText(const ManipulationAction *action, Ids ids)
{
    QString detail;
    if (const auto *area = dynamic_cast<const AreaAction *>(action)) {
        for (const ActionAreaPoint *point : area->area()) {
            detail +=
                QStringLiteral(" %1:(%2, %3)")
                    .arg(QString::number(point->pointInd()), text(point->x()), text(point->y()));
            detail += ids == Ids::With ? idText(point) : QString();
        }
    }
    if (const auto *join = dynamic_cast<const JoinAction *>(action))
        detail += QStringLiteral(" by (%1, %2) turned %3")
                      .arg(text(join->vectX()), text(join->vectY()), text(join->rot()));
    if (const auto *leaf = dynamic_cast<const MorphologyAction *>(action)) {
        detail += leaf->morphology() ? " " + leaf->morphology()->name() : " none";
        if (leaf->morphology() && ids == Ids::With)
            detail += idText(leaf->morphology());
    }
    return detail;
}

void addLines(const ManipulationAction *action, const QString &indent, Ids ids, QStringList *lines)
{
    QString line = indent + kindOf(action);
    if (action && ids == Ids::With)
        line += QStringLiteral("%1 in %2")
                    .arg(idText(action), QString::number(action->actionRecord().id()));
    *lines += line + detailText(action, ids);
    for (const ManipulationAction *input : inputsOf(action))
        addLines(input, indent + ' ', ids, lines);
}

QList<const ManipulationAction *> reachable(const ManipulationAction *action)
{
    QList<const ManipulationAction *> found{action};
    for (const ManipulationAction *input : inputsOf(action)) {
        if (input)
            found += reachable(input);
    }
    return found;
}

QStringList brokenLinks(const ManipulationAction *action, const Manipulation &manipulation)
{
    QStringList broken;
    if (action->manipulation() != &manipulation)
        broken += kindOf(action) + " is of another manipulation";
    for (const ManipulationAction *input : inputsOf(action)) {
        if (input && input->toAction() != action)
            broken += QStringLiteral("%1 does not lead to %2").arg(kindOf(input), kindOf(action));
    }
    if (const auto *area = dynamic_cast<const AreaAction *>(action)) {
        for (qsizetype i = 0; i < area->area().size(); ++i) {
            if (area->area().at(i)->pointInd() != i)
                broken += QStringLiteral("point %1 counts otherwise").arg(i);
        }
    }
    return broken;
}

} // namespace

QString kindOf(const ManipulationAction *action)
{
    if (!action)
        return QStringLiteral("nothing");
    KindVisitor visitor;
    const_cast<ManipulationAction *>(action)->accept(&visitor);
    return visitor.kind;
}

QList<ManipulationAction *> inputsOf(const ManipulationAction *action)
{
    if (const auto *area = dynamic_cast<const AreaAction *>(action))
        return {area->fromAction()};
    if (const auto *join = dynamic_cast<const JoinAction *>(action))
        return {join->fromAction1(), join->fromAction2()};
    return {};
}

QStringList manipulationLines(const Manipulation &manipulation, Ids ids)
{
    QStringList lines{manipulation.name()};
    if (ids == Ids::With)
        lines.first() += idText(&manipulation);
    addLines(manipulation.rootAction(), QString(), ids, &lines);
    return lines;
}

QString firstDifference(const Manipulation &actual, const Manipulation &expected)
{
    const QStringList actualLines = manipulationLines(actual, Ids::With);
    const QStringList expectedLines = manipulationLines(expected, Ids::With);
    for (qsizetype line = 0; line < std::max(actualLines.size(), expectedLines.size()); ++line) {
        if (actualLines.value(line) != expectedLines.value(line))
            return QStringLiteral("line %1 is \"%2\" instead of \"%3\"")
                .arg(QString::number(line), actualLines.value(line), expectedLines.value(line));
    }
    return {};
}

QStringList brokenLinks(const Manipulation &manipulation)
{
    const ManipulationAction *root = manipulation.rootAction();
    QStringList broken;
    if (!root)
        return manipulation.actions().isEmpty() ? broken : QStringList{"no root"};
    if (root->toAction())
        broken += "the root leads somewhere";
    const QList<const ManipulationAction *> tree = reachable(root);
    if (tree.size() != manipulation.actions().size())
        broken += QStringLiteral("%1 actions are listed, %2 in the tree")
                      .arg(manipulation.actions().size())
                      .arg(tree.size());
    for (const ManipulationAction *action : tree) {
        if (!manipulation.actions().contains(action))
            broken += kindOf(action) + " is not listed";
        broken += brokenLinks(action, manipulation);
    }
    return broken;
}

QStringList actionRowsOf(const QList<const Manipulation *> &manipulations)
{
    static const QHash<QString, QString> tables{{"remove", "RemoveAction"},
                                                {"crop", "CropAction"},
                                                {"join", "JoinAction"},
                                                {"irradiation", "IrradiationAction"},
                                                {"morphology", "MorphologyAction"}};

    QMap<QString, qsizetype> counts;
    for (const Manipulation *manipulation : manipulations) {
        counts["Manipulation"] += 1;
        counts["ManipulationAction"] += manipulation->actions().size();
        for (const ManipulationAction *action : manipulation->actions()) {
            const QString table = tables.value(kindOf(action));
            counts[table] += 1;
            if (const auto *area = dynamic_cast<const AreaAction *>(action))
                counts[table + "AreaPoint"] += area->area().size();
        }
    }
    QStringList lines;
    for (auto count = counts.cbegin(); count != counts.cend(); ++count) {
        if (count.value() > 0)
            lines += QStringLiteral("%1: %2").arg(count.key()).arg(count.value());
    }
    return lines;
}

QStringList actionRowsIn(TemporaryLibrary *library)
{
    QStringList lines = rowsIn(library).filter("Action");
    const int manipulations = library->count("Manipulation");
    if (manipulations > 0)
        lines += QStringLiteral("Manipulation: %1").arg(manipulations);
    lines.sort();
    return lines;
}

} // namespace Planaria
