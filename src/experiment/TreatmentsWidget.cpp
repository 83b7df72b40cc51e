#include "experiment/TreatmentsWidget.h"

#include "db/DB.h"
#include "model/Drug.h"
#include "model/Experiment.h"
#include "model/ExperimentDrug.h"
#include "model/ExperimentRNAi.h"
#include "model/RNAi.h"
#include "widgets/ComboBoxNoWheel.h"
#include "widgets/ElementChoice.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QStyle>
#include <QStyledItemDelegate>
#include <QTableWidget>

#include <cmath>

namespace Planaria {

namespace {

constexpr int nameWidth = 120;
constexpr int timeWidth = 50;

/// Days; 0 for what is no number.
double days(const QVariant &value)
{
    const double time = value.toDouble();
    return std::isfinite(time) ? time : 0.0;
}

/// Edits a time as the number that it is, with all its digits.
class TimeDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem & /*option*/,
                          const QModelIndex & /*index*/) const override
    {
        auto *editor = new QLineEdit(parent);
        editor->setFrame(false);
        return editor;
    }

    /// Numbers, and not texts, are what the table sorts.
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override
    {
        const auto *edit = qobject_cast<QLineEdit *>(editor);
        if (edit && edit->isModified())
            model->setData(index, days(edit->text()));
    }
};

/// Sets the headers of the times in letters that are small enough for their columns. They start at
/// the left: the arrow of a sorted column covers the unit then, and not the word.
void fitTimeHeaders(QTableWidget *table)
{
    const QHeaderView *header = table->horizontalHeader();
    const int margins = 2 * header->style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, header);
    QFont font = header->font();
    const auto isTooWide = [&](int column) {
        const QString text = table->horizontalHeaderItem(column)->text();
        return QFontMetrics(font).horizontalAdvance(text) > timeWidth - margins;
    };
    for (int column = 1; column < table->columnCount(); ++column) {
        while (font.pointSizeF() > 1.0 && isTooWide(column))
            font.setPointSizeF(font.pointSizeF() - 0.5);
    }
    for (int column = 1; column < table->columnCount(); ++column) {
        table->horizontalHeaderItem(column)->setFont(font);
        table->horizontalHeaderItem(column)->setTextAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    }
}

} // namespace

template <typename Treatment, typename Given>
TreatmentsWidget<Treatment, Given>::TreatmentsWidget(const Kind &newKind, Experiment *edited,
                                                     DB *database, QWidget *parent)
    : QGroupBox(newKind.title, parent), kind(newKind), experiment(edited), db(database),
      model(db->newTableModel(QLatin1String(Given::table), QStringLiteral("Name"))),
      table(new QTableWidget(this))
{
    createTable();
    populateTable();
    connect(table, &QTableWidget::itemChanged, this, &TreatmentsWidget::itemChanged);
    createLayout();
}

template <typename Treatment, typename Given>
TreatmentsWidget<Treatment, Given>::~TreatmentsWidget() = default;

// --- Widgets ---

template <typename Treatment, typename Given> void TreatmentsWidget<Treatment, Given>::createTable()
{
    QStringList headers{tr("Name")};
    for (const auto &column : std::as_const(kind.times))
        headers += column.header;
    table->setColumnCount(static_cast<int>(headers.size()));
    table->setHorizontalHeaderLabels(headers);
    table->setColumnWidth(0, nameWidth);
    for (int column = 1; column < headers.size(); ++column)
        table->setColumnWidth(column, timeWidth);
    fitTimeHeaders(table);
    table->setItemDelegate(new TimeDelegate(table));
    table->setTabKeyNavigation(false); // Tab leads on to the buttons
    table->setAccessibleName(kind.title);
    table->setMinimumSize(50, 100);
    table->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Expanding);
}

template <typename Treatment, typename Given>
void TreatmentsWidget<Treatment, Given>::createLayout()
{
    auto *buttons = new QVBoxLayout;
    buttons->addStretch();
    const auto addButton = [&](const QString &text, void (TreatmentsWidget::*slot)()) {
        auto *button = new QPushButton(text, this);
        button->setAccessibleDescription(kind.title);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, slot);
        buttons->addWidget(button);
    };
    addButton(tr("Add"), &TreatmentsWidget::addTreatment);
    addButton(tr("Remove"), &TreatmentsWidget::removeTreatment);
    addButton(tr("Edit"), &TreatmentsWidget::editGiven);
    addButton(tr("New"), &TreatmentsWidget::createGiven);

    auto *layout = new QHBoxLayout(this);
    layout->addWidget(table, 1);
    layout->addLayout(buttons);
}

template <typename Treatment, typename Given> void TreatmentsWidget<Treatment, Given>::limitWidth()
{
    table->setMaximumSize(table->horizontalHeader()->length() +
                              table->verticalHeader()->sizeHint().width() + 1 +
                              table->verticalScrollBar()->sizeHint().width() + 1,
                          1000);
}

// --- Rows ---

template <typename Treatment, typename Given>
void TreatmentsWidget<Treatment, Given>::populateTable()
{
    for (Treatment *treatment : (experiment->*kind.all)()) {
        appendRow(treatment);
        const int row = table->rowCount() - 1;
        for (int i = 0; i < kind.times.size(); ++i)
            table->item(row, i + 1)->setData(Qt::DisplayRole, (treatment->*kind.times[i].time)());
    }
    table->setSortingEnabled(true); // now that no row moves any more while it is filled
    limitWidth();
}

