#pragma once

#include <QString>
#include <QWidget>

#include <memory>

class QBoxLayout;
class QComboBox;
class QPushButton;
class QSqlQueryModel;

namespace Planaria {

class DB;
class Morphology;
class MorphologyView;

/// A choice of one stored morphology: a list of names, buttons to edit, copy and make one, and the
/// drawing. The form around it hears of the user's wishes and says which of them come true.
///
/// Several choosers may share a model. When it is read anew, each keeps to the morphology that it
/// shows, and says nothing.
class MorphologyChooser final : public QWidget
{
    Q_OBJECT

public:
    enum class Shape {
        Wide,    // the buttons in a row above the drawing
        Compact, // for one of many that scroll: the buttons beside the drawing, deaf to the wheel
    };

    /// @param purpose what the morphology is for, in words that tell it from others in the form
    MorphologyChooser(QString purpose, DB *database, QWidget *parent, Shape shape = Shape::Wide);
    ~MorphologyChooser() override;

    /// Adds @p widget to the buttons of the compact shape, at the bottom.
    void addBeside(QWidget *widget);

    /// Lists the names in column 1 of @p morphologies, which has the ids in column 0 and must
    /// outlive the chooser, and chooses the first.
    void setModel(QSqlQueryModel *morphologies);
    /// Chooses as the user does.
    void chooseRow(int row);

    /// What is shown; null before the first.
    [[nodiscard]] const Morphology *morphology() const { return shown; }
    /// Whether the list stands at a row.
    [[nodiscard]] bool hasChoice() const;
    /// Shows a morphology that belongs to somebody else and stays while it is shown, and moves the
    /// list to it, so that setModel() comes first; null for none. Says nothing. What the chooser
    /// owns itself stays its own.
    void setMorphology(Morphology *morphology);
    /// Hands what is shown over to the caller, and goes on showing it. Null where it belongs to
    /// somebody else already.
    [[nodiscard]] std::unique_ptr<Morphology> release() { return std::move(owned); }
    /// Takes the drawing away; the choice stays.
    void clearView();
    /// Moves the list to what is shown, and says nothing.
    void keepRow();

    // These tell whether another morphology, or another state of it, is shown after them.

    /// Loads the morphology of @p row, unless it is the one that is shown or there is none.
    bool showRow(int row);
    /// Lets the user edit what is shown, and stores it. The list stays at its row, whatever the
    /// name has become.
    bool edit();
    /// Lets the user edit a copy of what is shown, and stores and chooses it.
    bool copy();
    /// The same with a new morphology.
    bool create();

signals:
    void rowChosen(int row);
    void editClicked();
    void copyClicked();
    void newClicked();

private:
    void createList(Shape shape);
    void createButtons();
    void layOutWide();
    void layOutCompact();
    void show(std::unique_ptr<Morphology> morphology);
    void show(Morphology *morphology);
    /// Shows what was stored, if there is something, and reads the list anew.
    bool takeOver(std::unique_ptr<Morphology> stored);
    /// Moves the list, and says nothing.
    void setRow(int row);

    QString role;
    DB *db;
    QSqlQueryModel *model = nullptr;
    QComboBox *comboBox = nullptr;
    QPushButton *editButton = nullptr; // off until there is something to edit
    QPushButton *copyButton = nullptr; // the same
    QPushButton *newButton = nullptr;
    QBoxLayout *besideLayout = nullptr; // of the compact shape
    MorphologyView *view = nullptr;
    Morphology *shown = nullptr;
    std::unique_ptr<Morphology> owned; // what is shown, unless it belongs to somebody else
    bool updatingModel = false;        // the list moves, and not at the user's hand
};

} // namespace Planaria
