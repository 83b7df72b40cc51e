#include "model/AreaAction.h"
#include "model/CropAction.h"
#include "model/IrradiationAction.h"
#include "model/JoinAction.h"
#include "model/Manipulation.h"
#include "model/ManipulationLines.h"
#include "model/MorphologyAction.h"
#include "model/RemoveAction.h"
#include "model/SmallTrees.h"
#include "support/JsonDifference.h"
#include "support/JsonManipulation.h"
#include "support/TemporaryLibrary.h"
#include "support/TestData.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <functional>
#include <map>

using namespace Planaria;

namespace {

/// A manipulation on which the steps of one worked case are carried out. Actions are told by the
/// order in which they came about.
class ScriptedManipulation
{
public:
    ScriptedManipulation(const QJsonObject &start, const QString &name, WormMaker wormMaker);

    QJsonArray run(const QJsonArray &ops);
    [[nodiscard]] QJsonObject state() const;
    Manipulation *manipulation() { return tree.get(); }

    [[nodiscard]] QJsonValue handle(const ManipulationAction *action) const;
    [[nodiscard]] QJsonArray handles(const QList<const ManipulationAction *> &actions) const;
    /// The actions of @p other, which was loaded from the rows of this one.
    [[nodiscard]] QJsonArray handlesByRow(const Manipulation &other) const;

private:
    using Operation = std::function<QJsonValue(const QJsonObject &)>;

    std::map<QString, Operation> operations();
    ManipulationAction *action(const QJsonValue &number) const;
    AreaAction *area(const QJsonObject &op) const;
    QJsonValue listed(const ManipulationAction *added);
    QJsonObject treeState(const ManipulationAction *action) const;

    WormMaker worm;
    std::unique_ptr<Manipulation> tree;
    QList<ManipulationAction *> known;
};

std::unique_ptr<Manipulation> manipulationOf(const QJsonObject &tree, const QString &name,
                                             const WormMaker &worm)
{
    auto manipulation = manipulationFromJson(tree, worm);
    manipulation->setName(name);
    return manipulation;
}

ScriptedManipulation::ScriptedManipulation(const QJsonObject &start, const QString &name,
                                           WormMaker wormMaker)
    : worm(std::move(wormMaker)), tree(manipulationOf(start, name, worm)), known(tree->actions())
{
}

QJsonArray ScriptedManipulation::run(const QJsonArray &ops)
{
    const auto operation = operations();
    QJsonArray results;
    for (const QJsonValue &op : ops)
        results += operation.at(op["op"].toString())(op.toObject());
    return results;
}

std::map<QString, ScriptedManipulation::Operation> ScriptedManipulation::operations()
{
    using Op = const QJsonObject &;
    const auto point = [](Op op) {
        return QPointF(op["point"][0].toDouble(), op["point"][1].toDouble());
    };
    return {
        {"addRemoveAction",
         [this](Op op) { return listed(tree->addRemoveAction(action(op["action"]))); }},
        {"addCropAction",
         [this](Op op) { return listed(tree->addCropAction(action(op["action"]))); }},
        {"addIrradiationAction",
         [this](Op op) { return listed(tree->addIrradiationAction(action(op["action"]))); }},
        {"addJoinAction",
         [this](Op op) {
             return listed(tree->addJoinAction(action(op["action"]),
                                               worm(op["morphology"].toString()).release()));
         }},
        {"removeAction", [this](Op op) { return tree->removeAction(action(op["action"])); }},
        {"addAreaPoint",
         [=, this](Op op) {
             area(op)->addAreaPoint(point(op), op["index"].toInt());
             return QJsonValue::Null;
         }},
        {"setAreaPoint",
         [=, this](Op op) {
             area(op)->setAreaPoint(op["index"].toInt(), point(op));
             return QJsonValue::Null;
         }},
        {"removeAreaPoint",
         [this](Op op) {
             area(op)->removeAreaPoint(op["index"].toInt());
             return QJsonValue::Null;
         }},
        {"setMorphology",
         [this](Op op) {
             dynamic_cast<MorphologyAction *>(action(op["action"]))
                 ->setMorphology(worm(op["morphology"].toString()).release());
             return QJsonValue::Null;
         }},
        {"setJoin",
         [this](Op op) {
             auto *join = dynamic_cast<JoinAction *>(action(op["action"]));
             join->setVectX(op["vect"][0].toDouble());
             join->setVectY(op["vect"][1].toDouble());
             join->setRot(op["rot"].toDouble());
             return QJsonValue::Null;
         }},
    };
}

ManipulationAction *ScriptedManipulation::action(const QJsonValue &number) const
{
    return number.isNull() ? nullptr : known.at(number.toInt());
}

AreaAction *ScriptedManipulation::area(const QJsonObject &op) const
{
    return dynamic_cast<AreaAction *>(action(op["action"]));
}

QJsonValue ScriptedManipulation::listed(const ManipulationAction *added)
{
    for (ManipulationAction *each : tree->actions()) {
        if (!known.contains(each))
            known += each;
    }
    return handle(added);
}

QJsonValue ScriptedManipulation::handle(const ManipulationAction *action) const
{
    return action ? QJsonValue(known.indexOf(action)) : QJsonValue(QJsonValue::Null);
}

QJsonArray ScriptedManipulation::handles(const QList<const ManipulationAction *> &actions) const
{
    QJsonArray numbers;
    for (const ManipulationAction *action : actions)
        numbers += handle(action);
    return numbers;
}

QJsonArray ScriptedManipulation::handlesByRow(const Manipulation &other) const
{
    QJsonArray numbers;
    for (const ManipulationAction *read : other.actions()) {
        for (const ManipulationAction *written : tree->actions()) {
            if (written->actionRecord().id() == read->actionRecord().id())
                numbers += handle(written);
        }
    }
    return numbers;
}

QJsonObject ScriptedManipulation::treeState(const ManipulationAction *action) const
{
    QJsonObject state{{"kind", kindOf(action)}, {"handle", handle(action)}};
    if (const auto *leaf = dynamic_cast<const MorphologyAction *>(action))
        state["name"] = leaf->morphology()->name();
    if (const auto *area = dynamic_cast<const AreaAction *>(action)) {
        QJsonArray points;
        QJsonArray numbers;
        for (const ActionAreaPoint *point : area->area()) {
            points += QJsonArray{point->x(), point->y()};
            numbers += point->pointInd();
        }
        state["area"] = points;
        state["pointInd"] = numbers;
        state["from"] = treeState(area->fromAction());
    }
    if (const auto *join = dynamic_cast<const JoinAction *>(action)) {
        state["vect"] = QJsonArray{join->vectX(), join->vectY()};
        state["rot"] = join->rot();
        state["from1"] = treeState(join->fromAction1());
        state["from2"] = treeState(join->fromAction2());
    }
    return state;
}

QJsonObject ScriptedManipulation::state() const
{
    QList<const ManipulationAction *> queued;
    for (const DBElement *element : tree->record().removedReferences())
        queued += dynamic_cast<const ManipulationAction *>(element);
    QJsonObject toAction;
    for (const ManipulationAction *action : tree->actions())
        toAction[QString::number(handle(action).toInt())] = handle(action->toAction());
    QJsonArray worms;
    for (const Morphology *each : tree->calcMorphologiesList())
        worms += each->name();
    return {{"tree", treeState(tree->rootAction())},
            {"actionsInMemory", handles({tree->actions().cbegin(), tree->actions().cend()})},
            {"root", handle(tree->rootAction())},
            {"toAction", toAction},
            {"removed", handles(queued)},
            {"morphologies", worms}};
}

} // namespace