template <typename Treatment, typename Given>
void TreatmentsWidget<Treatment, Given>::appendRow(Treatment *treatment)
{
    const int row = table->rowCount();
    table->insertRow(row);
    for (int column = 1; column < table->columnCount(); ++column) {
        auto *item = new QTableWidgetItem;
        table->setItem(row, column, item);
        treatmentOfItem.insert(item, treatment);
    }
    table->setCellWidget(row, 0, createComboBox(treatment));
}

template <typename Treatment, typename Given>
QComboBox *TreatmentsWidget<Treatment, Given>::createComboBox(Treatment *treatment)
{
    auto *box = new ComboBoxNoWheel(table);
    box->setAccessibleName(QLatin1String(Given::table));
    // A long name in the list does not widen the row.
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    treatmentOfBox.insert(box, treatment);

    auto *choice = new ElementChoice(box, model);
    choice->choose(givenBy(treatment)->id());
    connect(choice, &ElementChoice::chosen, this,
            [this, box, choice] { comboChanged(treatmentOfBox.value(box), choice->id()); });
    return box;
}

template <typename Treatment, typename Given>
void TreatmentsWidget<Treatment, Given>::insertNewRow(std::unique_ptr<Given> given)
{
    table->setSortingEnabled(false);
    Treatment *treatment = (experiment->*kind.add)(given.release());
    appendRow(treatment);
    const QWidget *box = table->cellWidget(table->rowCount() - 1, 0);
    table->setSortingEnabled(true);
    limitWidth();
    table->setCurrentCell(rowOf(box), 0);
}

template <typename Treatment, typename Given>
int TreatmentsWidget<Treatment, Given>::rowOf(const QWidget *box) const
{
    int row = table->rowCount() - 1;
    while (row >= 0 && table->cellWidget(row, 0) != box)
        --row;
    return row;
}

template <typename Treatment, typename Given>
Treatment *TreatmentsWidget<Treatment, Given>::currentTreatment() const
{
    return treatmentOfBox.value(table->cellWidget(table->currentRow(), 0));
}

// --- Changes ---

template <typename Treatment, typename Given>
void TreatmentsWidget<Treatment, Given>::comboChanged(Treatment *treatment, int id)
{
    if (treatment && givenBy(treatment)->id() != id)
        (treatment->*kind.give)(std::make_unique<Given>(id, db).release());
}

template <typename Treatment, typename Given>
void TreatmentsWidget<Treatment, Given>::itemChanged(QTableWidgetItem *item)
{
    Treatment *treatment = treatmentOfItem.value(item);
    if (!treatment)
        return;
    const double time = days(item->data(Qt::DisplayRole));
    (treatment->*kind.times[item->column() - 1].setTime)(time);
}

template <typename Treatment, typename Given>
void TreatmentsWidget<Treatment, Given>::addTreatment()
{
    if (model->rowCount() == 0) {
        QMessageBox::warning(this, kind.noneTitle, kind.noneText);
        return;
    }
    const int id = model->data(model->index(0, 0)).toInt();
    insertNewRow(std::make_unique<Given>(id, db));
}

template <typename Treatment, typename Given>
void TreatmentsWidget<Treatment, Given>::removeTreatment()
{
    Treatment *treatment = currentTreatment();
    if (!treatment)
        return;
    const int row = table->currentRow();
    QWidget *box = table->cellWidget(row, 0);
    treatmentOfBox.remove(box);
    for (int column = 1; column < table->columnCount(); ++column)
        treatmentOfItem.remove(table->item(row, column));
    // First the list: of one that goes with its row the table keeps the address, and would take a
    // later editor of a time, at the same address, for a list that stays open.
    box->hide();
    table->removeCellWidget(row, 0);
    table->removeRow(row);
    limitWidth();
    (experiment->*kind.remove)(treatment);
}

template <typename Treatment, typename Given> void TreatmentsWidget<Treatment, Given>::createGiven()
{
    auto given = std::make_unique<Given>();
    given->setName(askForName(kind.newTitle, QString()));
    if (given->name().isEmpty())
        return;
    given->submit(db);
    updateModel();
    insertNewRow(std::move(given));
}

template <typename Treatment, typename Given> void TreatmentsWidget<Treatment, Given>::editGiven()
{
    const Treatment *treatment = currentTreatment();
    if (!treatment || treatment->isLost())
        return;
    Given *given = givenBy(treatment);
    const QString name = askForName(kind.editTitle, given->name());
    if (name.isEmpty())
        return;
    // Every row of it has an instance of its own, and must not write the former name back.
    for (const Treatment *other : (experiment->*kind.all)()) {
        if (givenBy(other)->id() == given->id())
            givenBy(other)->setName(name);
    }
    given->submit(db);
    updateModel();
}

template <typename Treatment, typename Given>
QString TreatmentsWidget<Treatment, Given>::askForName(const QString &title, const QString &start)
{
    while (true) {
        bool ok = false;
        QString name =
            QInputDialog::getText(this, title, kind.nameLabel, QLineEdit::Normal, start, &ok);
        if (!ok || name.isEmpty())
            return {};
        if (!db->exist(QLatin1String(Given::table), QStringLiteral("Name"), name))
            return name;
        QMessageBox::warning(this, kind.takenTitle, kind.takenText);
    }
}

template <typename Treatment, typename Given> void TreatmentsWidget<Treatment, Given>::updateModel()
{
    db->updateModel(model.get());
}

template class TreatmentsWidget<ExperimentDrug, Drug>;
template class TreatmentsWidget<ExperimentRNAi, RNAi>;

} // namespace Planaria
