#pragma once

#include <QString>
#include <QWidget>

namespace Planaria {

class DB;

/// The tab of the search, still without one.
class SearchWidget final : public QWidget
{
    Q_OBJECT

public:
    SearchWidget(DB *database, QWidget *parent);

    void updateModel(int id);
    void clear();

signals:
    void databaseCorrupted();
    void nEleChanged(int n, const QString &eleName, const QString &eleNameP);
};

} // namespace Planaria
