#pragma once

class QString;
class QWidget;

namespace Planaria {

class DB;
class DBElement;

/// The writing of an element that a user has finished.
namespace ElementStore {

/// Where the file does not hold the element afterwards, nothing is written and the user is told.
/// @param table that of the element @param word what users call it
[[nodiscard]] bool store(DBElement *element, const QString &table, const QString &word, DB *db,
                         QWidget *parent);

} // namespace ElementStore

} // namespace Planaria