/// Edits and comparisons whose outcome was worked out independently.
class WorkedManipulationsTest final : public QObject
{
    Q_OBJECT

private slots:
    void editsEndInTheExpectedTree_data();
    void editsEndInTheExpectedTree();
};

void WorkedManipulationsTest::editsEndInTheExpectedTree_data()
{
    QTest::addColumn<QJsonObject>("workedCase");

    const QJsonArray cases =
        QJsonDocument::fromJson(readTestData("manipulations.json"))["cases"].toArray();
    QCOMPARE(cases.size(), 30);
    for (const QJsonValue &each : cases)
        QTest::newRow(qPrintable(each["id"].toString() + ' ' + each["note"].toString()))
            << each.toObject();
}

void WorkedManipulationsTest::editsEndInTheExpectedTree()
{
    QFETCH(QJsonObject, workedCase);
    TemporaryLibrary library;
    const auto storedWorm = [&](const QString &name) {
        int id = library.db()->existId("Morphology", "Name", name);
        if (id == 0)
            id = named(name)->submit(library.db());
        return std::make_unique<Morphology>(id, library.db(), false);
    };
    const QJsonObject start = workedCase["start"].toObject();
    const QString name = workedCase["name"].toString();
    ScriptedManipulation script(start, name, storedWorm);
    Manipulation *manipulation = script.manipulation();
    QVERIFY(manipulation->submit(library.db()) > 0); // so that removed actions have rows

    const QJsonArray results = script.run(workedCase["ops"].toArray());
    QJsonObject state = script.state();
    state["results"] = results;
    QCOMPARE(brokenLinks(*manipulation), QStringList());

    QVERIFY(manipulation->submit(library.db()) > 0);
    const Manipulation read(manipulation->id(), library.db());
    QJsonArray kinds;
    for (const ManipulationAction *action : read.actions())
        kinds += kindOf(action);
    state["actionsAfterLoad"] = script.handlesByRow(read);
    state["kindsAfterLoad"] = kinds;
    state["equalsStart"] = *manipulation == *manipulationOf(start, name, storedWorm);
    state["equalsCopy"] = *manipulation == Manipulation(*manipulation, false);
    state["equalsLoaded"] = *manipulation == read;
    QCOMPARE(jsonDifference(state, workedCase["expected"], "state"), QString());

    const QJsonObject variant = workedCase["variant"].toObject();
    const auto other =
        manipulationOf(variant["tree"].toObject(), variant["name"].toString(), storedWorm);
    QCOMPARE(*manipulation == *other, variant["equal"].toBool());
    QCOMPARE(*other == *manipulation, variant["equal"].toBool());
    QCOMPARE(actionRowsIn(&library), actionRowsOf({manipulation}));
    QCOMPARE(library.brokenReferences(), QStringList());
}

QTEST_GUILESS_MAIN(WorkedManipulationsTest)
#include "WorkedManipulationsTest.moc"
