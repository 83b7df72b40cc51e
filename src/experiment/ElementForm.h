#pragma once

#include "widgets/NameCheck.h"

#include <QDialog>

class QFormLayout;
class QLineEdit;

namespace Planaria {

/// The frame of a small dialog that edits an element in memory, row by row, and guards its name.
/// The file is left alone: the caller submits the element when the form is accepted, and throws it
/// away when not.
class ElementForm : public QDialog
{
    Q_OBJECT

public:
    ~ElementForm() override;

public slots:
    void formAccepted();

protected:
    /// What tells one form from another.
    struct Kind
    {
        QString settingsGroup;
        QString newTitle;
        QString editTitle;
        QString nameLabel;
        NameCheck check;
    };

    /// Starts with the row of the name. @param name that of the element
    /// @param stored whether the element is in the file, where it may keep its name
    ElementForm(const Kind &kind, const QString &name, bool stored, DB *database, QWidget *parent);

    [[nodiscard]] QLineEdit *nameEdit() const { return nameEdit_; }
    [[nodiscard]] QFormLayout *rows() const { return rows_; }
    /// Ends the construction: adds the buttons, and takes the size of the last time.
    /// @param size of the first time; otherwise what the rows ask for
    void finish(const QSize &size = QSize());

    /// Gives the texts of all rows to the element, also of one in which the cursor still stands.
    virtual void takeTexts() = 0;

private:
    QString settingsGroup;
    NameCheck check;
    QString oldName; // of a stored element
    DB *db;
    QLineEdit *nameEdit_;
    QFormLayout *rows_;
};

} // namespace Planaria
