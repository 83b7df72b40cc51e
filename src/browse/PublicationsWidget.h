#pragma once

#include <QString>
#include <QWidget>

#include <memory>

class QModelIndex;

namespace Planaria {

class DB;
class ElementTable;

/// The tab of all publications. A click on an address opens it.
class PublicationsWidget final : public QWidget
{
    Q_OBJECT

public:
    class RenderLinkDelegate;

    PublicationsWidget(DB *database, QWidget *parent);
    ~PublicationsWidget() override;

    /// Reads the table anew. @param id the element to select; 0 for none
    void updateModel(int id);
    /// Lets go of the rows; for when the file is closed.
    void clear();

public slots:
    void newPublication();
    /// @return the id of the copy; 0 where none was made
    int copyPublication(int id);
    void editPublication(int id);
    void deletePublication(int id);

signals:
    void databaseCorrupted();
    void modelChanged();
    void search(int typeIndex, int fieldIndex, int op, const QString &text);
    void nEleChanged(int n, const QString &eleName, const QString &eleNameP);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;

private slots:
    void tableClicked();
    /// @param index of the view
    void tableEntered(const QModelIndex &index);

private:
    static constexpr int urlColumn = 2;

    /// Whether the mouse is over an address.
    static void showHand(bool over);
    /// The address at an index of the view; empty outside of the addresses.
    [[nodiscard]] QString urlAt(const QModelIndex &index) const;

    std::unique_ptr<ElementTable> table;
};

} // namespace Planaria
