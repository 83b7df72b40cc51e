#pragma once

class QString;
class QWidget;

namespace Planaria {

class DB;

/// Small dialogs that several tabs share.
class QuickDialogs final
{
public:
    /// Asks for a text that @p column of @p table does not hold yet, again and again until it does
    /// not or the user gives up.
    /// @param text the proposal; on return the accepted text, or empty
    static void getUniqueText(DB *db, QWidget *parent, const QString &title, const QString &table,
                              const QString &column, QString &text);
};

} // namespace Planaria
