#pragma once

#include "db/DBElementData.h"

#include <array>

namespace Planaria {

class CropAction;
class IrradiationAction;
class JoinAction;
class Manipulation;
class Morphology;
class MorphologyAction;
class RemoveAction;

/// A node in the tree of a manipulation. It takes the output of the actions before it, its inputs,
/// and hands its own on to the action that consumes it; a MorphologyAction is a leaf.
///
/// It is two rows in the file: one in `ManipulationAction`, to which other rows refer and whose id
/// submit() returns, and one in the table of the concrete class, whose id is the action's id().
///
/// All actions of a tree belong to its Manipulation. In a damaged file an input may be missing: it
/// is null then, and its column in the file stays as it is.
class ManipulationAction : public DBElement
{
public:
    /// Numbered as the columns of `ManipulationAction` that tell the concrete class. Of several
    /// that are set (a damaged file) the first counts.
    enum class Kind { Morphology = 1, Remove, Crop, Join, Irradiation };

    static constexpr std::array allKinds{Kind::Morphology, Kind::Remove, Kind::Crop, Kind::Join,
                                         Kind::Irradiation};

    class Visitor
    {
    public:
        virtual ~Visitor();
        virtual void visit(RemoveAction *action) = 0;
        virtual void visit(CropAction *action) = 0;
        virtual void visit(JoinAction *action) = 0;
        virtual void visit(IrradiationAction *action) = 0;
        virtual void visit(MorphologyAction *action) = 0;
    };

    /// The id of the row in `ManipulationAction`.
    [[nodiscard]] int id() const override { return data.id(); }
    using DBElement::submit;
    /// Deletes the row in `ManipulationAction`.
    bool erase() override;

    /// Compares what the actions do and, input by input, what lies before them; no ids.
    virtual bool operator==(const ManipulationAction &other) const = 0;
    virtual void accept(Visitor *visitor) = 0;

protected:
    // What one action of a tree asks of another, by way of the functions further down.

    /// A deep copy with all that lies before it, listed in @p manipulation.
    virtual ManipulationAction *copy(Manipulation *manipulation, ManipulationAction *toAction,
                                     bool keepIds) const = 0;
    virtual void replaceFromAction(ManipulationAction *oldFrom, ManipulationAction *newFrom) = 0;
    /// Unties the action from its tree and ties its first input to what consumed it; other inputs
    /// go with all that lies before them.
    /// @return that first input, which takes the place of the action
    virtual ManipulationAction *removeFromManipulationNoRec() = 0;
    /// Hands the action and all that lies before it over to the removed references of the
    /// manipulation, with every link between them severed.
    virtual void removeFromManipulationRec();

public:
    /// The worms that come in, from the first input to the last; without those that a damaged file
    /// has lost.
    [[nodiscard]] virtual QList<Morphology *> calcMorphologiesList() const = 0;

    /// Null once the action is removed.
    [[nodiscard]] Manipulation *manipulation() const { return manipulation_; }
    /// The action that consumes the output; null for the root.
    [[nodiscard]] ManipulationAction *toAction() const { return toAction_; }
    void setToAction(ManipulationAction *action) { toAction_ = action; }

    /// The row in `ManipulationAction`, which other rows refer to.
    [[nodiscard]] const DBElementData &actionRecord() const { return data; }

    /// Whether the write that this action is part of has been rolled back already. What was
    /// written now would stay in the file by itself.
    [[nodiscard]] bool isWriteLost(const DB *db) const;

    /// Takes this action out of its tree and keeps what lies before it; see
    /// Manipulation::removeAction().
    bool removeFromManipulation();

protected:
    // Each lists the action in @p owner.

    ManipulationAction(ManipulationAction *consumer, Manipulation *owner);
    ManipulationAction(ManipulationAction *consumer, Manipulation *owner, int actionRowId, DB *db);
    ManipulationAction(const ManipulationAction &other, ManipulationAction *consumer,
                       Manipulation *owner, bool keepIds);

    /// The table of the concrete class, which is also its column in `ManipulationAction`.
    static const char *table(Kind kind);

    /// Writes the row in `ManipulationAction`, which points to row @p ownRowId of the concrete
    /// class.
    /// @return its id; below 1 after a failure
    int submit(DB *db, Kind kind, int ownRowId);
    /// Writes those of @p inputs that are there, and puts their ids into @p row. They go before the
    /// row, not along with it: where one fails, the row must not be written any more.
    /// @return whether the write goes on
    bool submitInputs(DB *db, const DBElementData::References &inputs,
                      DBElementData::Values *row) const;

    /// Those of @p references that are there.
    static DBElementData::References present(const DBElementData::References &references);

    /// Loads the action of @p actionRowId, which this one consumes, with all that lies before it.
    ManipulationAction *loadAction(int actionRowId);

    // For inputs; each does nothing with a null one.

    static ManipulationAction *copyAction(const ManipulationAction *action,
                                          Manipulation *manipulation, ManipulationAction *toAction,
                                          bool keepIds);
    static void replaceActionFromAction(ManipulationAction *action, ManipulationAction *oldFrom,
                                        ManipulationAction *newFrom);
    static void removeActionFromManipulationRec(ManipulationAction *action);

    /// Severs the action from its tree, whose action @p input takes its place.
    void bypass(ManipulationAction *input);

    static bool areEqual(const ManipulationAction *a, const ManipulationAction *b);
    static QList<Morphology *> morphologiesOf(const ManipulationAction *action);

private:
    friend class Manipulation;

    Manipulation *manipulation_;
    ManipulationAction *toAction_;
    DBElementData data;
};

} // namespace Planaria
