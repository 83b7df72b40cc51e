#pragma once

#include <QDialog>
#include <QString>

#include <memory>

class QAction;
class QHBoxLayout;
class QLineEdit;
class QMenuBar;

namespace Planaria {

class DB;
class Morphology;
class MorphologyImage;
class MorphologyView;
class MorphoGraphView;

/// The dialog in which a morphology is made or edited: its name, its graph with the drawing live
/// beside it, and its pictures.
///
/// All editing is done on the morphology itself, at once, and nothing is written to the file: the
/// caller submits the morphology when the form is accepted, and throws it away when not.
class MorphologyForm final : public QDialog
{
    Q_OBJECT

public:
    /// @param edited must outlive the form
    MorphologyForm(Morphology *edited, DB *database, QWidget *parent);
    ~MorphologyForm() override;

    [[nodiscard]] Morphology *getMorphology() const { return morphology; }

    // Each runs the form on a new object and, where the user accepts, writes it to the file. Null
    // where the user gives up, and where the file does not take it, which the user is told.

    /// Edits the row of @p stored as it stands in the file, whatever @p stored still holds of it.
    static std::unique_ptr<Morphology> edit(const Morphology &stored, DB *db, QWidget *parent);
    /// Starts from the content of @p source, under a name of its own.
    static std::unique_ptr<Morphology> copy(const Morphology &source, DB *db, QWidget *parent);
    static std::unique_ptr<Morphology> create(DB *db, QWidget *parent);

public slots:
    void nameChanged();
    void formAccepted();
    void addImage();
    void imageDeleted();

private:
    void createWidgets();
    QWidget *createMiddle();
    QWidget *createButtonRow();
    QMenuBar *createMenuBar();
    void addImageWidget(MorphologyImage *image);
    void readSettings();
    void writeSettings() const;

    Morphology *morphology;
    DB *db;
    QLineEdit *nameEdit = nullptr;
    MorphoGraphView *graphView = nullptr;
    MorphologyView *drawing = nullptr;
    QString originalName; // of a stored morphology
    QWidget *imageArea = nullptr;
    QHBoxLayout *imageLayout = nullptr;
    QAction *allParametersAction = nullptr;
};

} // namespace Planaria
