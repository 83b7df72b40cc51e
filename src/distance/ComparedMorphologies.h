#pragma once

#include <QMultiMap>

#include <memory>

class QProgressDialog;
class QSqlQueryModel;
class QWidget;

namespace Planaria {

class DB;
class Morphology;

/// The stored worms by their distance from one of them or another, and their owner. Among equal
/// distances the worm compared last comes first.
class ComparedMorphologies final
{
public:
    /// @param database must outlive the object
    explicit ComparedMorphologies(DB *database);
    ~ComparedMorphologies();

    ComparedMorphologies(const ComparedMorphologies &) = delete;
    ComparedMorphologies &operator=(const ComparedMorphologies &) = delete;

    /// The dialog for a comparison with each row of @p model and for the drawing after it.
    static std::unique_ptr<QProgressDialog> newProgress(const QSqlQueryModel &model,
                                                        QWidget *parent);

    /// Compares @p reference with each row of @p model, whose column 0 holds the ids. A comparison
    /// that has begun runs to its end. The old results are deleted: nothing may show them when it
    /// is called.
    /// @return false where the user aborts; what was found until then stays
    [[nodiscard]] bool compare(const Morphology &reference, const QSqlQueryModel &model,
                               QProgressDialog *progress);

    [[nodiscard]] const QMultiMap<double, Morphology *> &results() const { return results_; }

private:
    void clear();

    DB *db;
    QMultiMap<double, Morphology *> results_;
};

} // namespace Planaria
