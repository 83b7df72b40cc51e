#pragma once

#include <QDialog>

#include <memory>

class QLabel;
class QPushButton;
class QSqlQueryModel;

namespace Planaria {

class DB;
class MorphologyChooser;

/// The calculator: shows the distance between two stored morphologies.
class MorphologyDistForm final : public QDialog
{
    Q_OBJECT

public:
    explicit MorphologyDistForm(DB *database, QWidget *parent = nullptr);
    ~MorphologyDistForm() override;

public slots:
    void updateDistValue();

    // These act on the side whose signal calls them.

    void morphologyComboBoxChanged(int index);
    void newMorphology();
    void copyMorphology();
    void editMorphology();

    /// Goes on comparing random pairs, to show that the distance takes whatever the file holds.
    void checkAlgorithm();
    void checkAlgorithmStartStop();

private:
    void createWidgets();
    MorphologyChooser *createSide(const QString &role);
    [[nodiscard]] MorphologyChooser *senderSide() const;

    DB *db;
    std::unique_ptr<QSqlQueryModel> model; // of both sides
    MorphologyChooser *left = nullptr;
    MorphologyChooser *right = nullptr;
    QLabel *resultLabel = nullptr;
    std::unique_ptr<QPushButton> checkButton; // shown nowhere
    bool checking = false;
};

} // namespace Planaria
