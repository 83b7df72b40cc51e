#pragma once

#include <QDialog>
#include <QList>

#include <memory>

class QSqlQueryModel;

namespace Planaria {

class DB;
class Morphology;
class MorphologyListView;

/// Shows all worms of the database, by name. The long work is done in the constructor, under a
/// progress dialog.
class MorphologyListViewerForm final : public QDialog
{
    Q_OBJECT

public:
    MorphologyListViewerForm(DB *database, QWidget *parent);
    ~MorphologyListViewerForm() override;

    /// Whether the user stopped the work; the form is then not to be shown.
    [[nodiscard]] bool isAborted() const { return aborted; }

private:
    void createWidgets();
    void setupView();
    void readSettings();
    void writeSettings() const;

    DB *db;
    std::unique_ptr<QSqlQueryModel> model;
    bool aborted = false;
    MorphologyListView *listView = nullptr;
    QList<Morphology *> morphologies; // owned
};

} // namespace Planaria
