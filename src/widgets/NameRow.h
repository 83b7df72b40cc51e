#pragma once

#include <QWidget>

class QLineEdit;

namespace Planaria {

/// The row of a form in which the name of its element is typed.
class NameRow final : public QWidget
{
    Q_OBJECT

public:
    NameRow(const QString &name, QWidget *parent);

    [[nodiscard]] QLineEdit *edit() const { return edit_; }

private:
    QLineEdit *edit_;
};

} // namespace Planaria
