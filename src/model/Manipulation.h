#pragma once

#include "model/ManipulationAction.h"

#include <QSet>
#include <QString>

namespace Planaria {

/// What was done to worms in an experiment: a named tree of actions, whose leaves are the worms
/// that come in and whose root makes the final product.
///
/// It owns all its actions. What is removed waits for the next submit(), which erases it; until
/// then the file is untouched.
///
/// A damaged file may have actions that feed themselves, that two others share, or that are
/// missing: each action is loaded once, and an input without one is null. So is an input deeper in
/// the tree than the call stack bears.
class Manipulation final : public DBElement
{
public:
    /// Of the default morphology of @p db.
    explicit Manipulation(DB *db);
    /// Takes ownership of @p morphology.
    explicit Manipulation(Morphology *morphology);
    Manipulation(int id, DB *db);
    /// A deep copy: with @p keepIds of the same rows, without a new element. Its leaves show the
    /// same stored morphologies in either case.
    Manipulation(const Manipulation &other, bool keepIds);
    ~Manipulation() override;

    Manipulation(const Manipulation &) = delete;
    /// Replaces content and identity. What is replaced stays in the file; what waited to be erased
    /// still does.
    Manipulation &operator=(const Manipulation &other);
    /// Replaces the content and keeps the identity: the old actions are erased at the next submit.
    void copy(const Manipulation &other);
    /// Replaces content and identity by those of a stored manipulation, of which no more than the
    /// name is read. A submit to @p db leaves it as it is.
    void referTo(int id, DB *db);

    [[nodiscard]] const QString &name() const { return name_; }
    void setName(const QString &name) { name_ = name; }
    /// The last action; null only in a damaged tree, or when all was removed.
    [[nodiscard]] ManipulationAction *rootAction() const { return rootAction_; }
    /// In the order in which they came about; after a load from the root up, the first input of an
    /// action before its second.
    [[nodiscard]] const QList<ManipulationAction *> &actions() const { return actions_; }
    /// What waits to be erased; for looking only.
    [[nodiscard]] const DBElementData &record() const { return data; }

    // A new action right behind @p action, between it and what consumed it. Null where @p action is
    // not of this manipulation.

    RemoveAction *addRemoveAction(ManipulationAction *action);
    CropAction *addCropAction(ManipulationAction *action);
    IrradiationAction *addIrradiationAction(ManipulationAction *action);
    /// @param morphology what is joined; takes ownership
    JoinAction *addJoinAction(ManipulationAction *action, Morphology *morphology);

    /// Takes @p action out of the tree and keeps what lies before it, of a join only what lies
    /// before its first input, or before its second where the first is missing. False is returned,
    /// and nothing changed, for an action that is not of this manipulation and for one that has to
    /// stay: a leaf, one whose inputs are missing, and, as it was loaded, one that a missing input
    /// of another still names in the file.
    bool removeAction(ManipulationAction *action);
    /// Takes all actions out; they are erased at the next submit.
    void removeAndDeleteAll();
    /// Unlists @p action and queues it for erasing. Called by actions that leave the tree.
    void actionRemoved(ManipulationAction *action);

    /// The worms that come in, from the first input of each action to the last.
    [[nodiscard]] QList<Morphology *> calcMorphologiesList() const;

    /// Loads the action of row @p id of `ManipulationAction` with all that lies before it; null
    /// where there is none, or where it is being loaded already.
    ManipulationAction *loadAction(int id, ManipulationAction *toAction);

    /// Compares names, numbers of actions, and the trees, without ids.
    bool operator==(const Manipulation &other) const;

    [[nodiscard]] int id() const override { return data.id(); }
    int submit(DB *db) override;
    /// Leaves the morphologies in the file.
    bool erase() override;

private:
    friend class ManipulationAction;

    void load();
    ManipulationAction *newAction(ManipulationAction::Kind kind, ManipulationAction *toAction,
                                  int ownRowId, int actionRowId);
    void copy(const Manipulation &other, bool keepIds);
    /// Deletes all actions, and leaves their rows in the file. The caller sets a new root.
    void deleteAll();

    template <typename Action> Action *addAreaAction(ManipulationAction *action);
    void insertBehind(ManipulationAction *action, ManipulationAction *added);

    QString name_;
    ManipulationAction *rootAction_ = nullptr;
    QList<ManipulationAction *> actions_;
    DBElementData data;

    QSet<int> loadedRows; // of `ManipulationAction`, during a load
    QSet<int> sharedRows; // of `ManipulationAction`: some null input still names them in the file
    int loadDepth = 0;
    bool isSubmitting = false;
};

} // namespace Planaria
