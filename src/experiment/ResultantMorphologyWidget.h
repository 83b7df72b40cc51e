#pragma once

#include <QGroupBox>

class QSqlQueryModel;

namespace Planaria {

class DB;
class MorphologyChooser;
class ResultantMorphology;

/// One worm that came of an experiment, with the share of the worms that had its shape.
class ResultantMorphologyWidget final : public QGroupBox
{
    Q_OBJECT

public:
    /// @param shown must outlive the widget
    /// @param morphologies all that are stored, by name; shared with others, and outlives them
    ResultantMorphologyWidget(ResultantMorphology *shown, DB *database,
                              QSqlQueryModel *morphologies, QWidget *parent);

    [[nodiscard]] ResultantMorphology *result() const { return resultantMorphology; }

signals:
    /// The morphology in row @p morphologyId was stored here, and the list read anew.
    void morphologyChanged(int morphologyId);
    void removeMe(ResultantMorphologyWidget *widget);

public slots:
    /// Shows the present state of the morphology, if it is the one in row @p morphologyId.
    void morphologyHasChanged(int morphologyId);
    void freqChanged(double value);
    void editMorphology();
    void copyMorphology();
    void newMorphology();
    void morphologyComboBoxChanged(int index);
    void removeResultantMorphology();

private:
    void createWidgets(QSqlQueryModel *morphologies);
    void createFrequency();
    /// Gives what the chooser has loaded or stored to the result.
    void takeOver();
    /// The same, and tells of it.
    void takeOverStored();

    ResultantMorphology *resultantMorphology;
    DB *db;
    MorphologyChooser *chooser = nullptr;
    bool changing = false; // it tells of a change
};

} // namespace Planaria
