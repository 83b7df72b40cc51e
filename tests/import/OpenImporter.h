#pragma once

#include "import/LibraryImporterForm.h"
#include "import/LibraryPair.h"
#include "support/TemporaryLibrary.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyleOptionViewItem>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>

namespace Planaria {

/// What stands in the dialog of an import, found as a user finds it.
class ImporterParts final
{
public:
    explicit ImporterParts(QWidget *dialog) : form(dialog) {}

    [[nodiscard]] QTabWidget *tabs() const { return form->findChild<QTabWidget *>(); }
    [[nodiscard]] QWidget *tab(ImportKind kind) const { return tabs()->widget(int(kind)); }

    /// What stands in @p row and @p column of a tab's grid.
    template <typename Widget> Widget *part(ImportKind kind, int row, int column) const
    {
        const auto *grid = qobject_cast<QGridLayout *>(tab(kind)->layout());
        return qobject_cast<Widget *>(grid->itemAtPosition(row, column)->widget());
    }
    [[nodiscard]] QTableWidget *table(ImportKind kind, ImportList table) const
    {
        return part<QTableWidget>(kind, 1, int(table));
    }
    [[nodiscard]] QTableWidgetItem *item(ImportKind kind, ImportList in, const QString &name) const
    {
        const auto found =
            table(kind, in)->findItems(name, Qt::MatchFixedString | Qt::MatchCaseSensitive);
        return found.size() == 1 ? found.first() : nullptr;
    }

    /// The label of the tab, and those of its tables.
    [[nodiscard]] QStringList labels(ImportKind kind) const
    {
        QStringList texts = {tabs()->tabText(int(kind))};
        for (int column = 0; column < 3; ++column)
            texts += part<QLabel>(kind, 0, column)->text();
        return texts;
    }

    /// The rows of a table, each behind "+" where it is ticked and "-" where it is not.
    [[nodiscard]] QStringList rows(ImportKind kind, ImportList in) const
    {
        QStringList all;
        const QTableWidget *shown = table(kind, in);
        for (int row = 0; row < shown->rowCount(); ++row) {
            const QTableWidgetItem *each = shown->item(row, 0);
            all += (each->checkState() == Qt::Checked ? "+" : "-") + each->text();
        }
        return all;
    }
    /// The same of all tables, "TAB, TABLE: ROW".
    [[nodiscard]] QStringList rows() const
    {
        QStringList all;
        for (int kind = 0; kind < importKindCount; ++kind) {
            for (int in = 0; in < 3; ++in) {
                for (const QString &row : rows(ImportKind(kind), ImportList(in)))
                    all += QStringLiteral("%1, %2: %3").arg(kind).arg(in).arg(row);
            }
        }
        return all;
    }

    [[nodiscard]] QPushButton *button(QDialogButtonBox::StandardButton which) const
    {
        return form->findChild<QDialogButtonBox *>()->button(which);
    }
    void press(QDialogButtonBox::StandardButton which) const
    {
        QTest::mouseClick(button(which), Qt::LeftButton);
    }

    /// Clicks into the box before @p name.
    void click(ImportKind kind, ImportList in, const QString &name) const
    {
        tabs()->setCurrentIndex(int(kind));
        QTableWidget *shown = table(kind, in);
        QTableWidgetItem *wanted = item(kind, in, name);
        if (!wanted)
            qFatal("no row %s", qUtf8Printable(name));
        shown->scrollToItem(wanted);
        QStyleOptionViewItem option;
        option.initFrom(shown);
        option.rect = shown->visualItemRect(wanted);
        option.features = QStyleOptionViewItem::HasCheckIndicator;
        const QRect box =
            shown->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, shown);
        QTest::mouseClick(shown->viewport(), Qt::LeftButton, {}, box.center());
    }

    /// Sets every box of every table.
    void tickAll(bool ticked) const
    {
        for (QTableWidget *each : form->findChildren<QTableWidget *>()) {
            for (int row = 0; row < each->rowCount(); ++row)
                each->item(row, 0)->setCheckState(ticked ? Qt::Checked : Qt::Unchecked);
        }
    }

private:
    QWidget *form;
};

/// The dialog on the screen, with what it compares.
struct OpenImporter
{
    OpenImporter(TemporaryLibrary *source, TemporaryLibrary *destination)
        : form(source->db(), destination->db(), nullptr)
    {
        form.show();
    }

    /// Lets it compare the two.
    void compare() { QCoreApplication::processEvents(); }

    [[nodiscard]] bool isRejected() const
    {
        return form.isHidden() && form.result() == QDialog::Rejected;
    }
    [[nodiscard]] bool isAccepted() const
    {
        return form.isHidden() && form.result() == QDialog::Accepted;
    }

    LibraryImporterForm form;
    ImporterParts parts{&form};
};

} // namespace Planaria
